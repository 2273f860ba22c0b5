#include "hex.h"

#include <cstdio>

namespace ruk_ipmi_testing
{

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
