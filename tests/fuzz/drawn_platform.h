// A platform that behaves as the bytes of a fuzzer's input say.
#ifndef RUK_TESTS_FUZZ_DRAWN_PLATFORM_H
#define RUK_TESTS_FUZZ_DRAWN_PLATFORM_H

#include <algorithm>

#include "support/driven_platform.h"
#include "support/every_function.h"

namespace ruk_ipmi_testing
{

class drawn_platform final : public platform_driver
{
  public:
    explicit drawn_platform(arguments &input) : input_(input) {}

    // Most calls succeed. With the input's end all fail, which ends every loop.
    uint32_t status() override
    {
        if (input_.left() == 0)
            return not_answered;
        const uint8_t chosen = input_.byte();
        return chosen < 0xE0 ? 0 : chosen < 0xF0 ? 0xC9 : input_.word();
    }

    // Any completion code, length and bytes, and lengths that are not those of
    // the bytes.
    void answer(ipmi_response &response, uint32_t room) override
    {
        response.comp_code = input_.byte() < 0xC0 ? 0 : input_.byte();
        const uint32_t filled = input_.up_to(std::min<uint32_t>(room, sizeof response.data));
        for (uint32_t at = 0; at < filled && input_.left() != 0; ++at)
            response.data[at] = input_.byte();
        response.data_len = input_.byte() < 0xC0 ? filled : input_.word();
    }

    uint32_t platform_word() override { return input_.byte() & 0x3F; }

  private:
    arguments &input_;
};

} // namespace ruk_ipmi_testing

#endif
