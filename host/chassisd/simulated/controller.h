// A simulated blade: an IPMI 2.0 controller that keeps its state in memory.
#ifndef RUK_HOST_CHASSISD_SIMULATED_CONTROLLER_H
#define RUK_HOST_CHASSISD_SIMULATED_CONTROLLER_H

#include <memory>

#include "chassisd/blade.h"
#include "chassisd/config.h"
#include "chassisd/simulated/device.h"

namespace chassisd
{

// A controller's clock starts with the host's time and then runs on by itself: an erasure must not
// take an hour because somebody set the host's clock back.
simulated::time_source free_running_clock();

// The blade's events go to `alert`, on the thread that its commands come from.
std::unique_ptr<blade> make_simulated_blade(const simulated_config &config, uint8_t slot,
                                            uint8_t sub_slot, simulated::event_sink alert,
                                            simulated::time_source now = free_running_clock());

} // namespace chassisd

#endif
