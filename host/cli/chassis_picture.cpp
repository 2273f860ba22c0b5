#include "cli/chassis_picture.h"

#include <algorithm>

#include "cli/output.h"
#include "cli/terminal.h"

namespace cli
{

namespace
{

struct cell {
    std::string text = "-";
    look as = look::faint;
};

cell slot(const json &blade, const canvas &)
{
    return {blade["blade"], look::heading};
}

cell name(const json &blade, const canvas &)
{
    return {value_text(blade["name"]), look::plain};
}

cell serial_number(const json &blade, const canvas &)
{
    return {value_text(blade["serial_number"]), look::plain};
}

cell power(const json &blade, const canvas &on)
{
    if (blade["power"].is_null())
        return {};
    const bool is_on = blade["power"] == "on";
    const std::string mark = !on.unicode ? "" : is_on ? "● " : "○ ";
    return {mark + value_text(blade["power"]), is_on ? look::good : look::faint};
}

cell post_code(const json &blade, const canvas &)
{
    if (blade["post_code"].is_null())
        return {};
    // Most codes are a byte: no more of the leading zeros than need be.
    std::string digits = blade["post_code"].get<std::string>().substr(2);
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 2));
    return {"0x" + digits, look::plain};
}

cell leds(const json &blade, const canvas &on)
{
    const json &blinking = blade["blinking_leds"];
    if (blinking.is_null() || blinking.empty())
        return {blinking.is_null() ? "-" : "off", look::faint};
    return {(on.unicode ? "✦ " : "* ") + value_text(blinking), look::blinking};
}

cell lcd(const json &blade, const canvas &)
{
    return {value_text(blade["lcd"]), blade["lcd"] == "hidden" ? look::warning : look::faint};
}

look fullness(uint32_t percent)
{
    return percent >= 100 ? look::bad : percent >= 75 ? look::warning : look::plain;
}

cell log_entries(const json &blade, const canvas &)
{
    const json &log = blade["sel"];
    if (log.is_null())
        return {};
    return {value_text(log["entries"]), fullness(log["percent"].get<uint32_t>())};
}

cell log_gauge(const json &blade, const canvas &on)
{
    constexpr uint32_t length = 10;
    const json &log = blade["sel"];
    if (log.is_null())
        return {"", look::plain};
    const auto percent = log["percent"].get<uint32_t>();
    // What is there shows, and what is not full does not look so.
    const uint32_t marks =
        std::min((percent * length + 99) / 100, percent < 100 ? length - 1 : length);
    std::string gauge;
    for (uint32_t at = 0; at < length; ++at)
        gauge += at < marks ? (on.unicode ? "█" : "#") : (on.unicode ? "░" : ".");
    return {gauge, percent < 75 ? look::good : fullness(percent)};
}

cell events(const json &blade, const canvas &)
{
    return {value_text(blade["events"]), look::plain};
}

cell latest_event(const json &blade, const canvas &)
{
    const json &number = blade["latest_event"];
    const json &known = blade["latest_event_name"];
    return {value_text(known.is_null() ? number : known), look::plain};
}

struct column {
    const char *title;
    bool to_the_right;
    int rank; // of those that do not fit, the highest ranks go first
    cell (*of)(const json &blade, const canvas &on);
};

constexpr column columns[] = {
    {"SLOT", false, 0, slot},
    {"BLADE", false, 0, name},
    {"SERIAL NUMBER", false, 3, serial_number},
    {"POWER", false, 0, power},
    {"POST", true, 1, post_code},
    {"LEDS", false, 0, leds},
    {"LCD", false, 1, lcd},
    {"SEL", true, 0, log_entries},
    {"FILLED", false, 4, log_gauge},
    {"EVENTS", true, 1, events},
    {"LATEST EVENT", false, 2, latest_event},
};

bool is_present(const json &blade)
{
    return blade["state"] == "present";
}

// One line for all of a run of empty slots.
json folded(const json &blades)
{
    json rows = json::array();
    std::string run;  // its first slot
    std::string next; // the slot by which it would go on
    for (const json &blade : blades) {
        const std::string slot = blade["blade"];
        const bool empty = blade["state"] == "empty" && slot.find('.') == std::string::npos;
        if (empty && slot == next) {
            rows.back()["blade"] = run + "-" + slot;
        } else {
            rows.push_back(blade);
            run = slot;
        }
        next = empty ? std::to_string(std::stoi(slot) + 1) : "";
    }
    return rows;
}

struct placed_column {
    const column *what;
    size_t width;
};

size_t total_width(const std::vector<placed_column> &placed)
{
    size_t width = 0;
    for (const placed_column &each : placed)
        width += each.width + gap;
    return width - gap;
}

// What the last column, if it is text, can spare: it may be cut short, but not its title.
size_t spare_width(const std::vector<placed_column> &placed)
{
    const placed_column &last = placed.back();
    return last.what->to_the_right ? 0 : last.width - columns_of(last.what->title);
}

// As many columns as fit, as wide as what stands in them.
std::vector<placed_column> layout(const json &rows, const canvas &on)
{
    std::vector<placed_column> placed;
    for (const column &each : columns) {
        size_t width = columns_of(each.title);
        for (const json &row : rows)
            if (is_present(row) || each.of == slot)
                width = std::max(width, columns_of(each.of(row, on).text));
        placed.push_back({&each, width});
    }
    const auto lower_rank = [](const placed_column &one, const placed_column &other) {
        return one.what->rank < other.what->rank;
    };
    while (total_width(placed) - spare_width(placed) > on.width) {
        const auto first_to_go = std::max_element(placed.begin(), placed.end(), lower_rank);
        if (first_to_go->what->rank == 0)
            break;
        placed.erase(first_to_go);
    }
    const size_t width = total_width(placed);
    placed.back().width -= std::min(width - std::min(width, on.width), spare_width(placed));
    return placed;
}

std::string aligned(const std::string &text, const placed_column &in)
{
    const size_t taken = columns_of(text);
    return in.what->to_the_right && taken < in.width ? std::string(in.width - taken, ' ') + text
                                                     : fitted(text, in.width);
}

// The remark that stands for all columns but the first.
cell remark(const json &blade)
{
    if (blade["state"] == "silent")
        return {value_text(blade["error"]["message"]), look::bad};
    return {blade["state"] == "asked" ? "asked ..." : "empty", look::faint};
}

std::string row(const json &blade, const std::vector<placed_column> &placed, const canvas &on)
{
    std::string line;
    size_t used = 0;
    const auto add = [&](const std::string &text, look as) {
        const size_t room = on.width == no_width ? no_width : on.width - std::min(used, on.width);
        const std::string shown = columns_of(text) <= room ? text : fitted(text, room);
        line += painted(shown, as, on);
        used += columns_of(shown);
    };
    for (const placed_column &each : placed) {
        const bool first = &each == &placed.front();
        if (!first && !is_present(blade)) {
            add("  " + remark(blade).text, remark(blade).as);
            break;
        }
        const cell shown = each.what->of(blade, on);
        if (!first)
            add(std::string(gap, ' '), look::plain);
        const bool ends_the_line = &each == &placed.back() && !each.what->to_the_right;
        add(ends_the_line ? shown.text : aligned(shown.text, each), shown.as);
    }
    return line;
}

// "3 blades in 16 slots: 2 on, 1 off"
std::string summary(const json &seen)
{
    size_t blades = 0;
    std::vector<std::pair<const char *, size_t>> counts = {
        {"on", 0}, {"off", 0}, {"of unknown power", 0}, {"silent", 0}, {"asked", 0}};
    for (const json &blade : seen["blades"]) {
        const json kind = !is_present(blade)         ? blade["state"]
                          : blade["power"].is_null() ? json("of unknown power")
                                                     : blade["power"];
        for (auto &[name, count] : counts)
            if (kind == name)
                ++count;
        if (blade["state"] == "present" || blade["state"] == "silent")
            ++blades;
    }
    std::string text = std::to_string(blades) + (blades == 1 ? " blade in " : " blades in ") +
                       value_text(seen["slots"]) + " slots";
    const char *before = ": ";
    for (const auto &[name, count] : counts) {
        if (count == 0)
            continue;
        text += before + std::to_string(count) + " " + name;
        before = ", ";
    }
    return text;
}

} // namespace

std::vector<std::string> chassis_picture(const json &seen, const std::string &time,
                                         const canvas &on)
{
    const json rows = folded(seen["blades"]);
    const std::vector<placed_column> placed = layout(rows, on);
    const size_t width = std::min(total_width(placed), on.width);

    std::vector<std::string> lines = {headline(summary(seen), time, width, on)};
    std::string titles;
    for (const placed_column &each : placed)
        titles += (titles.empty() ? "" : std::string(gap, ' ')) + aligned(each.what->title, each);
    lines.push_back(painted(fitted(titles, width), look::faint, on));
    std::string rule;
    for (size_t at = 0; at < width; ++at)
        rule += on.unicode ? "─" : "-";
    lines.push_back(painted(rule, look::faint, on));
    for (const json &blade : rows)
        lines.push_back(row(blade, placed, on));
    return lines;
}

} // namespace cli
