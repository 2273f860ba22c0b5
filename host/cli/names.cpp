#include "cli/names.h"

#include <algorithm>

namespace cli
{

namespace
{

std::string list_of_names(const name_table &table)
{
    std::string list;
    for (const named_number &each : table)
        list += (list.empty() ? "" : ", ") + std::string(each.name);
    return list;
}

} // namespace

std::string name_of(const name_table &table, uint8_t number)
{
    for (const named_number &each : table)
        if (each.number == number)
            return each.name;
    return hex(number);
}

uint8_t number_named(const name_table &table, const std::string &name)
{
    for (const named_number &each : table)
        if (each.name == name)
            return each.number;
    throw usage_failure("\"" + name + "\" is none of " + list_of_names(table));
}

uint8_t number_or_named(const name_table &table, const std::string &text)
{
    const bool typed_as_number = !text.empty() && text[0] >= '0' && text[0] <= '9';
    return typed_as_number ? number<uint8_t>(text) : number_named(table, text);
}

json names_of_bits(uint8_t bits, const std::vector<const char *> &names)
{
    json set = json::array();
    for (size_t bit = 0; bit < names.size(); ++bit)
        if (names[bit] && (bits >> bit & 1) != 0)
            set.push_back(names[bit]);
    return set;
}

} // namespace cli
