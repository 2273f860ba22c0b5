// Automatic throttling.

#include "cli/command_tree.h"

namespace cli
{

namespace
{

const request_name set_delay = {0x30D0, "Set Autothrottle Delay"};

report set(const blade &at)
{
    call(set_delay, at, ipmi_location_set_autothrottle_delay);
    return tell({{"delay_set", true}});
}

} // namespace

void add_autothrottle(const noun &root)
{
    const noun throttle = root.noun_below("autothrottle", "Automatic throttling");
    throttle.verb("set", "Set the delay of throttling, the one that there is", set);
}

} // namespace cli
