// The state of the controller itself and of what it offers at a distance: screen, keyboard, media.
#ifndef RUK_HOST_CHASSISD_SIMULATED_STATUS_H
#define RUK_HOST_CHASSISD_SIMULATED_STATUS_H

#include "chassisd/simulated/power.h"

namespace chassisd::simulated
{

// How long the controller waits for new firmware that does not come.
constexpr std::chrono::milliseconds firmware_update_patience{5000};

command_table status_commands(const environment &env, std::shared_ptr<const power_state> power);

} // namespace chassisd::simulated

#endif
