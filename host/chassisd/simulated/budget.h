// The power and the cooling that the chassis manager grants the blade, and those it asks for.
#ifndef RUK_HOST_CHASSISD_SIMULATED_BUDGET_H
#define RUK_HOST_CHASSISD_SIMULATED_BUDGET_H

#include "chassisd/simulated/sensors.h"

namespace chassisd::simulated
{

// What the chassis manager said last.
struct budget_state {
    uint16_t allocated_w = 400;
    uint16_t efficiency = 10000; // of the chassis' supplies, in hundredths of a percent
    uint8_t cpu_throttle = 0;    // percent, as is the next
    uint8_t memory_throttle = 0;
    uint8_t fan_status = 0; // of the chassis
};

command_table budget_commands(const std::shared_ptr<budget_state> &budget,
                              std::shared_ptr<const sensor_set> sensors,
                              std::shared_ptr<const power_state> power);

} // namespace chassisd::simulated

#endif
