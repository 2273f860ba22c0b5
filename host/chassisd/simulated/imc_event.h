// The miscellaneous IMC event record: the last event that the blade alerted its chassis to.
#ifndef RUK_HOST_CHASSISD_SIMULATED_IMC_EVENT_H
#define RUK_HOST_CHASSISD_SIMULATED_IMC_EVENT_H

#include "chassisd/simulated/parameter.h"

namespace chassisd::simulated
{

class imc_event;

std::shared_ptr<imc_event> make_imc_event();

// Alerts whom `alert` alerts, and keeps the event.
event_sink kept_by(std::shared_ptr<imc_event> event, event_sink alert);

parameter_table imc_event_parameters(std::shared_ptr<const imc_event> event);

} // namespace chassisd::simulated

#endif
