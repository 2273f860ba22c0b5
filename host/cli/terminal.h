// The terminal that standard output may be.
#ifndef RUK_HOST_CLI_TERMINAL_H
#define RUK_HOST_CLI_TERMINAL_H

#include <cstddef>
#include <string>

namespace cli
{

// Without a terminal, lines are as long as they are, for grep and its like.
constexpr size_t no_width = std::string::npos;

// Columns and lines of the terminal.
size_t terminal_width();
size_t terminal_height();

bool is_terminal();

// Whether colours can be shown, and nobody has asked for none in $NO_COLOR.
bool shows_colors();

// Whether the locale's characters are those of Unicode, as UTF-8.
bool shows_unicode();

// How many columns a text takes: one for each character of UTF-8, which none of ours are wider
// than.
size_t columns_of(const std::string &text);

// The text's first characters, as many as fit, with blanks behind them up to that many columns.
std::string fitted(const std::string &text, size_t columns);

} // namespace cli

#endif
