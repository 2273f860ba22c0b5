// How a session begins: the controller and we agree on algorithms, prove to each other that we know
// the password, and so come to a key that nobody else has.
#ifndef RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_HANDSHAKE_H
#define RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_HANDSHAKE_H

#include "chassisd/bridge/rmcpplus/cipher_suite.h"
#include "chassisd/bridge/rmcpplus/connection.h"

namespace chassisd::rmcpplus
{

struct agreement {
    uint32_t our_number; // of the session
    uint32_t their_number;
    bytes session_key;
};

// Throws session_error: the controller was reached, and there is no session for this reason.
[[noreturn]] void refuse(const std::string &reason);

// Throws session_error.
agreement shake_hands(connection &controller, const bridge_config &config,
                      const cipher_suite &suite, session::clock::time_point deadline);

} // namespace chassisd::rmcpplus

#endif
