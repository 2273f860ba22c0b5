// A command that a few numbers say: its payload is eight bytes at the most, and its answer is
// handed over as it comes.
//
//     int ipmi_location_X(const blade_location *location, uint8_t id, x_record *out)
//     {
//         return short_command(location, 0x0A10, id).fetch(out);
//     }
//
// It checks its pointers itself. And all of it travels in registers to the one function that does
// what the frame does, so a command function takes a few instructions, and no stack.
#ifndef RUK_COMMANDS_SHORT_COMMAND_H
#define RUK_COMMANDS_SHORT_COMMAND_H

#include "commands/frame.h"

#pragma GCC visibility push(hidden)

namespace ruk
{

// How many bytes of the payload a field is, and these as a number, the first one lowest.

constexpr uint32_t size_of(int)
{
    return 1;
}

constexpr uint32_t size_of(le16)
{
    return 2;
}

constexpr uint32_t size_of(le32)
{
    return 4;
}

inline uint64_t number_of(int byte)
{
    return static_cast<uint8_t>(byte);
}

inline uint64_t number_of(le16 field)
{
    return field.value;
}

inline uint64_t number_of(le32 field)
{
    return field.value;
}

// Refuses a call without a location, or without a place for the answer.
int fetch_checked(const blade_location *location, void *out, size_t count, uint32_t netfn_cmd,
                  uint64_t payload, uint32_t length);

// The same, but does not look whether there is a location.
int fetch_unchecked(const blade_location *location, void *out, size_t count, uint32_t netfn_cmd,
                    uint64_t payload, uint32_t length);

struct short_command {
    const blade_location *location;
    uint32_t netfn_cmd;
    uint64_t payload = 0;
    uint32_t length = 0;

    template <typename... Fields>
    [[gnu::always_inline]] short_command(const blade_location *blade, uint32_t which,
                                         Fields... fields)
        : location(blade),
          netfn_cmd(which)
    {
        constexpr uint32_t room = sizeof payload;
        static_assert((0 + ... + size_of(Fields{})) <= room);
        ((payload |= number_of(fields) << 8 * length, length += size_of(fields)), ...);
    }

    [[gnu::always_inline]] int fetch(void *out, size_t count) const
    {
        return fetch_checked(location, out, count, netfn_cmd, payload, length);
    }

    template <typename Record>
    [[gnu::always_inline]] int fetch(Record *out) const
    {
        return fetch(out, sizeof *out);
    }

    [[gnu::always_inline]] int fetch_unchecked(void *out, size_t count) const
    {
        return ruk::fetch_unchecked(location, out, count, netfn_cmd, payload, length);
    }
};

} // namespace ruk

#pragma GCC visibility pop

#endif
