// Blocks that the blade has ready for its system: the identification data of monitors.
#ifndef RUK_HOST_CHASSISD_SIMULATED_STAGING_H
#define RUK_HOST_CHASSISD_SIMULATED_STAGING_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

command_table staging_commands();

} // namespace chassisd::simulated

#endif
