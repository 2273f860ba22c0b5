// The configuration of the blade's LAN channel.
#ifndef RUK_HOST_CHASSISD_SIMULATED_LAN_H
#define RUK_HOST_CHASSISD_SIMULATED_LAN_H

#include "chassisd/simulated/standard_parameter.h"

namespace chassisd::simulated
{

constexpr uint8_t lan_channel = 1;

// Parameters that others than the LAN's commands look at.
constexpr uint8_t lan_address = 3;
constexpr uint8_t lan_address_source = 4;

standard_parameters default_lan(const environment &env);

command_table lan_commands(const std::shared_ptr<standard_parameters> &lan);

} // namespace chassisd::simulated

#endif
