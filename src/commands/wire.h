// Numbers as IPMI payloads carry them, least significant byte first, on any host. All byte-order
// work of the library goes through here.
#ifndef RUK_COMMANDS_WIRE_H
#define RUK_COMMANDS_WIRE_H

#include <cstdint>
#include <cstring>

namespace ruk
{

inline uint16_t load_le16(const uint8_t *from)
{
    return static_cast<uint16_t>(from[0] | from[1] << 8);
}

inline uint32_t load_le32(const uint8_t *from)
{
    return from[0] | static_cast<uint32_t>(from[1]) << 8 | static_cast<uint32_t>(from[2]) << 16 |
           static_cast<uint32_t>(from[3]) << 24;
}

inline void store_le16(uint8_t *to, uint16_t value)
{
    to[0] = static_cast<uint8_t>(value);
    to[1] = static_cast<uint8_t>(value >> 8);
}

inline void store_le32(uint8_t *to, uint32_t value)
{
    store_le16(to, static_cast<uint16_t>(value));
    store_le16(to + 2, static_cast<uint16_t>(value >> 16));
}

// The number that a field holds whose bytes were copied from the wire as they came.

inline uint16_t from_wire(uint16_t raw)
{
    uint8_t bytes[sizeof raw];
    memcpy(bytes, &raw, sizeof raw);
    return load_le16(bytes);
}

inline uint32_t from_wire(uint32_t raw)
{
    uint8_t bytes[sizeof raw];
    memcpy(bytes, &raw, sizeof raw);
    return load_le32(bytes);
}

// Turns a number that lies in a block of bytes from host order into wire order, or back.
template <typename Number>
void turn(uint8_t *at)
{
    Number number;
    memcpy(&number, at, sizeof number);
    number = from_wire(number);
    memcpy(at, &number, sizeof number);
}

} // namespace ruk

#endif
