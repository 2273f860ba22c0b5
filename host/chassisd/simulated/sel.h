// The System Event Log and its clock.
#ifndef RUK_HOST_CHASSISD_SIMULATED_SEL_H
#define RUK_HOST_CHASSISD_SIMULATED_SEL_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

constexpr size_t sel_capacity = 512;
constexpr size_t sel_record_size = 16;

// How long erasing takes.
constexpr std::chrono::milliseconds erase_duration{500};

command_table sel_commands(const environment &env);

} // namespace chassisd::simulated

#endif
