// Who is calling, told without a system call.
#ifndef RUK_HOST_PLATFORM_IDENTITY_H
#define RUK_HOST_PLATFORM_IDENTITY_H

#include <cstdint>

namespace ruk::host
{

struct identity {
    uint32_t process = 0;
    uint32_t thread = 0;
};

// The kernel's numbers of the calling process and thread.
identity own_identity();

} // namespace ruk::host

#endif
