#include "cli/exporter/chassis_metrics.h"

#include <algorithm>
#include <iterator>

#include "cli/places.h"
#include "cli/shared_region.h"
#include "cli/targets.h"
#include "ruk_ipmi/timeouts.h"
#include "ruk_ipmi/version.h"

namespace cli
{

namespace
{

using std::chrono::steady_clock;

struct blade_gauge {
    const char *name;
    const char *help;
    std::optional<double> blade_reading::*value;
};

constexpr blade_gauge blade_gauges[] = {
    {"ruk_ipmi_blade_present", "Whether there is a blade.", &blade_reading::present},
    {"ruk_ipmi_blade_up", "Whether the blade answered in time.", &blade_reading::up},
    {"ruk_ipmi_blade_power_on", "Whether the blade's power is on.", &blade_reading::power_on},
    {"ruk_ipmi_blade_power_watts", "What the blade draws.", &blade_reading::power_watts},
    {"ruk_ipmi_sel_entries", "Entries in the blade's event log.", &blade_reading::sel_entries},
    {"ruk_ipmi_sel_free_bytes", "What is free in the blade's event log, 65535 at the most.",
     &blade_reading::sel_free_bytes},
    {"ruk_ipmi_sel_overflow", "Whether the blade's event log has lost entries, being full.",
     &blade_reading::sel_overflow}};

metric gauge(const char *name, const char *help, double value, labels its_labels = {})
{
    return {name, "gauge", help, {{std::move(its_labels), value}}};
}

labels blade_label(const blade_location &location)
{
    return {{"blade", target_name(location)}};
}

bool has_blade(const blade_reading &reading)
{
    return reading.present == 1;
}

std::vector<blade_location> blades_in(const readings &seen)
{
    std::vector<blade_location> blades;
    for (const auto &[place, reading] : seen)
        if (has_blade(reading))
            blades.push_back(place);
    return blades;
}

std::vector<metric> chassis_gauges(const readings &seen)
{
    const bool served = std::all_of(
        seen.begin(), seen.end(), [](const auto &each) { return each.second.present.has_value(); });
    return {
        gauge("ruk_ipmi_build_info", "The exporter's version.", 1, {{"version", RUK_IPMI_VERSION}}),
        gauge("ruk_ipmi_chassis_up", "Whether the chassis' message service is there.", served),
        gauge("ruk_ipmi_chassis_slots", "Slots of the chassis.", slot_count())};
}

std::vector<metric> gauges_of_blades(const readings &seen)
{
    std::vector<metric> gauges;
    for (const blade_gauge &each : blade_gauges) {
        gauges.push_back({each.name, "gauge", each.help});
        for (const auto &[place, reading] : seen)
            if (const auto value = reading.*each.value)
                gauges.back().samples.push_back({blade_label(place), *value});
    }
    return gauges;
}

// Of those in use: the table has an entry for some locations, and there may be no table.
std::vector<metric> timeout_metrics(const std::vector<blade_location> &blades)
{
    metric raised = {"ruk_ipmi_timeouts_raised_total", "counter",
                     "How often requests to the blade had to be repeated with a longer time-out."};
    metric sessions = {"ruk_ipmi_timeout_sessions_total", "counter",
                       "How often that began a new session."};
    try {
        for (const blade_location &each : blades) {
            uint32_t bumps = 0;
            uint32_t begun = 0;
            if (GetTimeouts(shared_region(), &each, &bumps, &begun) != 0)
                continue;
            raised.samples.push_back({blade_label(each), static_cast<double>(bumps)});
            sessions.samples.push_back({blade_label(each), static_cast<double>(begun)});
        }
    } catch (const failure &) { // nobody has served the chassis yet
    }
    return {raised, sessions};
}

void append(std::vector<metric> &all, std::vector<metric> more)
{
    std::move(more.begin(), more.end(), std::back_inserter(all));
}

} // namespace

chassis_metrics::chassis_metrics(std::vector<blade_location> chosen,
                                 std::chrono::milliseconds patience)
    : chosen_(std::move(chosen)),
      patience_(patience),
      events_(chosen_)
{
}

std::string chassis_metrics::scrape()
{
    std::shared_future<std::string> text;
    {
        const std::lock_guard lock(mutex_);
        const bool over = !under_way_.valid() ||
                          under_way_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        if (over)
            under_way_ = std::async(std::launch::async, [this] { return look(); }).share();
        text = under_way_;
    }
    return text.get();
}

readings chassis_metrics::read_blades()
{
    const std::vector<blade_location> places = chosen_.empty() ? all_places() : chosen_;
    std::vector<blade_reading> found(places.size());
    questions_.drop_late_answers();
    questions_.ask(
        places.size(), [this, places](size_t at) { return read_blade(places[at], exchanges_); },
        patience_, [&](size_t at, auto &answer) { found[at] = answer.get(); });

    readings told;
    for (size_t at = 0; at < places.size(); ++at) {
        if (chosen_.empty() && places[at].sub_slot_id != 0) {
            if (!has_blade(found[at]))
                continue;
            if (told.back().second.present == 0) // its slot, which so is not empty
                told.pop_back();
        }
        told.push_back({places[at], found[at]});
    }
    return told;
}

std::string chassis_metrics::look()
{
    const auto start = steady_clock::now();
    const readings seen = read_blades();
    const std::vector<blade_location> blades = blades_in(seen);
    for (const blade_location &each : blades)
        events_.begin_with(target_name(each));
    try {
        events_.count();
    } catch (const failure &) { // told by who counts all the time
    }

    std::vector<metric> all = chassis_gauges(seen);
    append(all, gauges_of_blades(seen));
    append(all, events_.metrics());
    append(all, timeout_metrics(blades));
    append(all, exchanges_.metrics());
    const std::chrono::duration<double> took = steady_clock::now() - start;
    all.push_back(gauge("ruk_ipmi_scrape_duration_seconds", "How long it took to find all this.",
                        took.count()));
    return metrics_text(all);
}

} // namespace cli
