// What pictures in the terminal are made of.
#ifndef RUK_HOST_CLI_CANVAS_H
#define RUK_HOST_CLI_CANVAS_H

#include <string>

namespace cli
{

struct canvas {
    size_t width;
    bool colors;
    bool unicode;
};

// The canvas that standard output is.
canvas own_canvas();

// How a piece of text looks, where there are colours.
enum class look { plain, heading, faint, good, warning, bad, blinking };

std::string painted(const std::string &text, look as, const canvas &on);

// Blanks between two columns.
constexpr size_t gap = 2;

// A picture's first line: what it is about on the left and, where there is room, the time on the
// right, for a picture of that width.
std::string headline(const std::string &about, const std::string &time, size_t width,
                     const canvas &on);

} // namespace cli

#endif
