#include "cli/numbers.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "cli/failure.h"

namespace cli
{

namespace
{

std::string digits(uint32_t value, int count)
{
    char text[16];
    snprintf(text, sizeof text, "0x%0*X", count, value);
    return text;
}

} // namespace

int64_t parse_number(const std::string &text, int64_t least, int64_t most)
{
    std::string_view rest = text;
    const bool negative = rest.substr(0, 1) == "-";
    if (negative)
        rest.remove_prefix(1);
    const bool hexadecimal = rest.substr(0, 2) == "0x" || rest.substr(0, 2) == "0X";
    if (hexadecimal)
        rest.remove_prefix(2);

    uint32_t magnitude = 0;
    const auto [end, error] =
        std::from_chars(rest.data(), rest.data() + rest.size(), magnitude, hexadecimal ? 16 : 10);
    if (rest.empty() || end != rest.data() + rest.size() || error == std::errc::invalid_argument)
        throw usage_failure("\"" + text + "\" is not a number (decimal, or hexadecimal with 0x)");
    const int64_t value = negative ? -static_cast<int64_t>(magnitude) : magnitude;
    if (error == std::errc::result_out_of_range || value < least || value > most)
        throw usage_failure(text + " is not from " + std::to_string(least) + " to " +
                            std::to_string(most));
    return value;
}

std::string hex(uint8_t value)
{
    return digits(value, 2);
}

std::string hex(uint16_t value)
{
    return digits(value, 4);
}

std::string hex(uint32_t value)
{
    return digits(value, 8);
}

std::string hex(const uint8_t *data, size_t length)
{
    std::string text;
    for (size_t at = 0; at < length; ++at) {
        char digits[4];
        snprintf(digits, sizeof digits, at == 0 ? "%02x" : " %02x", data[at]);
        text += digits;
    }
    return text;
}

bytes parse_hex(const std::string &text)
{
    bytes data;
    for (size_t at = 0; at < text.size(); at += 2) {
        if (at != 0 && text[at] == ' ')
            ++at;
        const char *const start = text.data() + at;
        const char *const end = text.data() + std::min(at + 2, text.size());
        uint8_t byte = 0;
        if (end - start != 2 || std::from_chars(start, end, byte, 16).ptr != end)
            throw usage_failure("\"" + text + "\" is not bytes in hexadecimal, like 01ff or 01 ff");
        data.push_back(byte);
    }
    return data;
}

} // namespace cli
