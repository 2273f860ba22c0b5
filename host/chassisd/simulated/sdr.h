// The Sensor Data Record repository.
#ifndef RUK_HOST_CHASSISD_SIMULATED_SDR_H
#define RUK_HOST_CHASSISD_SIMULATED_SDR_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

command_table sdr_commands(const environment &env);

} // namespace chassisd::simulated

#endif
