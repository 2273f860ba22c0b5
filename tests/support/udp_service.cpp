#include "support/udp_service.h"

#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace ruk_ipmi_testing
{

namespace
{

constexpr int muttering_ms = 10;

template <typename Result>
Result checked(Result result)
{
    if (result < 0)
        throw std::system_error(errno, std::generic_category());
    return result;
}

sockaddr *general(sockaddr_in &address)
{
    return reinterpret_cast<sockaddr *>(&address);
}

} // namespace

udp_service::udp_service(answerer answer, mutterer mutter)
    : answer_(std::move(answer)),
      mutter_(std::move(mutter)),
      socket_(checked(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))),
      end_(checked(eventfd(0, EFD_CLOEXEC)))
{
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address_;
    checked(bind(socket_, general(address_), size));
    checked(getsockname(socket_, general(address_), &size));
    thread_ = std::thread([this] { serve(); });
}

udp_service::~udp_service()
{
    eventfd_write(end_, 1);
    thread_.join();
    close(end_);
    close(socket_);
}

void udp_service::serve()
{
    pollfd awaited[] = {{socket_, POLLIN, 0}, {end_, POLLIN, 0}};
    for (;;) {
        checked(TEMP_FAILURE_RETRY(poll(awaited, 2, mutter_ ? muttering_ms : -1)));
        if (awaited[1].revents != 0)
            return;
        if (awaited[0].revents != 0)
            answer_next();
        else
            send(mutter_());
    }
}

void udp_service::answer_next()
{
    bytes asked(2048);
    socklen_t size = sizeof asking_;
    asked.resize(static_cast<size_t>(
        checked(recvfrom(socket_, asked.data(), asked.size(), 0, general(asking_), &size))));
    for (const bytes &datagram : answer_(asked))
        send(datagram);
}

void udp_service::send(const bytes &datagram) const
{
    const auto *to = reinterpret_cast<const sockaddr *>(&asking_);
    if (!datagram.empty() && asking_.sin_port != 0)
        sendto(socket_, datagram.data(), datagram.size(), 0, to, sizeof asking_);
}

} // namespace ruk_ipmi_testing
