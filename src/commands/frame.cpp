#include "commands/frame.h"

#include <cstdlib>

namespace ruk
{

void tell_invalid_param()
{
    slog_elog("Invalid parameter to IPMI interface\n");
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

uint32_t put_block(ipmi_request &request, uint32_t at, const void *bytes, size_t length)
{
    bounded_copy(request.data + at, sizeof request.data - at, bytes, length, "the request record");
    return at + static_cast<uint32_t>(length);
}

uint32_t put_text(ipmi_request &request, uint32_t at, const char *text, uint32_t size)
{
    memcpy(request.data + at, text, strnlen(text, size));
    return at + size;
}

command::command(const blade_location *location, uint32_t netfn_cmd)
{
    request.location = *location;
    request.netfn_cmd = netfn_cmd;
}

int command::exchange()
{
    return exchange(usual_wait, usual_capacity);
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
