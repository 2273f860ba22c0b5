#include "cli/power_plot.h"

#include <algorithm>
#include <array>

#include "cli/terminal.h"

namespace cli
{

namespace
{

constexpr size_t levels = 8;
constexpr std::array<const char *, levels> blocks = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr std::array<const char *, levels> letters = {".", ":", "-", "=", "+", "*", "%", "#"};

constexpr size_t number_width = 6;
constexpr size_t bars_without_terminal = 60;

std::string to_the_right(const std::string &text, size_t width)
{
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

// The latest sample; "-" where it was missed.
std::string latest(const power_history &history)
{
    const bool missed = history.samples.empty() || !history.samples.back();
    return missed ? "-" : std::to_string(*history.samples.back());
}

std::optional<power_range> common_range(const std::vector<power_history> &blades)
{
    std::optional<power_range> common;
    for (const power_history &each : blades)
        if (const auto range = range_of(each))
            common = common ? power_range{std::min(common->lowest, range->lowest),
                                          std::max(common->highest, range->highest)}
                            : *range;
    return common;
}

// What never changes stands in the middle.
size_t level(uint16_t sample, const power_range &scale)
{
    const auto span = static_cast<size_t>(scale.highest - scale.lowest);
    const auto above = static_cast<size_t>(sample - scale.lowest);
    return span == 0 ? levels / 2 : above * (levels - 1) / span;
}

// The latest samples, the last one at the right end.
std::string bars(const power_history &history, size_t room, const std::optional<power_range> &scale,
                 const canvas &on)
{
    const size_t shown = std::min(room, history.samples.size());
    std::string text(room - shown, ' ');
    for (auto each = history.samples.end() - static_cast<ptrdiff_t>(shown);
         each != history.samples.end(); ++each)
        text += *each ? (on.unicode ? blocks : letters)[level(**each, *scale)] : " ";
    return text;
}

std::string numbers(const std::string &now, const std::string &lowest, const std::string &highest)
{
    std::string text;
    for (const std::string &each : {now, lowest, highest})
        text += std::string(gap, ' ') + to_the_right(each, number_width);
    return text;
}

std::string row(const power_history &history, size_t name_width, size_t room,
                const std::optional<power_range> &scale, const canvas &on)
{
    const auto range = range_of(history);
    const std::string name = fitted(history.blade, name_width) + std::string(gap, ' ');
    if (!range)
        return painted(name, look::heading, on) +
               painted(fitted(history.remark, room), look::bad, on);
    return painted(name, look::heading, on) +
           painted(bars(history, room, scale, on), look::good, on) +
           painted(numbers(latest(history), std::to_string(range->lowest),
                           std::to_string(range->highest)),
                   history.remark.empty() ? look::plain : look::bad, on);
}

} // namespace

std::optional<power_range> range_of(const power_history &history)
{
    std::optional<power_range> range;
    for (const std::optional<uint16_t> &each : history.samples)
        if (each)
            range =
                range ? power_range{std::min(range->lowest, *each), std::max(range->highest, *each)}
                      : power_range{*each, *each};
    return range;
}

std::vector<std::string> power_plot(const std::vector<power_history> &blades,
                                    const std::string &about, const std::string &time,
                                    const canvas &on)
{
    size_t name_width = columns_of("BLADE");
    for (const power_history &each : blades)
        name_width = std::max(name_width, each.blade.size());
    // In a narrow terminal the bars go before the numbers do.
    const size_t beside = name_width + gap + 3 * (gap + number_width);
    const size_t room =
        on.width == no_width ? bars_without_terminal : on.width - std::min(on.width, beside);
    const size_t width = beside + room;

    const auto scale = common_range(blades);
    const auto levels_shown = on.unicode ? blocks : letters;
    std::string title = about;
    if (scale)
        title += ", " + std::to_string(scale->lowest) + " " + levels_shown.front() + " to " +
                 std::to_string(scale->highest) + " " + levels_shown.back();
    const std::string titles =
        fitted("BLADE", name_width) + std::string(gap + room, ' ') + numbers("NOW", "MIN", "MAX");
    std::vector<std::string> lines = {headline(title, time, width, on),
                                      painted(titles, look::faint, on)};
    for (const power_history &each : blades)
        lines.push_back(row(each, name_width, room, scale, on));
    return lines;
}

} // namespace cli
