// The events that this host's simulated blades assert in the interrupt ring; docs/events.md tells
// when each is, and what its interrupt holds. Every eight numbers, a byte of an event set, are one
// subject, so that a reader can ask for all of a subject and others can join it.
#ifndef RUK_HOST_PRODUCER_BLADE_EVENTS_H
#define RUK_HOST_PRODUCER_BLADE_EVENTS_H

#include <cstdint>

namespace ruk::host
{

enum class blade_event : uint32_t {
    inserted = 1,
    removed = 2,

    powered_on = 9,
    powered_off = 10,
    power_cycled = 11,
    reset = 12,

    log_nearly_full = 17,
    log_full = 18,

    // Of a sensor's thresholds, the lower and the upper ones alike.
    non_critical_crossed = 25,
    non_critical_restored = 26,
    critical_crossed = 27,
    critical_restored = 28,
    non_recoverable_crossed = 29,
    non_recoverable_restored = 30
};

// An event's name in a few words, e.g. "power off"; null when no event has the number.
const char *blade_event_name(uint32_t event);

} // namespace ruk::host

#endif
