// A blade's power, its identification, its defaults.

#include "cli/chassis_status.h"
#include "cli/command_tree.h"

namespace cli
{

namespace
{

const request_name chassis_control = {0x0002, "Chassis Control"};
const request_name chassis_identify = {0x0004, "Chassis Identify"};
const request_name reset_to_defaults = {0x3021, "Reset to Defaults"};
const request_name get_power_cycles = {0x309B, "Get Power Cycle Data"};

report status(const blade &at)
{
    return tell(chassis_status(at));
}

report show_power(const blade &at)
{
    return tell({{"power", power_state(at)}});
}

template <uint8_t control>
report control_power(const blade &at)
{
    static constexpr const char *names[] = {"power down",           "power up",
                                            "power cycle",          "hard reset",
                                            "diagnostic interrupt", "soft shutdown"};
    ask<uint8_t>(chassis_control, at, ipmi_location_chassis_control_command, control);
    return tell({{"asked_for", names[control]}});
}

struct identify_choice {
    uint8_t seconds = 15;
    bool force = false;
    bool off = false;
};

report identify(const blade &at, const identify_choice &chosen)
{
    const uint8_t seconds = chosen.off ? uint8_t{0} : chosen.seconds;
    const uint8_t force = chosen.force ? 1 : 0;
    ask<uint8_t>(chassis_identify, at, ipmi_location_chassis_identify_command, seconds, force);
    if (chosen.force)
        return tell({{"identify", "until ended"}});
    return tell({{"identify", seconds == 0 ? "off" : "for a while"}, {"seconds", seconds}});
}

struct defaults_choice {
    uint8_t which = 0;
};

report reset_defaults(const blade &at, const defaults_choice &chosen)
{
    ask<uint8_t>(reset_to_defaults, at, ipmi_location_reset_to_defaults, chosen.which);
    return tell({{"reset_to_defaults", chosen.which}});
}

report power_cycles(const blade &at)
{
    const auto counted =
        ask<power_cycle_data>(get_power_cycles, at, ipmi_location_get_power_cycle_data);
    if (counted.data == 0)
        exchange(get_power_cycles, at, {}, sizeof counted.data);
    return tell({{"data", counted.data}});
}

} // namespace

void add_chassis_control(const noun &chassis)
{
    chassis.verb("status", "Show the blade's power, its problems and its buttons", status);

    const noun power = chassis.noun_below("power", "The blade's power");
    power.verb("status", "Show whether the power is on", show_power);
    power.verb("on", "Turn the power on", control_power<CHASSIS_POWER_UP>);
    power.verb("off", "Turn the power off at once", control_power<CHASSIS_POWER_DOWN>);
    power.verb("cycle", "Turn the power off and on again", control_power<CHASSIS_POWER_CYCLE>);
    power.verb("reset", "Reset the system", control_power<CHASSIS_HARD_RESET>);
    power.verb("diag", "Send the system a diagnostic interrupt",
               control_power<CHASSIS_DIAGNOSTIC_INTERRUPT>);
    power.verb("soft", "Let the operating system shut down", control_power<CHASSIS_SOFT_SHUTDOWN>);

    chassis.verb("identify", "Let the blade show where it is", identify)
        .optional_argument("SECONDS", &identify_choice::seconds, number<uint8_t>,
                           "For how long, 0 to 255; 15 when not given")
        .flag("--force", &identify_choice::force, "Until it is ended")
        .excludes("SECONDS")
        .flag("--off", &identify_choice::off, "End it")
        .excludes("SECONDS")
        .excludes("--force");
    chassis.verb("reset-to-defaults", "Set the blade's controller back", reset_defaults)
        .argument("N", &defaults_choice::which, number<uint8_t>,
                  "What of it, in the blade's numbers, 0 to 255");
    chassis.verb("power-cycles", "Show the blade's power cycle data, a byte", power_cycles);
}

} // namespace cli
