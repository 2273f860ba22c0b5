#include "help/wrapped.h"

#include <algorithm>

namespace help
{

std::string wrapped(const std::string &text, size_t room, size_t indent)
{
    std::string result;
    for (size_t start = 0; start < text.size();) {
        size_t end = text.size();
        if (end - start > room) {
            end = text.rfind(' ', start + room);
            // A word that is longer than the room stays whole.
            if (end == std::string::npos || end <= start)
                end = std::min(text.find(' ', start), text.size());
        }
        result +=
            (start == 0 ? "" : "\n" + std::string(indent, ' ')) + text.substr(start, end - start);
        start = end + 1;
    }
    return result;
}

} // namespace help
