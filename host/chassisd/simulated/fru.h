// The FRU inventory devices: the blade itself (0), its mezzanine card (1), a memory module (2).
#ifndef RUK_HOST_CHASSISD_SIMULATED_FRU_H
#define RUK_HOST_CHASSISD_SIMULATED_FRU_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

command_table fru_commands(const environment &env);

} // namespace chassisd::simulated

#endif
