// Bytes put together from fields. A field is a number, which is one byte (its low 8 bits), or says
// how it travels.
#ifndef RUK_HOST_CHASSISD_FIELDS_H
#define RUK_HOST_CHASSISD_FIELDS_H

#include <algorithm>
#include <string>

#include "chassisd/blade.h"
#include "commands/wire.h"

namespace chassisd
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

} // namespace chassisd

#endif
