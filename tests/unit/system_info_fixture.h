// A system information parameter that is got from a blade, into a guarded record.
#ifndef RUK_TESTS_UNIT_SYSTEM_INFO_FIXTURE_H
#define RUK_TESTS_UNIT_SYSTEM_INFO_FIXTURE_H

#include "command_shape.h"
#include "ruk_ipmi/system_info.h"

// The first answer for a text of `length` bytes, of which it brings the first ones.
inline bytes text_answer(const bytes &first, size_t length, uint8_t encoding = 0)
{
    return joined({0x00, 0x11, 0xEE, encoding, low(length)}, first);
}

inline bytes text_answer(const bytes &text)
{
    return text_answer(text, text.size());
}

class get_system_info : public scripted_test
{
  protected:
    scripted_exchange &expects_get(uint8_t parameter, uint8_t set_selector = 0)
    {
        return platform.expects(at, 0x0659, {0x00, parameter, set_selector, 0x00});
    }

    int get(uint8_t parameter)
    {
        litter_the_stack();
        return location_get_sys_info(&at, parameter, out.get());
    }

    // The output tells the length `length` and has `value` and zeros behind it.
    bool holds(uint8_t length, const bytes &value)
    {
        return out.content() ==
                   joined(joined({0x00, 0x11, length}, value), bytes(256 - value.size())) &&
               out.guards_hold();
    }

    bool is_cleared() { return out.content() == bytes(259) && out.guards_hold(); }

    const blade_location at = blade(5, 2);
    guarded<sys_info_value> out;
};

#endif
