#include "cli/canvas.h"

#include "cli/terminal.h"

namespace cli
{

namespace
{

const char *escape_sequence(look as)
{
    switch (as) {
    case look::heading:
        return "\033[1m";
    case look::faint:
        return "\033[2m";
    case look::good:
        return "\033[32m";
    case look::warning:
        return "\033[33m";
    case look::bad:
        return "\033[1;31m";
    case look::blinking:
        return "\033[5;33m";
    case look::plain:
        break;
    }
    return "";
}

} // namespace

canvas own_canvas()
{
    return {terminal_width(), shows_colors(), shows_unicode()};
}

std::string painted(const std::string &text, look as, const canvas &on)
{
    if (!on.colors || as == look::plain)
        return text;
    return escape_sequence(as) + text + "\033[0m";
}

std::string headline(const std::string &about, const std::string &time, size_t width,
                     const canvas &on)
{
    const size_t taken = about.size() + gap + time.size();
    if (taken > on.width)
        return painted(about.substr(0, on.width), look::heading, on);
    return painted(about, look::heading, on) +
           std::string(gap + (taken < width ? width - taken : 0), ' ') +
           painted(time, look::faint, on);
}

} // namespace cli
