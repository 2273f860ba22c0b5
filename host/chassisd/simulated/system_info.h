// The system information parameters: names and versions that the blade and its system tell each
// other, and lists of the manufacturer's own.
#ifndef RUK_HOST_CHASSISD_SIMULATED_SYSTEM_INFO_H
#define RUK_HOST_CHASSISD_SIMULATED_SYSTEM_INFO_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

command_table system_info_commands(const environment &env);

} // namespace chassisd::simulated

#endif
