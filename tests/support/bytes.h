// Bytes as the library's own tests write and compare them.
#ifndef RUK_TESTS_SUPPORT_BYTES_H
#define RUK_TESTS_SUPPORT_BYTES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "hex.h"

namespace ruk_ipmi_testing
{

// A record as it lies in memory.
template <typename Record>
bytes bytes_of(const Record &record)
{
    static_assert(std::is_trivially_copyable_v<Record>);
    return bytes_at(&record, sizeof record);
}

inline bytes characters(const std::string &text)
{
    return bytes(text.begin(), text.end());
}

bytes joined(const bytes &head, const bytes &tail);

// 1, 2, 3, ... 251, and so on from 1: `length` bytes, of which no two blocks are alike.
bytes counting(size_t length);

// The bytes of a 16-bit number.

inline uint8_t low(size_t number)
{
    return static_cast<uint8_t>(number);
}

inline uint8_t high(size_t number)
{
    return static_cast<uint8_t>(number >> 8);
}

} // namespace ruk_ipmi_testing

#endif
