// What the blade alerted its chassis to, and alerts on demand.
#ifndef RUK_HOST_CHASSISD_SIMULATED_ALERTS_H
#define RUK_HOST_CHASSISD_SIMULATED_ALERTS_H

#include "chassisd/simulated/power.h"

namespace chassisd::simulated
{

class alert_history;

std::shared_ptr<alert_history> make_alert_history();

// Alerts whom `alert` alerts, and keeps the event.
event_sink kept_by(std::shared_ptr<alert_history> history, event_sink alert);

command_table alert_commands(const environment &env, std::shared_ptr<const alert_history> history,
                             std::shared_ptr<event_log> log,
                             std::shared_ptr<const power_state> power);

} // namespace chassisd::simulated

#endif
