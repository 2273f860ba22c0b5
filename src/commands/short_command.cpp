#include "commands/short_command.h"

namespace ruk
{

int fetch_checked(const blade_location *location, void *out, size_t count, uint32_t netfn_cmd,
                  uint64_t payload, uint32_t length)
{
    return location ? fetch_unchecked(location, out, count, netfn_cmd, payload, length)
                    : invalid_param();
}

int fetch_unchecked(const blade_location *location, void *out, size_t count, uint32_t netfn_cmd,
                    uint64_t payload, uint32_t length)
{
    if (!out)
        return invalid_param();
    command self(location, netfn_cmd);
    end_with(self.request, 0, le32{static_cast<uint32_t>(payload)},
             le32{static_cast<uint32_t>(payload >> 32)});
    self.request.data_len = length; // of the eight bytes
    return self.fetch(out, count);
}

} // namespace ruk
