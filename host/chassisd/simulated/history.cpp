#include "chassisd/simulated/history.h"

#include "chassisd/simulated/system_event.h"

namespace chassisd::simulated
{

namespace
{

bytes stamped_oem_event(const bytes &data)
{
    return record_of(le16(0), 0xC0, le32{0}, le24{manufacturer_id}, data);
}

bytes plain_oem_event(const bytes &data)
{
    return record_of(le16(0), 0xE0, data);
}

// A short life of a blade, told again and again when the log is to hold more.
const std::vector<bytes> &story()
{
    static const std::vector<bytes> events = {
        system_event(0x10, event_log_status, state, 0x02),              // log cleared
        system_event(0x08, power_supply_1, state, 0x00),                // present
        system_event(0x1D, system_boot, state, 0x00),                   // by power-up
        system_event(0x0F, firmware_progress, state, 0xC2, 0x01),       // memory initialization
        system_event(0x07, cpu_1_status, state, 0x07),                  // present
        stamped_oem_event({0x01, 0x02, 0x14, 0x00, 0x00, 0x00}),        // firmware 2.14
        system_event(0x01, inlet_temperature, threshold, 0x57, 39, 38), // upper non-critical
        system_event(0x01, inlet_temperature, threshold | gone, 0x57, 36, 38),
        system_event(0x0C, memory_status, state, 0x30, 0xFF, 0x03), // correctable ECC, module 3
        system_event(0x23, watchdog_status, state, 0xC1, 0x04),     // hard reset, timer of the OS
        system_event(0x1D, system_boot, state, 0x02),               // by warm reset
        plain_oem_event({'P', 'O', 'S', 'T', 0x00, 0x92, 0x01, 0, 0, 0, 0, 0, 0}),
        system_event(0x08, power_supply_2, state, 0x03), // input lost
        system_event(0x08, power_supply_2, state | gone, 0x03),
        system_event(0x02, voltage_12v, threshold, 0x50, 188, 189), // lower non-critical
        system_event(0x02, voltage_12v, threshold | gone, 0x50, 191, 189),
        system_event(0x04, fan_2, threshold, 0x52, 32, 33), // lower critical
        system_event(0x04, fan_2, threshold | gone, 0x52, 90, 33),
        system_event(0x07, cpu_2_status, state, 0x0A),              // throttled
        system_event(0x0C, memory_status, state, 0x35, 0xFF, 0x03), // logging limit, module 3
    };
    return events;
}

} // namespace

std::vector<past_event> past_events(size_t count)
{
    constexpr uint32_t pace_s = 613;
    std::vector<past_event> events;
    for (size_t i = 0; i < count; i++)
        events.push_back({static_cast<uint32_t>(count - i) * pace_s, story()[i % story().size()]});
    return events;
}

} // namespace chassisd::simulated
