// What the blade draws, has drawn, and how often it was turned on.
#ifndef RUK_HOST_CHASSISD_SIMULATED_CONSUMPTION_H
#define RUK_HOST_CHASSISD_SIMULATED_CONSUMPTION_H

#include "chassisd/simulated/budget.h"

namespace chassisd::simulated
{

class power_meter;

std::shared_ptr<power_meter> make_power_meter(const environment &env,
                                              std::shared_ptr<const sensor_set> sensors);

// Looks at the power now: whenever somebody asks for it, and once it may have changed. In between
// the meter takes it to have been what it was last.
void sample(power_meter &meter);

// Commands that may change what the blade draws, with the meter looking on.
command_table metered(const std::shared_ptr<power_meter> &meter, command_table commands);

command_table consumption_commands(const std::shared_ptr<power_meter> &meter,
                                   std::shared_ptr<const budget_state> budget,
                                   std::shared_ptr<const power_state> power);

} // namespace chassisd::simulated

#endif
