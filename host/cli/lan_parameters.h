// The LAN configuration's parameters that IPMI 2.0 defines: their names, and their values as people
// read and type them.
#ifndef RUK_HOST_CLI_LAN_PARAMETERS_H
#define RUK_HOST_CLI_LAN_PARAMETERS_H

#include "cli/report.h"

namespace cli
{

struct lan_parameter {
    uint8_t number;
    const char *name;  // as it is typed
    const char *field; // as it is shown
    size_t size;       // bytes of its value
    std::string (*shown)(const bytes &value);
    bytes (*typed)(const std::string &text); // null where it cannot be set
};

const std::vector<lan_parameter> &lan_parameters();

// The parameter of that number; null where it is none of these.
const lan_parameter *lan_parameter_numbered(uint8_t number);

// The number that is meant: one of these by its name, or any by its number.
uint8_t lan_parameter_number(const std::string &text);

// The names of all, and of those that can be set.
std::vector<std::string> lan_parameter_names();
std::vector<std::string> settable_lan_parameter_names();

} // namespace cli

#endif
