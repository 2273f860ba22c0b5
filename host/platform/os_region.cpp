#include "platform/os_region.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/directory.h"
#include "platform/log.h"
#include "platform/status.h"

namespace ruk::host
{

namespace
{

constexpr os_region_header expected = {0x52554B4F, 1, sizeof(pthread_mutex_t), sizeof(os_region)};

void *map_file(int fd)
{
    void *memory = mmap(nullptr, sizeof(os_region), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

// All of it is there before it is written to: a full disk is an error here, not a crash.
bool write_region(int fd)
{
    errno = posix_fallocate(fd, 0, sizeof(os_region));
    void *memory = errno == 0 ? map_file(fd) : nullptr;
    if (!memory)
        return false;
    auto *region = new (memory) os_region();
    region->header = expected;
    init_mutexes(region->mutexes);
    munmap(memory, sizeof(os_region));
    return true;
}

// Under another name first, so that the file is complete whenever it bears its own. Another
// process may have been faster: then theirs it is.
bool make_file(const std::string &path)
{
    std::string draft = path + ".XXXXXX";
    const int fd = mkostemp(draft.data(), O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool made =
        write_region(fd) && (link(draft.c_str(), path.c_str()) == 0 || errno == EEXIST);
    const int error = errno;
    close(fd);
    unlink(draft.c_str());
    errno = error;
    return made;
}

int open_file(const std::string &directory, const std::string &path)
{
    if (!make_runtime_directory(directory))
        return -1;
    int fd = open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0 && errno == ENOENT && make_file(path))
        fd = open(path.c_str(), O_RDWR | O_CLOEXEC);
    return fd;
}

// The region in an open file; null, with errno 0, when the file holds something else.
os_region *map_region_of(int fd)
{
    struct stat found;
    if (fstat(fd, &found) != 0)
        return nullptr;
    errno = 0;
    if (found.st_size != sizeof(os_region))
        return nullptr;
    auto *region = static_cast<os_region *>(map_file(fd));
    if (region && memcmp(&region->header, &expected, sizeof expected) != 0) {
        munmap(region, sizeof *region);
        errno = 0;
        return nullptr;
    }
    return region;
}

// Every access fails alike, so the log tells it once.
uint32_t refuse(const std::string &path, int error)
{
    static std::atomic<bool> told{false};
    if (!told.exchange(true))
        slog_elog("%s: %s\n", path.c_str(),
                  error == 0 ? "not a shared file of this build; remove it when no process uses it"
                             : strerror(error));
    return error == 0 ? RUK_OS_BAD_FILE : RUK_OS_NO_FILE;
}

uint32_t map_own_region(os_region *&region)
{
    const std::string directory = runtime_directory();
    const std::string path = directory + "/os.shm";
    const int fd = open_file(directory, path);
    if (fd < 0)
        return refuse(path, errno);
    region = map_region_of(fd);
    const int error = errno;
    close(fd);
    return region ? 0 : refuse(path, error);
}

} // namespace

uint32_t attach_os_region(os_region *&region)
{
    static std::atomic<os_region *> mapped{nullptr};
    region = mapped.load(std::memory_order_acquire);
    if (region)
        return 0;
    const uint32_t rc = map_own_region(region);
    os_region *first = nullptr;
    if (rc == 0 && !mapped.compare_exchange_strong(first, region)) {
        munmap(region, sizeof *region);
        region = first;
    }
    return rc;
}

} // namespace ruk::host
