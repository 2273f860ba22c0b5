// Lists of numbers and ranges as people type them: "1-8,40".
#ifndef RUK_HOST_CLI_LISTS_H
#define RUK_HOST_CLI_LISTS_H

#include <cstdint>
#include <functional>
#include <string>

namespace cli
{

// Gives each item of a list, the text between two commas, to `read`. A complaint of `read` becomes
// one that names the item, "event "70": ...", and ends with `hint`.
void parse_list(const std::string &text, const std::string &what, const std::string &hint,
                const std::function<void(const std::string &item)> &read);

// Calls `each` with every number of a range such as "1-8", or with the one of "40". All must lie
// from `least`, which is not negative, to `most`.
void parse_range(const std::string &item, int64_t least, int64_t most,
                 const std::function<void(int64_t number)> &each);

} // namespace cli

#endif
