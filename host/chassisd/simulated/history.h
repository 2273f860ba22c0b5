// What had happened to the blade before anybody looked: the entries its log starts with.
#ifndef RUK_HOST_CHASSISD_SIMULATED_HISTORY_H
#define RUK_HOST_CHASSISD_SIMULATED_HISTORY_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

struct past_event {
    uint32_t age_s; // how long ago
    bytes record;   // a SEL record but for its ID and its time stamp
};

// `count` events, oldest first, the last of them a short while ago.
std::vector<past_event> past_events(size_t count);

} // namespace chassisd::simulated

#endif
