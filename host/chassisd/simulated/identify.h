// The identify LED, by which somebody in front of the chassis finds the blade.
#ifndef RUK_HOST_CHASSISD_SIMULATED_IDENTIFY_H
#define RUK_HOST_CHASSISD_SIMULATED_IDENTIFY_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

struct identify_state {
    bool forced = false; // lit until somebody says otherwise
    time_point until{};  // otherwise
};

// In IPMI's numbers, as Get Chassis Status tells them.
enum identification : uint8_t { not_identified = 0, identified_for_a_while = 1, identified = 2 };

identification identification_at(time_point now, const identify_state &state);

command_table identify_commands(const environment &env, std::shared_ptr<identify_state> state);

} // namespace chassisd::simulated

#endif
