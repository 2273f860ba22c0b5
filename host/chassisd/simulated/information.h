// Information that the chassis manager passes on to the blade, about the chassis, its storage and
// the MAC addresses of I/O modules.
#ifndef RUK_HOST_CHASSISD_SIMULATED_INFORMATION_H
#define RUK_HOST_CHASSISD_SIMULATED_INFORMATION_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

// Maps of MAC addresses are the sled's.
command_table information_commands(handler access_mac_maps);

} // namespace chassisd::simulated

#endif
