// Numbers and bits that have names.
#ifndef RUK_HOST_CLI_NAMES_H
#define RUK_HOST_CLI_NAMES_H

#include <cstdint>
#include <string>
#include <vector>

#include "cli/report.h"

namespace cli
{

struct named_number {
    uint8_t number;
    const char *name;
};

using name_table = std::vector<named_number>;

// The number's name; the number in hexadecimal where it has none.
std::string name_of(const name_table &table, uint8_t number);

// The number of that name; any other text is a usage failure.
uint8_t number_named(const name_table &table, const std::string &name);

// The same, or any number as it is typed.
uint8_t number_or_named(const name_table &table, const std::string &text);

// All names of a table, of these or of other things that have one.
template <typename Table>
std::vector<std::string> all_names(const Table &table)
{
    std::vector<std::string> names;
    for (const auto &each : table)
        names.emplace_back(each.name);
    return names;
}

// The names of the bits that are set, from the least significant one on; a bit whose name is null,
// or that has none, is passed over.
json names_of_bits(uint8_t bits, const std::vector<const char *> &names);

} // namespace cli

#endif
