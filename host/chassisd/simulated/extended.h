// Extended parameters: values of any meaning and of up to about a kilobyte, by command and index,
// which are written and read in chunks.
#ifndef RUK_HOST_CHASSISD_SIMULATED_EXTENDED_H
#define RUK_HOST_CHASSISD_SIMULATED_EXTENDED_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

command_table extended_commands();

} // namespace chassisd::simulated

#endif
