// A blade that is a real controller elsewhere, reached over RMCP+.
#ifndef RUK_HOST_CHASSISD_BRIDGE_BRIDGE_H
#define RUK_HOST_CHASSISD_BRIDGE_BRIDGE_H

#include <memory>
#include <string>
#include <vector>

#include "chassisd/blade.h"
#include "chassisd/config.h"

namespace chassisd
{

// Sends nothing yet: the session is opened by the first request.
std::unique_ptr<blade> make_bridge(const bridge_config &config);

// The workarounds for controllers that stray from IPMI 2.0, by the names that FreeIPMI's programs
// take in their option -W.
std::vector<std::string> workaround_names();
bool known_workaround(const std::string &name);

} // namespace chassisd

#endif
