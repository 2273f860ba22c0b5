// The chassis: which blade stands at which location.
#ifndef RUK_HOST_CHASSISD_CHASSIS_H
#define RUK_HOST_CHASSISD_CHASSIS_H

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "chassisd/config.h"
#include "chassisd/worker.h"
#include "producer/blade_events.h"
#include "ruk_ipmi/types.h"

namespace chassisd
{

// Used by one thread. The events come from the blades' own threads too.
class chassis
{
  public:
    using event_sink =
        std::function<void(const blade_location &, ruk::host::blade_event, const bytes &data)>;

    // Blades that are there from the start were not inserted: no event tells of them.
    chassis(const chassis_config &config, event_sink events);
    ~chassis();

    // Makes the chassis what the configuration says. What is new is inserted, what is not there any
    // more is removed, what changed is both; blades that are as before notice nothing. Waits for no
    // blade, and changes nothing when it throws.
    void apply(const chassis_config &config);

    // The blade at a location; null when there is none.
    worker *at(const blade_location &location) const;

  private:
    struct bay {
        blade_config config;
        std::unique_ptr<worker> blade;
    };
    using place = std::pair<uint8_t, uint8_t>; // slot and sub-slot
    using bays = std::map<place, bay>;

    bays new_bays(const chassis_config &config) const;
    void remove(bay &from);
    void announce(const blade_config &blade, ruk::host::blade_event event, const char *what) const;

    event_sink events_;
    bays bays_;
    std::vector<std::unique_ptr<worker>> removed_; // that may still be at their last request
};

} // namespace chassisd

#endif
