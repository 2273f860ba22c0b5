// LLDP connection information, which the blade keeps for its operating system.
#ifndef RUK_HOST_CHASSISD_SIMULATED_LLDP_H
#define RUK_HOST_CHASSISD_SIMULATED_LLDP_H

#include "chassisd/simulated/parameter.h"

namespace chassisd::simulated
{

parameter_table lldp_parameters();

} // namespace chassisd::simulated

#endif
