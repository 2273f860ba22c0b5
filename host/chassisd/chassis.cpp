#include "chassisd/chassis.h"

#include <algorithm>
#include <set>

#include "chassisd/bridge/bridge.h"
#include "chassisd/simulated/controller.h"
#include "platform/log.h"
#include "platform/message_service.h"

namespace chassisd
{

using ruk::host::blade_event;

namespace
{

std::pair<uint8_t, uint8_t> place_of(const blade_config &config)
{
    return {config.slot, config.sub_slot};
}

blade_location location_of(const blade_config &config)
{
    return {config.slot, config.sub_slot, {0, 0}};
}

std::unique_ptr<blade> make_blade(const blade_config &config, const chassis::event_sink &events)
{
    if (const auto *bridged = std::get_if<bridge_config>(&config.kind))
        return make_bridge(*bridged);
    const auto alert = [events, at = location_of(config)](blade_event event, const bytes &data) {
        events(at, event, data);
    };
    return make_simulated_blade(std::get<simulated_config>(config.kind), config.slot,
                                config.sub_slot, alert);
}

} // namespace

chassis::chassis(const chassis_config &config, event_sink events) : events_(std::move(events))
{
    bays_ = new_bays(config);
}

chassis::~chassis()
{
    for (const auto &[at, each] : bays_)
        each.blade->stop(); // all at once, before each one is waited for
}

void chassis::apply(const chassis_config &config)
{
    // All that can fail comes first.
    removed_.erase(std::remove_if(removed_.begin(), removed_.end(),
                                  [](const auto &blade) { return blade->has_ended(); }),
                   removed_.end());
    removed_.reserve(removed_.size() + bays_.size());
    bays inserted = new_bays(config);
    std::set<place> staying;
    for (const blade_config &each : config.blades)
        if (inserted.count(place_of(each)) == 0)
            staying.insert(place_of(each));

    for (auto each = bays_.begin(); each != bays_.end();) {
        if (staying.count(each->first) != 0) {
            ++each;
            continue;
        }
        remove(each->second);
        each = bays_.erase(each);
    }
    for (const auto &[at, each] : inserted)
        announce(each.config, blade_event::inserted, "inserted");
    bays_.merge(inserted);
}

worker *chassis::at(const blade_location &location) const
{
    const auto found = bays_.find({location.slot_id, location.sub_slot_id});
    return found == bays_.end() ? nullptr : found->second.blade.get();
}

// The blades of the configuration that are not there as it says.
chassis::bays chassis::new_bays(const chassis_config &config) const
{
    bays made;
    for (const blade_config &each : config.blades) {
        const auto found = bays_.find(place_of(each));
        if (found == bays_.end() || !(found->second.config == each))
            made[place_of(each)] = {
                each, std::make_unique<worker>(make_blade(each, events_), each.faults)};
    }
    return made;
}

void chassis::remove(bay &from)
{
    from.blade->retire();
    removed_.push_back(std::move(from.blade));
    announce(from.config, blade_event::removed, "removed");
}

void chassis::announce(const blade_config &blade, blade_event event, const char *what) const
{
    const blade_location at = location_of(blade);
    slog_nlog("blade %s %s\n", ruk_blade_clt_to_str(&at), what);
    events_(at, event, {});
}

} // namespace chassisd
