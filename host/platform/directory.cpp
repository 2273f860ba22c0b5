#include "platform/directory.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ruk::host
{

namespace
{

constexpr char socket_name[] = "ipmi.sock";

const char *environment(const char *name)
{
    const char *value = secure_getenv(name);
    return value && *value ? value : nullptr;
}

// Where a user without any other place runs a chassis.
std::string fallback_directory()
{
    return "/tmp/ruk-" + std::to_string(geteuid());
}

// Under /tmp anybody may have made the directory first, and would be trusted with every command.
bool somebody_elses(const std::string &directory, int fd)
{
    struct stat found;
    return directory == fallback_directory() &&
           (fstat(fd, &found) != 0 || found.st_uid != geteuid());
}

} // namespace

std::string runtime_directory()
{
    if (const char *directory = environment("RUK_RUNTIME_DIR"))
        return directory;
    if (geteuid() == 0)
        return "/run/ruk";
    if (const char *directory = environment("XDG_RUNTIME_DIR"))
        return std::string(directory) + "/ruk";
    return fallback_directory();
}

bool make_runtime_directory(const std::string &directory)
{
    if (mkdir(directory.c_str(), 0700) == 0)
        return true;
    if (errno != EEXIST)
        return false;
    const int fd = open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool refused = somebody_elses(directory, fd);
    close(fd);
    errno = EPERM;
    return !refused;
}

service_address::service_address(const std::string &directory)
    : directory_fd_(open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))
{
    if (directory_fd_ >= 0 && somebody_elses(directory, directory_fd_)) {
        close(directory_fd_);
        directory_fd_ = -1;
    }
    // A socket's name is short by law; a descriptor of its directory makes every name short.
    address_.sun_family = AF_UNIX;
    snprintf(address_.sun_path, sizeof address_.sun_path, "/proc/self/fd/%d/%s", directory_fd_,
             socket_name);
}

service_address::~service_address()
{
    if (directory_fd_ >= 0)
        close(directory_fd_);
}

} // namespace ruk::host
