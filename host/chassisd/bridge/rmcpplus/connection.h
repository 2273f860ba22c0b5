// Datagrams to one controller and back.
#ifndef RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_CONNECTION_H
#define RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_CONNECTION_H

#include <functional>

#include "chassisd/bridge/session.h"

namespace chassisd::rmcpplus
{

class connection
{
  public:
    using clock = session::clock;

    // Throws session_error when the controller has no address that can be sent to.
    explicit connection(const bridge_config &config);
    ~connection();
    connection(const connection &) = delete;
    connection &operator=(const connection &) = delete;

    // Sends what `next` makes, and again as often as the controller is to be reminded, until `take`
    // finds the answer in a datagram. Throws session_error when there is none by the deadline.
    bytes converse(const std::function<bytes()> &next,
                   const std::function<std::optional<bytes>(const bytes &)> &take,
                   clock::time_point deadline);

    // Waits for nothing; what cannot be sent is lost, as on any network.
    void send(const bytes &datagram) const;

  private:
    bool receive(bytes &datagram, clock::duration patience);

    int socket_ = -1;
    std::chrono::milliseconds reminder_;
    std::chrono::milliseconds patience_{0}; // that the socket has now
};

} // namespace chassisd::rmcpplus

#endif
