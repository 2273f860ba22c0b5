// The LEDs of a blade that blink on demand.

#include "cli/command_tree.h"

namespace cli
{

namespace
{

const request_name set_led = {0x30D0, "Set LED"};

struct led {
    std::string name;
    int (*blink)(const blade_location *at, uint32_t on) = nullptr;
};

struct led_choice {
    cli::led led;
};

led led_named(const std::string &name)
{
    if (name == "server")
        return {name, ipmi_blink_unblink_serverled_kvm};
    if (name == "drive")
        return {name, ipmi_blink_unblink_sled_driveled};
    throw usage_failure("\"" + name + "\" is neither server nor drive");
}

std::vector<std::string> led_names()
{
    return {"server", "drive"};
}

// Tells what was asked for: whether the blade did it, the library does not say.
report ask_for(const blade &at, const led &which, bool blinking)
{
    call(set_led, at, which.blink, uint32_t{blinking});
    return tell({{"led", which.name}, {"requested", blinking ? "blink" : "off"}});
}

report blink(const blade &at, const led_choice &chosen)
{
    return ask_for(at, chosen.led, true);
}

report off(const blade &at, const led_choice &chosen)
{
    return ask_for(at, chosen.led, false);
}

} // namespace

void add_led(const noun &root)
{
    constexpr const char *which =
        "server or drive. That the blade refused is only in the log: -v shows it";
    const noun led = root.noun_below("led", "LEDs that blink on demand");
    led.verb("blink", "Let a LED blink", blink)
        .argument("LED", &led_choice::led, led_named, which)
        .choices(led_names);
    led.verb("off", "Stop a LED's blinking", off)
        .argument("LED", &led_choice::led, led_named, which)
        .choices(led_names);
}

} // namespace cli
