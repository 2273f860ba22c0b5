// Something on a port of this machine that answers datagrams.
#ifndef RUK_TESTS_SUPPORT_UDP_SERVICE_H
#define RUK_TESTS_SUPPORT_UDP_SERVICE_H

#include <functional>
#include <netinet/in.h>
#include <thread>
#include <vector>

#include "chassisd/blade.h"

namespace ruk_ipmi_testing
{

using chassisd::bytes;

// Serves in a thread for as long as it lives.
class udp_service
{
  public:
    // The datagrams that go back to whoever sent one.
    using answerer = std::function<std::vector<bytes>(const bytes &asked)>;

    // What is said to whoever asked last, every 10 ms when he says nothing; nothing if it is empty.
    using mutterer = std::function<bytes()>;

    explicit udp_service(answerer answer, mutterer mutter = nullptr);
    ~udp_service();
    udp_service(const udp_service &) = delete;
    udp_service &operator=(const udp_service &) = delete;

    uint16_t port() const { return ntohs(address_.sin_port); }

  private:
    void serve();
    void answer_next();
    void send(const bytes &datagram) const;

    answerer answer_;
    mutterer mutter_;
    const int socket_;
    const int end_;
    sockaddr_in address_{};
    sockaddr_in asking_{};
    std::thread thread_;
};

} // namespace ruk_ipmi_testing

#endif
