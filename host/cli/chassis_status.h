// What a blade says of its power and its front.
#ifndef RUK_HOST_CLI_CHASSIS_STATUS_H
#define RUK_HOST_CLI_CHASSIS_STATUS_H

#include "cli/report.h"
#include "cli/request.h"

namespace cli
{

// "on" or "off".
std::string power_state(const blade &at);

json chassis_status(const blade &at);

} // namespace cli

#endif
