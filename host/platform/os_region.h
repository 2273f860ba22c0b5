// The memory of the OS layer that the processes of a chassis share: named mutexes and counters of
// notifications. It is a mapped file of the runtime directory, made by whoever comes first, daemon
// or client. The processes that share it must share their process numbers too.
#ifndef RUK_HOST_PLATFORM_OS_REGION_H
#define RUK_HOST_PLATFORM_OS_REGION_H

#include <array>
#include <atomic>
#include <cstdint>

#include "platform/mutex_table.h"

namespace ruk::host
{

// What a file must begin with to be shared: processes of another build would take its words for
// something else.
struct os_region_header {
    uint32_t magic;
    uint32_t version;
    uint32_t mutex_size;
    uint32_t region_size;
};

struct notification_counters {
    std::atomic<uint32_t> bell; // changes at every post
    std::array<std::atomic<uint32_t>, 256> posted;
};

struct os_region {
    os_region_header header;
    notification_counters notifications;
    mutex_table mutexes;
};

// The region of this process's runtime directory, mapped once for all threads and for good.
// RUK_OS_NO_FILE when it can be neither found nor made, RUK_OS_BAD_FILE when the file is not one
// of this build's.
uint32_t attach_os_region(os_region *&region);

} // namespace ruk::host

#endif
