// The blade's power: Chassis Control, its status, and the buttons of the front panel.
#ifndef RUK_HOST_CHASSISD_SIMULATED_POWER_H
#define RUK_HOST_CHASSISD_SIMULATED_POWER_H

#include "chassisd/simulated/sel.h"

namespace chassisd::simulated
{

struct power_state {
    bool on = true;
    bool by_command = false; // it came on because somebody asked
    time_point booted{};     // when the system began to boot last; at first, long ago
};

command_table power_commands(const environment &env, std::shared_ptr<power_state> power,
                             std::shared_ptr<event_log> log);

} // namespace chassisd::simulated

#endif
