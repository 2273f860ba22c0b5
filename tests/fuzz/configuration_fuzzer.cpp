// Any bytes as a chassis file: it is read, or refused with a line that begins
// with its name.

#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

#include "chassisd/config.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Files that it names are looked for beside it, where there are none.
    static const int file = memfd_create("chassis.toml", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size))
        abort();
    try {
        chassisd::load_config(path);
    } catch (const chassisd::config_error &refusal) {
        if (std::string(refusal.what()).rfind(path, 0) != 0)
            abort();
    }
    return 0;
}
