#include "platform/region.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/directory.h"
#include "platform/message_service.h"
#include "platform/platform_info.h"
#include "platform/status.h"

namespace ruk::host
{

namespace
{

// The region of this process's runtime directory, mapped once for all threads and for good.
shared_region *own_region()
{
    static std::atomic<shared_region *> mapped{nullptr};
    shared_region *region = mapped.load(std::memory_order_acquire);
    if (region)
        return region;
    region = map_region(runtime_directory(), false);
    shared_region *first = nullptr;
    if (region && !mapped.compare_exchange_strong(first, region)) {
        munmap(region, sizeof *region);
        region = first;
    }
    return region;
}

} // namespace

shared_region *map_region(const std::string &directory, bool create)
{
    const int fd =
        open((directory + "/ipmi.shm").c_str(), O_RDWR | O_CLOEXEC | (create ? O_CREAT : 0), 0600);
    if (fd < 0)
        return nullptr;
    struct stat found;
    void *memory = MAP_FAILED;
    if ((!create || ftruncate(fd, sizeof(shared_region)) == 0) && fstat(fd, &found) == 0) {
        errno = EINVAL; // a name that is there but has no memory yet
        if (found.st_size >= static_cast<off_t>(sizeof(shared_region)))
            memory =
                mmap(nullptr, sizeof(shared_region), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    }
    const int error = errno;
    close(fd);
    errno = error;
    return memory == MAP_FAILED ? nullptr : static_cast<shared_region *>(memory);
}

} // namespace ruk::host

uint32_t find_component_shm(uint32_t component, void **holder)
{
    if (component != IPMI_COMPONENT)
        return RUK_MSG_UNKNOWN_COMPONENT;
    ruk::host::shared_region *region = ruk::host::own_region();
    if (!region)
        return RUK_MSG_NO_SERVICE;
    *holder = region->ipmi;
    return 0;
}

const uint32_t *_gPlatInfo(void)
{
    // Until a chassis has been served here: an ordinary one of 16 slots.
    static const uint32_t ordinary[ruk::host::platform_info_words] = {
        1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
        0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16};
    static_assert(PLAT_INFO_TYPE == 0 && PLAT_INFO_SLOTS == 35);
    const ruk::host::shared_region *region = ruk::host::own_region();
    return region ? region->platform_info : ordinary;
}
