#include "cli/lists.h"

#include <algorithm>

#include "cli/failure.h"
#include "cli/numbers.h"

namespace cli
{

void parse_list(const std::string &text, const std::string &what, const std::string &hint,
                const std::function<void(const std::string &item)> &read)
{
    for (size_t start = 0; start <= text.size();) {
        const size_t comma = std::min(text.find(',', start), text.size());
        const std::string item = text.substr(start, comma - start);
        try {
            read(item);
        } catch (const failure &wrong) {
            throw usage_failure(what + " \"" + item + "\": " + wrong.what() + "; " + hint);
        }
        start = comma + 1;
    }
}

void parse_range(const std::string &item, int64_t least, int64_t most,
                 const std::function<void(int64_t number)> &each)
{
    const size_t dash = item.find('-');
    const int64_t first = parse_number(item.substr(0, dash), least, most);
    const int64_t last =
        dash == std::string::npos ? first : parse_number(item.substr(dash + 1), least, most);
    if (last < first)
        throw usage_failure("the range runs backwards");
    for (int64_t number = first; number <= last; ++number)
        each(number);
}

} // namespace cli
