#include "chassisd/chassis.h"

#include "chassisd/bridge/bridge.h"
#include "chassisd/simulated/controller.h"

namespace chassisd
{

namespace
{

std::unique_ptr<blade> make_blade(const blade_config &config)
{
    if (const auto *bridged = std::get_if<bridge_config>(&config.kind))
        return make_bridge(*bridged);
    return make_simulated_blade(std::get<simulated_config>(config.kind), config.slot,
                                config.sub_slot);
}

} // namespace

chassis::chassis(const chassis_config &config)
{
    for (const blade_config &each : config.blades)
        blades_[{each.slot, each.sub_slot}] =
            std::make_unique<worker>(make_blade(each), each.faults);
}

chassis::~chassis()
{
    for (auto &[location, each] : blades_)
        each->stop(); // all at once, before each one is waited for
}

worker *chassis::at(const blade_location &location) const
{
    const auto found = blades_.find({location.slot_id, location.sub_slot_id});
    return found == blades_.end() ? nullptr : found->second.get();
}

} // namespace chassisd
