// Records and answers as bytes: putting them together from fields, and handing out parts of them.
//
// A field is a number, which is one byte (its low 8 bits), or says how it travels.
#ifndef RUK_HOST_CHASSISD_SIMULATED_RECORD_H
#define RUK_HOST_CHASSISD_SIMULATED_RECORD_H

#include <algorithm>
#include <string>

#include "chassisd/simulated/device.h"
#include "commands/wire.h"

namespace chassisd::simulated
{

struct le16 {
    uint16_t value;

    explicit le16(size_t number) : value(static_cast<uint16_t>(number)) {}
};

struct le24 {
    uint32_t value;
};

struct le32 {
    uint32_t value;
};

// Text of 8-bit characters behind the byte that tells its type and length.
struct text {
    std::string characters;
};

inline void append(bytes &to, int byte)
{
    to.push_back(static_cast<uint8_t>(byte));
}

// Makes a record longer, and returns where the new bytes are.
inline uint8_t *lengthen(bytes &record, size_t count)
{
    record.resize(record.size() + count);
    return record.data() + record.size() - count;
}

inline void append(bytes &to, le16 field)
{
    ruk::store_le16(lengthen(to, 2), field.value);
}

inline void append(bytes &to, le24 field)
{
    append(to, le16(field.value));
    append(to, static_cast<int>(field.value >> 16));
}

inline void append(bytes &to, le32 field)
{
    ruk::store_le32(lengthen(to, 4), field.value);
}

inline void append(bytes &to, const bytes &block)
{
    to.insert(to.end(), block.begin(), block.end());
}

inline void append(bytes &to, text field)
{
    // The length has six bits, and one character alone would look like the end of a list of
    // fields (0xC1).
    field.characters.resize(std::min<size_t>(field.characters.size(), 0x3F));
    if (field.characters.size() == 1)
        field.characters += ' ';
    append(to, static_cast<int>(0xC0 | field.characters.size()));
    to.insert(to.end(), field.characters.begin(), field.characters.end());
}

template <typename... Fields>
bytes record_of(const Fields &...fields)
{
    constexpr size_t usual_room = 32; // at once, not doubled on the way
    bytes record;
    record.reserve(usual_room);
    (append(record, fields), ...);
    return record;
}

// The answer of a command that was carried out.
template <typename... Fields>
bytes success(const Fields &...fields)
{
    return record_of(completed, fields...);
}

// As much as there is of a stretch of stored bytes. At their end that is nothing.
inline bytes stretch_up_to(const bytes &stored, size_t offset, size_t count)
{
    refuse_if(offset > stored.size(), out_of_range);
    const auto from = stored.begin() + static_cast<std::ptrdiff_t>(offset);
    return {from, from + static_cast<std::ptrdiff_t>(std::min(count, stored.size() - offset))};
}

// A stretch of stored bytes that a reader asked for.
inline bytes stretch(const bytes &stored, size_t offset, size_t count)
{
    refuse_if(offset >= stored.size(), out_of_range);
    refuse_if(count > stored.size() - offset, cannot_return_that_many);
    return stretch_up_to(stored, offset, count);
}

} // namespace chassisd::simulated

#endif
