// Text in lines.
#ifndef RUK_HOST_HELP_WRAPPED_H
#define RUK_HOST_HELP_WRAPPED_H

#include <string>

namespace help
{

// Breaks a text at blanks into lines of `room` characters; the lines but the first are indented.
std::string wrapped(const std::string &text, size_t room, size_t indent);

} // namespace help

#endif
