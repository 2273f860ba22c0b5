#include "cli/exporter/event_counter.h"

#include "cli/targets.h"
#include "producer/blade_events.h"

namespace cli
{

void event_counter::count()
{
    const std::lock_guard lock(mutex_);
    if (!reader_)
        reader_.emplace();
    const auto found = [this](const ipmi_interrupt &interrupt) {
        if (!chosen_.empty() && !is_among(chosen_, interrupt.location))
            return;
        const std::string blade = target_name(interrupt.location);
        for (uint32_t event = 0; (event = imc_event_set_NEXT_ASSERTED(event, &interrupt.ies)) != 0;)
            ++events_[{blade, event}];
    };
    reader_->read_on(found, [this](uint32_t first, uint32_t last) { missed_ += last - first + 1; });
}

void event_counter::begin_with(const std::string &blade)
{
    const std::lock_guard lock(mutex_);
    for (uint32_t event = 1; event <= IMC_EVENTS; ++event)
        if (ruk::host::blade_event_name(event))
            events_[{blade, event}];
}

std::vector<metric> event_counter::metrics() const
{
    metric events = {"ruk_ipmi_events_total", "counter",
                     "Events of the blade that came since the exporter began."};
    const std::lock_guard lock(mutex_);
    for (const auto &[which, count] : events_) {
        const char *name = ruk::host::blade_event_name(which.second);
        events.samples.push_back({{{"blade", which.first},
                                   {"event", std::to_string(which.second)},
                                   {"name", name ? name : ""}},
                                  static_cast<double>(count)});
    }
    return {events,
            {"ruk_ipmi_interrupts_missed_total",
             "counter",
             "Interrupts that were gone from the ring before the exporter could read them.",
             {{{}, static_cast<double>(missed_)}}}};
}

} // namespace cli
