// Hardware that the chassis manager sees and touches: the blade's LEDs, its CPLD, its POST code.
#ifndef RUK_HOST_CHASSISD_SIMULATED_HARDWARE_H
#define RUK_HOST_CHASSISD_SIMULATED_HARDWARE_H

#include "chassisd/simulated/parameter.h"
#include "chassisd/simulated/power.h"

namespace chassisd::simulated
{

// How long the system boots until its last POST code.
constexpr std::chrono::milliseconds boot_duration{1000};

parameter_table hardware_parameters();

command_table hardware_commands(const environment &env, std::shared_ptr<const power_state> power);

} // namespace chassisd::simulated

#endif
