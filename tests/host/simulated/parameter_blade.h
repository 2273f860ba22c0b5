// A blade whose parameters the chassis manager writes and reads.
#ifndef RUK_TESTS_HOST_SIMULATED_PARAMETER_BLADE_H
#define RUK_TESTS_HOST_SIMULATED_PARAMETER_BLADE_H

#include "blade_under_test.h"

namespace chassisd::simulated
{

// The head of a request: the operation and the parameter, then a count and an offset.
inline bytes head(uint8_t operation, uint8_t parameter, size_t count, size_t offset)
{
    return joined({operation, parameter}, joined(le16_bytes(count), le16_bytes(offset)));
}

class parameter_blade : public blade_under_test
{
  public:
    using blade_under_test::blade_under_test;

    bytes manager(uint8_t command, const bytes &data) { return ask(0x30, command, data); }
    bytes access(const bytes &data) { return manager(0xD0, data); }

    // Writes a part of a value.
    bytes write_part(uint8_t parameter, size_t offset, const bytes &part)
    {
        return access(joined(head(0x00, parameter, part.size(), offset), part));
    }

    // Writes a whole value behind its length.
    bytes write(uint8_t parameter, const bytes &fields)
    {
        return write_part(parameter, 0, joined(le16_bytes(fields.size() + 2), fields));
    }

    bytes read(uint8_t parameter, size_t count, const bytes &selector = {}, size_t offset = 0)
    {
        return access(joined(head(0x01, parameter, count, offset), selector));
    }

    // The fields of a value, or as many of them as its first `count` bytes hold.
    bytes fields(uint8_t parameter, const bytes &selector = {}, size_t count = 400)
    {
        return from(8, read(parameter, count, selector));
    }
};

} // namespace chassisd::simulated

#endif
