// Hardware that the chassis manager sees and touches: the blade's LEDs, its CPLD, its POST code.
#ifndef RUK_HOST_CHASSISD_SIMULATED_HARDWARE_H
#define RUK_HOST_CHASSISD_SIMULATED_HARDWARE_H

#include "chassisd/simulated/parameter.h"
#include "chassisd/simulated/power.h"

namespace chassisd::simulated
{

// How long the system boots until its last POST code.
constexpr std::chrono::milliseconds boot_duration{1000};

// The codes of the boot run from 1 on; 0xAA: it is over; 0: there is no power.
uint8_t post_code(time_point now, const power_state &power);

parameter_table hardware_parameters();

command_table hardware_commands(const environment &env, std::shared_ptr<const power_state> power);

} // namespace chassisd::simulated

#endif
