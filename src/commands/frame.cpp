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

} // namespace ruk
