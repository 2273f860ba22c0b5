#include "cli/chassis_status.h"

#include "cli/names.h"

namespace cli
{

namespace
{

const request_name get_status = {0x0001, "Get Chassis Status"};

constexpr uint8_t power_is_on = 0x01;

bytes status(const blade &at)
{
    constexpr size_t shortest = 3; // the front panel's byte may be missing
    return exchange(get_status, at, {}, shortest);
}

std::string power_in(const bytes &status)
{
    return (status[0] & power_is_on) != 0 ? "on" : "off";
}

std::string restore_policy(uint8_t power)
{
    static constexpr const char *policies[] = {"stays off", "as before", "turns on", "unknown"};
    return policies[power >> 5 & 0x03];
}

std::string identify_state(uint8_t more)
{
    static constexpr const char *states[] = {"off", "for a while", "until ended", "reserved"};
    constexpr uint8_t is_told = 0x40;
    return (more & is_told) != 0 ? states[more >> 4 & 0x03] : "not told";
}

} // namespace

std::string power_state(const blade &at)
{
    return power_in(status(at));
}

json chassis_status(const blade &at)
{
    const bytes bits = status(at);
    json fields = {
        {"power", power_in(bits)},
        {"power_problems", names_of_bits(bits[0], {nullptr, "overload", "interlock", "power fault",
                                                   "control fault"})},
        {"after_power_loss", restore_policy(bits[0])},
        {"last_power_change",
         names_of_bits(bits[1], {"power loss", "overload", "interlock", "fault", "command"})},
        {"problems",
         names_of_bits(bits[2], {"intrusion", "front panel locked", "drive", "cooling"})},
        {"identify", identify_state(bits[2])},
        {"disabled_buttons", nullptr}};
    if (bits.size() > 3)
        fields["disabled_buttons"] =
            names_of_bits(bits[3], {"power off", "reset", "diagnostic interrupt", "standby"});
    return fields;
}

} // namespace cli
