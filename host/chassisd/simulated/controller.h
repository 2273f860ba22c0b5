// A simulated blade: an IPMI 2.0 controller that keeps its state in memory.
#ifndef RUK_HOST_CHASSISD_SIMULATED_CONTROLLER_H
#define RUK_HOST_CHASSISD_SIMULATED_CONTROLLER_H

#include <memory>

#include "chassisd/blade.h"
#include "chassisd/config.h"
#include "chassisd/simulated/device.h"

namespace chassisd
{

std::unique_ptr<blade> make_simulated_blade(const simulated_config &config, uint8_t slot,
                                            uint8_t sub_slot);

// The same with a clock of the caller's.
std::unique_ptr<blade> make_simulated_blade(const simulated_config &config, uint8_t slot,
                                            uint8_t sub_slot, simulated::time_source now);

} // namespace chassisd

#endif
