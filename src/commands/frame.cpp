#include "commands/frame.h"

#include <cstdlib>

namespace ruk
{

int invalid_param()
{
    slog_elog("Invalid parameter to IPMI interface\n");
    return IPMI_ERR_INVALID_PARAM;
}

int bad_length()
{
    slog_elog("Invalid response length\n");
    return IPMI_ERR_BAD_RESPONSE_LENGTH;
}

void bounded_copy(void *to, size_t room, const void *from, size_t length, const char *where)
{
    if (length > room) {
        slog_elog("%zu bytes do not fit the %zu bytes left in %s\n", length, room, where);
        abort();
    }
    if (length != 0)
        memcpy(to, from, length);
}

uint32_t put(ipmi_request &request, uint32_t at, block field)
{
    bounded_copy(request.data + at, sizeof request.data - at, field.bytes, field.length,
                 "the request record");
    return at + static_cast<uint32_t>(field.length);
}

uint32_t put(ipmi_request &request, uint32_t at, padded field)
{
    bounded_copy(request.data + at, field.field, field.text, field.length,
                 "a field of the request");
    return at + field.field;
}

command::command(const blade_location *location, uint32_t netfn_cmd)
{
    request.location = *location;
    request.netfn_cmd = netfn_cmd;
}

int command::exchange(uint32_t wait, uint32_t capacity)
{
    response.data_len = capacity;
    status = get_ruk_ipmi_response(&request, &response, wait);
    return static_cast<int>(status != 0 ? status : response.comp_code);
}

int command::fetch(void *out, size_t count)
{
    const int result = exchange();
    memcpy(out, response.data, count);
    return result;
}

} // namespace ruk
