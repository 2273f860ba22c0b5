// The runtime directory: one directory is one chassis, so that any number of them can live on one
// machine.
#ifndef RUK_HOST_PLATFORM_DIRECTORY_H
#define RUK_HOST_PLATFORM_DIRECTORY_H

#include <string>
#include <sys/socket.h>
#include <sys/un.h>

namespace ruk::host
{

// $RUK_RUNTIME_DIR, else /run/ruk for root, else $XDG_RUNTIME_DIR/ruk, else a directory of the
// user's own under /tmp.
std::string runtime_directory();

// Makes the directory, for its user alone, unless it is there. False, with errno, when it cannot
// be made or is somebody else's.
bool make_runtime_directory(const std::string &directory);

// The address of the daemon's socket in a directory, however long the directory's name is. Holds
// a descriptor for as long as the address is used.
class service_address
{
  public:
    explicit service_address(const std::string &directory);
    ~service_address();
    service_address(const service_address &) = delete;
    service_address &operator=(const service_address &) = delete;

    const sockaddr *get() const { return reinterpret_cast<const sockaddr *>(&address_); }
    socklen_t size() const { return sizeof address_; }
    const char *path() const { return address_.sun_path; }

  private:
    sockaddr_un address_{};
    int directory_fd_;
};

} // namespace ruk::host

#endif
