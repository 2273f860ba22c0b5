// Bytes put together from fields. A field is a number, which is one byte (its low 8 bits), or says
// how it travels.
#ifndef RUK_HOST_CHASSISD_FIELDS_H
#define RUK_HOST_CHASSISD_FIELDS_H

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

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

    // The length has six bits, and one character alone would look like the end of a list of fields
    // (0xC1).
    explicit text(std::string all) : characters(std::move(all))
    {
        characters.resize(std::min<size_t>(characters.size(), 0x3F));
        if (characters.size() == 1)
            characters += ' ';
    }
};

// How many bytes each field takes.

inline size_t size_of(int)
{
    return 1;
}

inline size_t size_of(le16)
{
    return 2;
}

inline size_t size_of(le24)
{
    return 3;
}

inline size_t size_of(le32)
{
    return 4;
}

inline size_t size_of(const bytes &block)
{
    return block.size();
}

inline size_t size_of(const text &field)
{
    return 1 + field.characters.size();
}

// Each stores a field, and returns where the next one goes.

inline uint8_t *put(uint8_t *at, int byte)
{
    *at = static_cast<uint8_t>(byte);
    return at + 1;
}

inline uint8_t *put(uint8_t *at, le16 field)
{
    ruk::store_le16(at, field.value);
    return at + 2;
}

inline uint8_t *put(uint8_t *at, le24 field)
{
    return put(put(at, le16(field.value)), static_cast<int>(field.value >> 16));
}

inline uint8_t *put(uint8_t *at, le32 field)
{
    ruk::store_le32(at, field.value);
    return at + 4;
}

inline uint8_t *put(uint8_t *at, const bytes &block)
{
    return std::copy(block.begin(), block.end(), at);
}

inline uint8_t *put(uint8_t *at, const text &field)
{
    const std::string &characters = field.characters;
    return std::copy(characters.begin(), characters.end(),
                     put(at, static_cast<int>(0xC0 | characters.size())));
}

template <typename Field>
void append(bytes &to, const Field &field)
{
    const size_t before = to.size();
    to.resize(before + size_of(field));
    put(to.data() + before, field);
}

template <typename... Fields>
bytes record_of(const Fields &...fields)
{
    bytes record((size_of(fields) + ...));
    uint8_t *at = record.data();
    ((at = put(at, fields)), ...);
    return record;
}

// The byte that brings the sum of all to 0.
inline uint8_t zero_checksum(const bytes &summed)
{
    return static_cast<uint8_t>(-std::accumulate(summed.begin(), summed.end(), 0));
}

} // namespace chassisd

#endif
