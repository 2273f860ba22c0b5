// Workarounds, by FreeIPMI's names and flags.
#ifndef RUK_HOST_CHASSISD_BRIDGE_WORKAROUNDS_H
#define RUK_HOST_CHASSISD_BRIDGE_WORKAROUNDS_H

#include <string>
#include <vector>

namespace chassisd
{

// The flags of all the names together; throws std::invalid_argument for an unknown one.
unsigned workaround_flags(const std::vector<std::string> &names);

// Whether one of the names asks for what FreeIPMI's session can do and ours cannot.
bool need_freeipmi(const std::vector<std::string> &names);

} // namespace chassisd

#endif
