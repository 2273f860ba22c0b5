#include "cli/targets.h"

#include <algorithm>

#include "cli/failure.h"
#include "cli/numbers.h"

namespace cli
{

namespace
{

bool same(const blade_location &one, const blade_location &other)
{
    return one.slot_id == other.slot_id && one.sub_slot_id == other.sub_slot_id;
}

void add(std::vector<blade_location> &targets, int64_t slot, int64_t sub_slot)
{
    const blade_location blade = {static_cast<uint8_t>(slot), static_cast<uint8_t>(sub_slot), {}};
    const auto known = [&](const blade_location &other) { return same(blade, other); };
    if (std::none_of(targets.begin(), targets.end(), known))
        targets.push_back(blade);
}

int64_t slot(const std::string &text)
{
    return parse_number(text, 1, 255);
}

void add_item(std::vector<blade_location> &targets, const std::string &item)
{
    if (const size_t dot = item.find('.'); dot != item.npos) {
        add(targets, slot(item.substr(0, dot)), parse_number(item.substr(dot + 1), 0, 255));
        return;
    }
    const size_t dash = item.find('-');
    const int64_t first = slot(item.substr(0, dash));
    const int64_t last = dash == item.npos ? first : slot(item.substr(dash + 1));
    if (last < first)
        throw usage_failure("the range runs backwards");
    for (int64_t each = first; each <= last; ++each)
        add(targets, each, 0);
}

} // namespace

std::vector<blade_location> parse_targets(const std::string &text)
{
    std::vector<blade_location> targets;
    for (size_t start = 0; start <= text.size();) {
        const size_t comma = std::min(text.find(',', start), text.size());
        const std::string item = text.substr(start, comma - start);
        try {
            add_item(targets, item);
        } catch (const failure &wrong) {
            throw usage_failure("blade \"" + item + "\": " + wrong.what() +
                                "; blades are named like 1-8,10,3.2");
        }
        start = comma + 1;
    }
    return targets;
}

std::string target_name(const blade_location &location)
{
    const std::string slot = std::to_string(location.slot_id);
    return location.sub_slot_id == 0 ? slot : slot + "." + std::to_string(location.sub_slot_id);
}

} // namespace cli
