#include "chassisd/simulated/sensors.h"

#include <map>

#include "chassisd/simulated/system_event.h"

namespace chassisd::simulated
{

namespace
{

enum unit_code : uint8_t { celsius = 1, volts = 4, watts = 6, rpm = 18 };

// Events and scanning are enabled.
constexpr uint8_t sensor_works = 0xC0;

template <typename Sensor>
const Sensor *find(const std::vector<Sensor> &sensors, uint8_t number)
{
    const auto found = std::find_if(sensors.begin(), sensors.end(),
                                    [=](const Sensor &s) { return s.number == number; });
    return found == sensors.end() ? nullptr : &*found;
}

// Wanders around the nominal value, differently for every sensor of every blade.
uint8_t present_value(const threshold_sensor &sensor, const environment &env)
{
    constexpr uint32_t period_s = 10;
    constexpr uint32_t spread = 5;
    const uint32_t step = seconds_since_1970(env.now()) / period_s;
    const uint32_t phase = step + sensor.number * 7u + env.slot * 3u + env.sub_slot;
    return static_cast<uint8_t>(sensor.nominal - spread / 2 + phase % spread);
}

// Which thresholds the value has reached, one bit each. Those in `crossed` count as reached until
// the value is back beyond them by more than the hysteresis.
uint8_t reached_thresholds(const threshold_sensor &sensor, uint8_t value, uint8_t crossed = 0)
{
    uint8_t reached = 0;
    for (unsigned i = 0; i < sensor.thresholds.size(); i++) {
        const bool upper = i >= 3;
        const int slack = (crossed & 1u << i) != 0 ? hysteresis : 0;
        const int limit = sensor.thresholds[i];
        if (limit != 0 && (upper ? value >= limit - slack : value <= limit + slack))
            reached = static_cast<uint8_t>(reached | 1u << i);
    }
    return reached;
}

blade_event event_of_threshold(unsigned index, bool restored)
{
    static constexpr blade_event crossed[] = {blade_event::non_critical_crossed,
                                              blade_event::critical_crossed,
                                              blade_event::non_recoverable_crossed};
    static constexpr blade_event back[] = {blade_event::non_critical_restored,
                                           blade_event::critical_restored,
                                           blade_event::non_recoverable_restored};
    return restored ? back[index % 3] : crossed[index % 3];
}

} // namespace

class sensor_set
{
  public:
    sensor_set(const environment &env, std::shared_ptr<event_log> log,
               std::shared_ptr<const power_state> power)
        : env_(env),
          log_(std::move(log)),
          power_(std::move(power))
    {
    }

    bytes get_thresholds(const bytes &request) const
    {
        const threshold_sensor *sensor = find(threshold_sensors(), request[0]);
        refuse_if(!sensor, not_present);
        return success(sensor->threshold_mask(),
                       bytes(sensor->thresholds.begin(), sensor->thresholds.end()));
    }

    bytes get_reading(const bytes &request) const
    {
        if (const threshold_sensor *sensor = find(threshold_sensors(), request[0])) {
            const uint8_t value = value_of(*sensor);
            return success(value, sensor_works, 0xC0 | reached_thresholds(*sensor, value));
        }
        const discrete_sensor *sensor = find(discrete_sensors(), request[0]);
        refuse_if(!sensor, not_present);
        return success(0x00, sensor_works, le16(0x8000 | states_of(*sensor)));
    }

    // As it was set, or as it comes. The controller itself draws little.
    uint8_t value_of(const threshold_sensor &sensor) const
    {
        constexpr uint8_t standby = 12;
        const auto fixed = readings_.find(sensor.number);
        if (fixed != readings_.end())
            return fixed->second.value;
        return sensor.number == input_power && !power_->on ? standby : present_value(sensor, env_);
    }

    // Readings of quantities can be set. Events and their data are the controller's own: they
    // follow from the reading.
    bytes set_reading(const bytes &request)
    {
        const uint8_t operation = request[1];
        const unsigned event_data = operation >> 6;
        const unsigned event_status = operation & 0x3C;
        const unsigned reading = operation & 0x03;
        constexpr unsigned write = 0x01;

        const threshold_sensor *sensor = find(threshold_sensors(), request[0]);
        refuse_if(!sensor && !find(discrete_sensors(), request[0]), not_present);
        refuse_if(reading > write || event_data == 0x03, invalid_field);
        refuse_if(event_data != 0, event_data_not_settable);
        refuse_if(event_status != 0 || (reading == write && !sensor), not_settable);
        if (reading == write)
            set(*sensor, request[2]);
        return success();
    }

  private:
    // A reading that was set stays, with the thresholds that it has crossed.
    struct fixed_reading {
        uint8_t value = 0;
        uint8_t crossed = 0;
    };

    uint16_t states_of(const discrete_sensor &sensor) const
    {
        constexpr uint16_t power_is_off = 0x0001;
        return sensor.number == power_unit && !power_->on ? power_is_off : sensor.states;
    }

    // Tells of the thresholds in the order in which the reading passes them: back through those it
    // leaves, then on through those it reaches.
    void set(const threshold_sensor &sensor, uint8_t value)
    {
        fixed_reading &reading = readings_[sensor.number];
        const uint8_t before = reading.crossed;
        reading.value = value;
        reading.crossed = reached_thresholds(sensor, value, before);
        for (unsigned i = 6; i-- > 0;)
            if (before & ~reading.crossed & 1u << i)
                tell(sensor, value, i, true);
        for (unsigned i = 0; i < 6; i++)
            if (reading.crossed & ~before & 1u << i)
                tell(sensor, value, i, false);
    }

    void tell(const threshold_sensor &sensor, uint8_t value, unsigned index, bool restored)
    {
        constexpr int reading_and_threshold = 0x50;
        report(*log_, event_of_threshold(index, restored),
               system_event(sensor.type, sensor.number, threshold | (restored ? gone : 0),
                            reading_and_threshold | threshold_events[index], value,
                            sensor.thresholds[index]));
    }

    const environment env_;
    const std::shared_ptr<event_log> log_;
    const std::shared_ptr<const power_state> power_;
    std::map<sensor_number, fixed_reading> readings_;
};

uint8_t threshold_sensor::threshold_mask() const
{
    uint8_t mask = 0;
    for (unsigned i = 0; i < thresholds.size(); i++)
        if (thresholds[i] != 0)
            mask = static_cast<uint8_t>(mask | 1u << i);
    return mask;
}

const std::vector<threshold_sensor> &threshold_sensors()
{
    // clang-format off
    static const std::vector<threshold_sensor> sensors = {
        {{inlet_temperature, "Inlet Temp", entity_air_inlet, 1, 0x01},
         celsius, 1, 0, 24, 15, 35, {0, 0, 0, 38, 42, 46}},
        {{cpu_1_temperature, "CPU 1 Temp", entity_processor, 1, 0x01},
         celsius, 1, 0, 52, 30, 80, {0, 0, 0, 85, 92, 98}},
        {{cpu_2_temperature, "CPU 2 Temp", entity_processor, 2, 0x01},
         celsius, 1, 0, 50, 30, 80, {0, 0, 0, 85, 92, 98}},
        {{mezzanine_temperature, "Mezzanine Temp", entity_add_in_card, 1, 0x01},
         celsius, 1, 0, 44, 25, 70, {0, 0, 0, 75, 85, 0}},
        {{voltage_12v, "12V Input", entity_system_board, 1, 0x02},
         volts, 6, -2, 200, 192, 208, {189, 183, 0, 211, 217, 0}},
        {{voltage_3v3, "3.3V", entity_system_board, 1, 0x02},
         volts, 2, -2, 165, 160, 170, {157, 150, 0, 173, 180, 0}},
        {{voltage_battery, "Battery", entity_system_board, 1, 0x02},
         volts, 2, -2, 152, 140, 165, {130, 120, 0, 0, 0, 0}},
        {{fan_1, "Fan 1", entity_fan, 1, 0x04},
         rpm, 60, 0, 120, 60, 200, {50, 33, 0, 0, 0, 0}},
        {{fan_2, "Fan 2", entity_fan, 2, 0x04},
         rpm, 60, 0, 118, 60, 200, {50, 33, 0, 0, 0, 0}},
        {{input_power, "Input Power", entity_system_board, 1, 0x0B},
         watts, 2, 0, 140, 40, 180, {0, 0, 0, 200, 225, 0}},
    };
    // clang-format on
    return sensors;
}

const std::vector<discrete_sensor> &discrete_sensors()
{
    // Bits of states are offsets of the sensor type: of a power supply, 0 present, 1 failed, 2
    // failure predicted, 3 input lost; of a processor, 0 internal error, 1 thermal trip, 7 present,
    // 10 throttled; of memory, 0 and 1 correctable and other ECC error, 5 logging limit, 6
    // present; of a power unit, 0 off, 1 power cycle.
    static const std::vector<discrete_sensor> sensors = {
        {{power_supply_1, "Power Supply 1", entity_power_supply, 1, 0x08}, 0x000F, 0x0001},
        {{power_supply_2, "Power Supply 2", entity_power_supply, 2, 0x08}, 0x000F, 0x0001},
        {{cpu_1_status, "CPU 1 Status", entity_processor, 1, 0x07}, 0x0483, 0x0080},
        {{cpu_2_status, "CPU 2 Status", entity_processor, 2, 0x07}, 0x0483, 0x0080},
        {{memory_status, "Memory", entity_memory, 1, 0x0C}, 0x0063, 0x0040},
        {{event_log_status, "Event Log", entity_system_management, 1, 0x10}, 0x0034, 0x0000},
        {{watchdog_status, "Watchdog", entity_system_management, 1, 0x23}, 0x000F, 0x0000},
        {{firmware_progress, "Boot Progress", entity_system_board, 1, 0x0F}, 0x0007, 0x0000},
        {{system_boot, "System Boot", entity_system_board, 1, 0x1D}, 0x001F, 0x0000},
        {{power_unit, "Power Unit", entity_system_board, 1, 0x09}, 0x0003, 0x0000},
    };
    return sensors;
}

std::shared_ptr<sensor_set> make_sensors(const environment &env, std::shared_ptr<event_log> log,
                                         std::shared_ptr<const power_state> power)
{
    return std::make_shared<sensor_set>(env, std::move(log), std::move(power));
}

uint8_t reading_of(const sensor_set &sensors, sensor_number quantity)
{
    return sensors.value_of(*find(threshold_sensors(), quantity));
}

command_table sensor_commands(const std::shared_ptr<sensor_set> &sensors)
{
    return {
        {netfn_sensor, 0x27, 1, on(sensors, &sensor_set::get_thresholds)},
        {netfn_sensor, 0x2D, 1, on(sensors, &sensor_set::get_reading)},
        {netfn_sensor, 0x30, {3, 10}, on(sensors, &sensor_set::set_reading)},
    };
}

} // namespace chassisd::simulated
