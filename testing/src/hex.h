// Bytes wherever they lie, and as text.
#ifndef RUK_IPMI_TESTING_HEX_H
#define RUK_IPMI_TESTING_HEX_H

#include <cstddef>
#include <string>

#include "ruk_ipmi_testing.h"

namespace ruk_ipmi_testing
{

// The `length` bytes from `from` on.
inline bytes bytes_at(const void *from, size_t length)
{
    const auto *first = static_cast<const uint8_t *>(from);
    return bytes(first, first + length);
}

// "01 0A FF".
std::string hex(const bytes &data);

} // namespace ruk_ipmi_testing

#endif
