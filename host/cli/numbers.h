// Numbers as people type them and as the tool prints them: what is printed can be typed back.
#ifndef RUK_HOST_CLI_NUMBERS_H
#define RUK_HOST_CLI_NUMBERS_H

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace cli
{

using bytes = std::vector<uint8_t>;

// The number that all of `text` spells, decimal or hexadecimal with 0x before it, from `least` to
// `most`. Leading zeros do not make it octal. Anything else is a usage failure.
int64_t parse_number(const std::string &text, int64_t least, int64_t most);

template <typename Number>
Number number(const std::string &text)
{
    return static_cast<Number>(
        parse_number(text, std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max()));
}

// A number in narrower bounds than its type's.
template <typename Number, int64_t least, int64_t most>
Number number_from_to(const std::string &text)
{
    return static_cast<Number>(parse_number(text, least, most));
}

// 0x and the type's own count of digits: 0x0A, 0x0001.
std::string hex(uint8_t value);
std::string hex(uint16_t value);
std::string hex(uint32_t value);

// "01 30 ff", in the order of the bytes.
std::string hex(const uint8_t *data, size_t length);

inline std::string hex(const bytes &data)
{
    return hex(data.data(), data.size());
}

// The bytes that such a text spells; the blanks may be missing. Anything else is a usage failure.
bytes parse_hex(const std::string &text);

} // namespace cli

#endif
