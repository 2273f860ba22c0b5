// Settings that the chassis manager gives a blade: messages of its LCD, link tuning, automatic
// throttling, power and thermal management with the blade's physical location.
#ifndef RUK_HOST_CHASSISD_SIMULATED_SETTINGS_H
#define RUK_HOST_CHASSISD_SIMULATED_SETTINGS_H

#include "chassisd/simulated/parameter.h"

namespace chassisd::simulated
{

parameter_table settings_parameters();

command_table settings_commands();

} // namespace chassisd::simulated

#endif
