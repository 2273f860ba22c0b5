// The blades that a command is for, as -b names them.
#ifndef RUK_HOST_CLI_TARGETS_H
#define RUK_HOST_CLI_TARGETS_H

#include <string>
#include <vector>

#include "ruk_ipmi/types.h"

namespace cli
{

// Reads a list such as "1-8,10,3.2": slots, ranges of slots, and sub-slots behind a dot. A blade
// named twice is asked once, where it is named first. Anything else is a usage failure.
std::vector<blade_location> parse_targets(const std::string &text);

bool is_among(const std::vector<blade_location> &targets, const blade_location &location);

// A location as it can be typed: "3", or "3.2".
std::string target_name(const blade_location &location);

} // namespace cli

#endif
