// What the blade can do, as its chassis manager asks and tells it.
#ifndef RUK_HOST_CHASSISD_SIMULATED_FEATURES_H
#define RUK_HOST_CHASSISD_SIMULATED_FEATURES_H

#include "chassisd/simulated/budget.h"
#include "chassisd/simulated/lan.h"

namespace chassisd::simulated
{

command_table feature_commands(const environment &env,
                               std::shared_ptr<const standard_parameters> lan,
                               std::shared_ptr<const budget_state> budget,
                               std::shared_ptr<const power_state> power);

} // namespace chassisd::simulated

#endif
