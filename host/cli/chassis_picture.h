// The chassis as people look at it: a line for each slot, drawn to the width of the terminal.
#ifndef RUK_HOST_CLI_CHASSIS_PICTURE_H
#define RUK_HOST_CLI_CHASSIS_PICTURE_H

#include <string>
#include <vector>

#include "cli/canvas.h"
#include "cli/report.h"

namespace cli
{

// Draws what a survey has seen. `time` stands in the first line.
std::vector<std::string> chassis_picture(const json &seen, const std::string &time,
                                         const canvas &on);

} // namespace cli

#endif
