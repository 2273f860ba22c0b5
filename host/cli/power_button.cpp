// The power button on the front of a node.

#include "cli/command_tree.h"

namespace cli
{

namespace
{

const request_name set_button_enables = {0x000A, "Set Front Panel Button Enables"};

report lock(const blade &at)
{
    call(set_button_enables, at, ipmi_set_node_power_button, uint32_t{1});
    return tell({{"power_button", "locked"}});
}

report unlock(const blade &at)
{
    call(set_button_enables, at, ipmi_set_node_power_button, uint32_t{0});
    return tell({{"power_button", "unlocked"}});
}

} // namespace

void add_power_button(const noun &root)
{
    const noun button = root.noun_below("power-button", "The power button on a node's front");
    button.verb("lock", "Disable the power button, and enable all others", lock);
    button.verb("unlock", "Enable all buttons", unlock);
}

} // namespace cli
