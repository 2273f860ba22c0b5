// The chassis manager's own parameter command (network function 0x30, command 0xD0): it writes or
// reads one numbered parameter of a blade. A parameter's value begins with its own length, 16 bits
// that count themselves too.
//
//     write_parameter hide(location, parameter_group::lcd_messages, 0x01);
//     read_parameter ask(location, parameter_group::sled_links, 4);
//
// A request begins with the operation, the group, how many bytes of the value it carries or asks
// for, and their offset in the value.
#ifndef RUK_COMMANDS_OEM_PARAMETER_H
#define RUK_COMMANDS_OEM_PARAMETER_H

#include "commands/frame.h"

// Nothing here is exported, so calls need no indirection.
#pragma GCC visibility push(hidden)

namespace ruk
{

constexpr uint32_t oem_parameter = 0x30D0;

enum class parameter_group : uint8_t {
    lcd_messages = 0x02,
    sled_switch = 0x0C,
    sled_links = 0x0D,
    leds = 0x0E,
    link_tuning = 0x11,
    notices = 0x16, // of files and firmware updates
    autothrottle = 0x1A,
    imc_event = 0x1B,
    log_bundle = 0x20,
    lldp_connection = 0x24
};

// Bytes of a request before the value's.
constexpr uint32_t parameter_header = 6;

// Bytes of a value's own length.
constexpr uint32_t value_head = 2;

// Writes `fields` as a part of a value, from its beginning or, later, from `offset` on.
struct write_parameter_part : command {
    write_parameter_part(const blade_location *location, parameter_group group);

    template <typename... Fields>
    void carry(int offset, Fields... fields)
    {
        end_with(request, parameter_header, fields...);
        tell_part(offset);
    }

    // Stores what the request tells of the part: how long it is, and where it begins.
    void tell_part(int offset);

    uint16_t value_bytes() const
    {
        return static_cast<uint16_t>(request.data_len - parameter_header);
    }
};

// Writes `fields` as a whole value; its length comes by itself.
struct write_parameter : write_parameter_part {
    template <typename... Fields>
    write_parameter(const blade_location *location, parameter_group group, Fields... fields)
        : write_parameter_part(location, group)
    {
        end_with(request, parameter_header + value_head, fields...);
        tell_whole();
    }

    // The same of the value, and the length that it begins with.
    void tell_whole();
};

// Asks for the first `count` bytes of a value; some groups take a selector behind.
struct read_parameter : command {
    read_parameter(const blade_location *location, parameter_group group, uint16_t count);

    template <typename... Fields>
    read_parameter(const blade_location *location, parameter_group group, uint16_t count,
                   Fields... selector)
        : read_parameter(location, group, count)
    {
        end_with(request, parameter_header, selector...);
    }
};

} // namespace ruk

#pragma GCC visibility pop

#endif
