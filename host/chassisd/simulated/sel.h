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

// From how many entries on the log counts as nearly full: three quarters.
constexpr size_t sel_nearly_full = sel_capacity / 4 * 3;

class event_log;

std::shared_ptr<event_log> make_event_log(const environment &env);

command_table sel_commands(const std::shared_ptr<event_log> &log);

// Logs an event of the blade's own devices, a record but for its ID and its time stamp, and alerts
// the chassis to it. One that finds no room is lost to the log only: its ID is then 0.
void report(event_log &log, blade_event event, bytes record);

} // namespace chassisd::simulated

#endif
