#include "bytes.h"

#include <cstdio>

namespace ruk_ipmi_testing
{

bytes joined(const bytes &head, const bytes &tail)
{
    bytes all;
    all.reserve(head.size() + tail.size());
    all.insert(all.end(), head.begin(), head.end());
    all.insert(all.end(), tail.begin(), tail.end());
    return all;
}

bytes counting(size_t length)
{
    bytes data(length);
    for (size_t i = 0; i < length; ++i)
        data[i] = static_cast<uint8_t>(1 + i % 251);
    return data;
}

std::string hex(const bytes &data)
{
    std::string text;
    for (const uint8_t byte : data) {
        char digits[4];
        snprintf(digits, sizeof digits, text.empty() ? "%02X" : " %02X", byte);
        text += digits;
    }
    return text;
}

} // namespace ruk_ipmi_testing
