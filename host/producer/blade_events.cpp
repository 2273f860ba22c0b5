#include "producer/blade_events.h"

namespace ruk::host
{

const char *blade_event_name(uint32_t event)
{
    switch (static_cast<blade_event>(event)) {
    case blade_event::inserted:
        return "blade inserted";
    case blade_event::removed:
        return "blade removed";
    case blade_event::powered_on:
        return "power on";
    case blade_event::powered_off:
        return "power off";
    case blade_event::power_cycled:
        return "power cycle";
    case blade_event::reset:
        return "reset";
    case blade_event::log_nearly_full:
        return "SEL nearly full";
    case blade_event::log_full:
        return "SEL full";
    case blade_event::non_critical_crossed:
        return "non-critical threshold crossed";
    case blade_event::non_critical_restored:
        return "non-critical threshold restored";
    case blade_event::critical_crossed:
        return "critical threshold crossed";
    case blade_event::critical_restored:
        return "critical threshold restored";
    case blade_event::non_recoverable_crossed:
        return "non-recoverable threshold crossed";
    case blade_event::non_recoverable_restored:
        return "non-recoverable threshold restored";
    }
    return nullptr;
}

} // namespace ruk::host
