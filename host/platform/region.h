// The memory that a chassis shares with its clients: the IPMI component's region and, behind it,
// the platform information. It is a mapped file of the runtime directory: it outlives the daemon,
// so that a restart loses nothing, and goes when the directory goes.
#ifndef RUK_HOST_PLATFORM_REGION_H
#define RUK_HOST_PLATFORM_REGION_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace ruk::host
{

constexpr size_t platform_info_words = 64;

struct shared_region {
    alignas(8) uint8_t ipmi[0xB000]; // the library's own layout, 42,668 bytes of it
    uint32_t platform_info[platform_info_words];
};

static_assert(sizeof(shared_region::ipmi) >= 42668);

// Maps the region of the chassis in `directory`; with `create` makes it, zeroed, when there is
// none. Null, with errno, when that fails.
shared_region *map_region(const std::string &directory, bool create);

} // namespace ruk::host

#endif
