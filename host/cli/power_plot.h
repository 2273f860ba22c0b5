// What blades draw, over time: a line of bars for each blade, as wide as the terminal.
#ifndef RUK_HOST_CLI_POWER_PLOT_H
#define RUK_HOST_CLI_POWER_PLOT_H

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "cli/canvas.h"

namespace cli
{

struct power_history {
    std::string blade;
    std::deque<std::optional<uint16_t>> samples = {}; // the latest is the last; some were missed
    std::string remark = {};                          // why the latest one was
};

// The lowest and the highest sample.
struct power_range {
    uint16_t lowest;
    uint16_t highest;
};

// None where there is no sample.
std::optional<power_range> range_of(const power_history &history);

// The bars of all blades have one scale, from the lowest sample of all to the highest. `about` and
// `time` stand in the first line.
std::vector<std::string> power_plot(const std::vector<power_history> &blades,
                                    const std::string &about, const std::string &time,
                                    const canvas &on);

} // namespace cli

#endif
