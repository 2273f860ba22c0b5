#include "chassisd/simulated/sdr_records.h"

#include "chassisd/simulated/app.h"
#include "chassisd/simulated/sensors.h"

namespace chassisd::simulated
{

namespace
{

enum record_type : uint8_t {
    full_sensor = 0x01,
    compact_sensor = 0x02,
    fru_locator = 0x11,
    controller_locator = 0x12
};

// A record without its header.
struct body {
    record_type type;
    bytes fields;
};

// ID strings have at most 16 characters.
text id_string(const std::string &name)
{
    return text{name.substr(0, 16)};
}

bytes with_header(uint16_t id, const body &record)
{
    return record_of(le16(id), 0x51, record.type, static_cast<int>(record.fields.size()),
                     record.fields);
}

// clang-format off

body describe_controller(const environment &env)
{
    return {controller_locator,
            record_of(controller_address, 0x00,       // on channel 0
                      0x00,                           // needs no initialization
                      device_support,
                      0x00, 0x00, 0x00,               // reserved
                      entity_system_management, 0x01,
                      0x00, id_string(env.name))};
}

body describe_fru(uint8_t device, const std::string &name, entity_id entity)
{
    constexpr uint8_t logical_device = 0x80;
    constexpr uint8_t fru_behind_controller = 0x10;
    return {fru_locator,
            record_of(controller_address, device,
                      logical_device, 0x00,           // on channel 0
                      0x00,                           // reserved
                      fru_behind_controller, 0x00,
                      entity, 0x01,
                      0x00, id_string(name))};
}

// What full and compact records begin with, up to the event masks.
bytes sensor_key(const sensor &sensor, int initialization, int capabilities, int event_type)
{
    return record_of(controller_address, 0x00,        // owner: this controller, on channel 0
                     sensor.number,
                     sensor.entity, sensor.instance,
                     initialization, capabilities,
                     sensor.type, event_type);
}

// The events of crossing thresholds, low-going ones of the lower and high-going ones of the upper,
// from bit 0 on; and from bit 12 on the thresholds of one side that a reading is compared with.
le16 event_mask(uint8_t thresholds, unsigned compared)
{
    unsigned mask = (compared & 0x7) << 12;
    for (unsigned i = 0; i < threshold_events.size(); i++)
        if (thresholds & 1u << i)
            mask |= 1u << threshold_events[i];
    return le16(mask);
}

body describe(const threshold_sensor &sensor)
{
    constexpr int initialized = 0xFF;  // scanning, events, thresholds, hysteresis, type; settable
    constexpr int capabilities = 0x74; // re-arms itself; hysteresis fixed, thresholds readable
    constexpr int specified = 0x07;    // nominal value and normal range
    constexpr int input = 0x01;
    const uint8_t mask = sensor.threshold_mask();
    const unsigned lower = mask & 0x7;
    const unsigned upper = mask >> 3;
    // The record has the thresholds in the reverse order of the mask.
    const bytes thresholds(sensor.thresholds.rbegin(), sensor.thresholds.rend());
    return {full_sensor,
            record_of(sensor_key(sensor, initialized, capabilities, 0x01),
                      event_mask(mask, lower),
                      event_mask(mask, upper),
                      mask, 0x00,                     // readable, none settable
                      0x00, sensor.unit, 0x00,        // unsigned values in plain units
                      0x00,                           // linear
                      sensor.multiplier, 0x00,
                      0x00, 0x00, input,              // no offset, accuracy not told
                      (sensor.exponent & 0xF) << 4,
                      specified,
                      sensor.nominal, sensor.normal_maximum, sensor.normal_minimum,
                      0xFF, 0x00,                     // full range
                      thresholds,
                      hysteresis, hysteresis,         // both ways
                      0x00, 0x00,                     // reserved
                      0x00, id_string(sensor.name))};
}

body describe(const discrete_sensor &sensor)
{
    constexpr int initialized = 0x67;  // scanning, events, type
    constexpr int capabilities = 0x40; // re-arms itself
    constexpr int not_shared = 0x01;
    const le16 states(sensor.possible_states);
    return {compact_sensor,
            record_of(sensor_key(sensor, initialized, capabilities, 0x6F),
                      states, states, states,         // events that come and go, readings
                      0xC0, 0x00, 0x00,               // no quantity
                      not_shared, 0x00,
                      0x00, 0x00,                     // no hysteresis
                      0x00, 0x00, 0x00,               // reserved
                      0x00, id_string(sensor.name))};
}

// clang-format on

} // namespace

record_list sensor_data_records(const environment &env)
{
    std::vector<body> bodies = {
        describe_controller(env),
        describe_fru(0, env.name, entity_system_board),
        describe_fru(1, "Mezzanine", entity_add_in_card),
        describe_fru(2, "DIMM A1", entity_memory),
    };
    for (const threshold_sensor &sensor : threshold_sensors())
        bodies.push_back(describe(sensor));
    for (const discrete_sensor &sensor : discrete_sensors())
        bodies.push_back(describe(sensor));

    record_list records;
    uint16_t id = 0;
    for (const body &record : bodies)
        records.push_back(with_header(id = static_cast<uint16_t>(id + 4), record));
    return records;
}

} // namespace chassisd::simulated
