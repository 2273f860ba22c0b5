#include "cli/places.h"

#include <algorithm>

#include "platform/platform_info.h"

namespace cli
{

uint32_t slot_count()
{
    return _gPlatInfo()[PLAT_INFO_SLOTS];
}

std::vector<blade_location> all_places()
{
    constexpr uint8_t last_sub_slot = 4;
    std::vector<blade_location> places;
    const uint32_t slots = std::min<uint32_t>(slot_count(), UINT8_MAX);
    for (uint32_t slot = 1; slot <= slots; ++slot)
        for (uint8_t sub_slot = 0; sub_slot <= last_sub_slot; ++sub_slot)
            places.push_back({static_cast<uint8_t>(slot), sub_slot, {}});
    return places;
}

} // namespace cli
