#include "cli/targets.h"

#include <algorithm>

#include "cli/lists.h"
#include "cli/numbers.h"

namespace cli
{

namespace
{

void add(std::vector<blade_location> &targets, int64_t slot, int64_t sub_slot)
{
    const blade_location blade = {static_cast<uint8_t>(slot), static_cast<uint8_t>(sub_slot), {}};
    if (!is_among(targets, blade))
        targets.push_back(blade);
}

void add_item(std::vector<blade_location> &targets, const std::string &item)
{
    constexpr int64_t most = 255;
    const size_t dot = item.find('.');
    if (dot == std::string::npos)
        parse_range(item, 1, most, [&](int64_t slot) { add(targets, slot, 0); });
    else
        add(targets, parse_number(item.substr(0, dot), 1, most),
            parse_number(item.substr(dot + 1), 0, most));
}

} // namespace

std::vector<blade_location> parse_targets(const std::string &text)
{
    std::vector<blade_location> targets;
    parse_list(text, "blade", "blades are named like 1-8,10,3.2",
               [&](const std::string &item) { add_item(targets, item); });
    return targets;
}

bool is_among(const std::vector<blade_location> &targets, const blade_location &location)
{
    return std::any_of(targets.begin(), targets.end(), [&](const blade_location &each) {
        return each.slot_id == location.slot_id && each.sub_slot_id == location.sub_slot_id;
    });
}

std::string target_name(const blade_location &location)
{
    const std::string slot = std::to_string(location.slot_id);
    return location.sub_slot_id == 0 ? slot : slot + "." + std::to_string(location.sub_slot_id);
}

} // namespace cli
