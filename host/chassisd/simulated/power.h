// The blade's power: Chassis Control, its status, and the buttons of the front panel.
#ifndef RUK_HOST_CHASSISD_SIMULATED_POWER_H
#define RUK_HOST_CHASSISD_SIMULATED_POWER_H

#include <optional>

#include "chassisd/simulated/identify.h"
#include "chassisd/simulated/sel.h"

namespace chassisd::simulated
{

// How long the operating system takes to shut down, and how long a power cycle keeps the power off.
constexpr std::chrono::milliseconds shutdown_duration{1000};
constexpr std::chrono::milliseconds off_between{1000};

struct power_state {
    bool on = true;
    bool by_command = false;      // it came on because somebody asked
    time_point booted{};          // when the system began to boot last; at first, long ago
    uint32_t boots = 1;           // how often it did
    uint32_t times_turned_on = 1; // how often the power came on
};

class power_switch;

std::shared_ptr<power_switch> make_power_switch(const environment &env,
                                                std::shared_ptr<power_state> power,
                                                std::shared_ptr<event_log> log);

// Does what was asked for earlier and is due now; whether there was any such thing.
bool catch_up(power_switch &controlled);

// When the next such thing is due.
std::optional<time_point> next_change(const power_switch &controlled);

command_table power_commands(const environment &env, std::shared_ptr<power_switch> controlled,
                             std::shared_ptr<const identify_state> identify);

} // namespace chassisd::simulated

#endif
