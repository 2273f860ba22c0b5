// Workarounds as FreeIPMI takes them when it opens a session.
#ifndef RUK_HOST_CHASSISD_BRIDGE_WORKAROUNDS_H
#define RUK_HOST_CHASSISD_BRIDGE_WORKAROUNDS_H

#include <string>
#include <vector>

namespace chassisd
{

// The flags of all the names together; throws std::invalid_argument for an unknown one.
unsigned workaround_flags(const std::vector<std::string> &names);

} // namespace chassisd

#endif
