// The switch of the blade's sled: its configuration, its links, the maps of dynamic MAC addresses.
#ifndef RUK_HOST_CHASSISD_SIMULATED_SLED_SWITCH_H
#define RUK_HOST_CHASSISD_SIMULATED_SLED_SWITCH_H

#include "chassisd/simulated/parameter.h"

namespace chassisd::simulated
{

// How long the blade works on a configuration that it was given.
constexpr std::chrono::milliseconds configuration_duration{1000};

parameter_table sled_switch_parameters(const environment &env);

// Writes and reads maps of MAC addresses.
handler mac_map_handler();

} // namespace chassisd::simulated

#endif
