#include "commands/oem_parameter.h"

namespace ruk
{

write_parameter_part::write_parameter_part(const blade_location *location, parameter_group group)
    : command(location, oem_parameter, 0x00, static_cast<uint8_t>(group))
{
}

void write_parameter_part::tell_part(int offset)
{
    store_le16(request.data + 2, value_bytes());
    store_le16(request.data + 4, static_cast<uint16_t>(offset));
}

void write_parameter::tell_whole()
{
    tell_part(0);
    store_le16(request.data + parameter_header, value_bytes());
}

read_parameter::read_parameter(const blade_location *location, parameter_group group,
                               uint16_t count)
    : command(location, oem_parameter, 0x01, static_cast<uint8_t>(group), le16{count}, le16{0})
{
}

} // namespace ruk
