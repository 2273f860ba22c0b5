#include "cli/terminal.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace cli
{

namespace
{

winsize terminal_size()
{
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0)
        size = {};
    return size;
}

bool begins_character(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

} // namespace

size_t terminal_width()
{
    const size_t columns = terminal_size().ws_col;
    return columns == 0 ? no_width : columns;
}

size_t terminal_height()
{
    const size_t lines = terminal_size().ws_row;
    return lines == 0 ? no_width : lines;
}

bool is_terminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

bool shows_colors()
{
    const char *const forbidden = getenv("NO_COLOR");
    const char *const kind = getenv("TERM");
    return is_terminal() && !(forbidden && *forbidden) && kind && strcmp(kind, "dumb") != 0;
}

bool shows_unicode()
{
    const locale_t own = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (own == nullptr)
        return false;
    const bool utf_8 = strcmp(nl_langinfo_l(CODESET, own), "UTF-8") == 0;
    freelocale(own);
    return utf_8;
}

size_t columns_of(const std::string &text)
{
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), begins_character));
}

std::string fitted(const std::string &text, size_t columns)
{
    const size_t taken = columns_of(text);
    if (taken <= columns)
        return text + std::string(columns - taken, ' ');
    size_t end = 0;
    for (size_t seen = 0; end < text.size(); ++end)
        if (begins_character(text[end]) && ++seen > columns)
            break;
    return text.substr(0, end);
}

} // namespace cli
