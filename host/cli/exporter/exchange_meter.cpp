#include "cli/exporter/exchange_meter.h"

namespace cli
{

void exchange_meter::answered(const std::string &blade, std::chrono::duration<double> took)
{
    const std::lock_guard lock(mutex_);
    counts &mine = blades_[blade];
    for (size_t at = 0; at < std::size(bounds); ++at)
        if (took.count() <= bounds[at])
            ++mine.within[at];
    ++mine.answers;
    mine.seconds += took.count();
}

void exchange_meter::failed(const std::string &blade, exit_code kind)
{
    const std::lock_guard lock(mutex_);
    ++blades_[blade].failures[kind];
}

std::vector<metric> exchange_meter::metrics() const
{
    metric durations = {"ruk_ipmi_exchange_duration_seconds", "histogram",
                        "How long the exporter's exchanges took that the blade answered."};
    metric failures = {"ruk_ipmi_exchange_failures_total", "counter",
                       "The exporter's questions that had no good answer, by kind of failure."};
    const std::lock_guard lock(mutex_);
    for (const auto &[blade, mine] : blades_) {
        const auto add = [&durations, blade = blade](double value, const char *suffix) {
            durations.samples.push_back({{{"blade", blade}}, value, suffix});
        };
        const auto add_bucket = [&](uint64_t count, const std::string &bound) {
            add(static_cast<double>(count), "_bucket");
            durations.samples.back().labels.push_back({"le", bound});
        };
        for (size_t at = 0; at < std::size(bounds); ++at)
            add_bucket(mine.within[at], number_text(bounds[at]));
        add_bucket(mine.answers, "+Inf");
        add(mine.seconds, "_sum");
        add(static_cast<double>(mine.answers), "_count");
        for (const auto &[kind, count] : mine.failures)
            failures.samples.push_back(
                {{{"blade", blade}, {"kind", kind_name(kind)}}, static_cast<double>(count)});
    }
    return {durations, failures};
}

} // namespace cli
