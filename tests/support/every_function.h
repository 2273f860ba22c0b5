// Every function of the library, callable with arguments that somebody chooses byte by byte: a
// fuzzer, or a test that wants any that are allowed.
#ifndef RUK_TESTS_SUPPORT_EVERY_FUNCTION_H
#define RUK_TESTS_SUPPORT_EVERY_FUNCTION_H

#include <memory>
#include <ostream>
#include <vector>

#include "ruk_ipmi.h"

namespace ruk_ipmi_testing
{

// Draws arguments from bytes; where these end, there are zeros. What it hands out by pointer is a
// block of exactly the size asked for, which lives as long as it does.
class arguments
{
  public:
    arguments(const uint8_t *bytes, size_t size) : next_(bytes), left_(size) {}

    uint8_t byte();
    uint16_t half();
    uint32_t word();
    uint32_t up_to(uint32_t most);

    // For a pointer that the function checks: null now and then.
    const blade_location *location();
    uint8_t *block(size_t size);
    const char *text(size_t longest);

    // For one that it does not.
    const blade_location *sure_location();
    uint8_t *sure_block(size_t size);
    const char *sure_text(size_t longest);

    template <typename Record>
    Record *record()
    {
        return reinterpret_cast<Record *>(block(sizeof(Record)));
    }

    template <typename Record>
    Record *sure_record()
    {
        return reinterpret_cast<Record *>(sure_block(sizeof(Record)));
    }

    // What is left to draw from.
    const uint8_t *rest() const { return next_; }
    size_t left() const { return left_; }

  private:
    bool is_null() { return byte() == 0xFF; }

    const uint8_t *next_;
    size_t left_;
    std::vector<std::unique_ptr<uint8_t[]>> blocks_;
};

struct command_function {
    const char *name;
    uint32_t (*call)(arguments &given);
};

inline std::ostream &operator<<(std::ostream &out, const command_function &function)
{
    return out << function.name;
}

// Those that send one command or several to a blade, or could; sorted by name.
const std::vector<command_function> &command_functions();

} // namespace ruk_ipmi_testing

#endif
