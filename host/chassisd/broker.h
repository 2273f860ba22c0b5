// Component 4: takes requests from client processes, hands them to the blades, and sees to it that
// no client can harm another.
#ifndef RUK_HOST_CHASSISD_BROKER_H
#define RUK_HOST_CHASSISD_BROKER_H

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "chassisd/chassis.h"
#include "chassisd/client.h"

namespace chassisd
{

// Listens in the runtime directory, which exists, from construction on, alone: throws
// std::runtime_error when another daemon serves it or it cannot be used.
class broker
{
  public:
    broker(const std::string &directory, const chassis &chassis);
    ~broker();
    broker(const broker &) = delete;
    broker &operator=(const broker &) = delete;

    // Serves. Calls `go_on` whenever `control_fd` becomes readable, until it says false. It may
    // change the chassis.
    void run(int control_fd, const std::function<bool()> &go_on);

  private:
    void accept_clients();
    void serve(const std::shared_ptr<client> &from);
    void dispatch(const std::shared_ptr<client> &from, const ruk::host::request_frame &frame);
    bool watch(int fd);

    const chassis &chassis_;
    std::string directory_;
    int lock_ = -1;
    int listener_ = -1;
    int epoll_ = -1;
    int spare_ = -1; // given up for a moment when descriptors run out, to turn a client away
    std::unordered_map<int, std::shared_ptr<client>> clients_;
};

} // namespace chassisd

#endif
