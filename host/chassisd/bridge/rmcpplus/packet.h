// RMCP+ packets: what stands around a payload in a datagram, outside and inside of a session.
#ifndef RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_PACKET_H
#define RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_PACKET_H

#include <optional>

#include "chassisd/bridge/rmcpplus/cipher_suite.h"
#include "chassisd/bridge/rmcpplus/cryptography.h"

namespace chassisd::rmcpplus
{

// The kinds of payload that open a session.
enum kind : uint8_t {
    open_session_request = 0x10,
    open_session_response = 0x11,
    rakp_message_1 = 0x12,
    rakp_message_2 = 0x13,
    rakp_message_3 = 0x14,
    rakp_message_4 = 0x15,
};

// Outside of a session nothing is secret, and nothing is signed.
bytes open_packet(kind kind, const bytes &payload);
std::optional<bytes> payload_of_open_packet(const bytes &datagram, kind kind);

// Makes the packets of a session, which are encrypted and signed, and takes the controller's apart.
class sealer
{
  public:
    // Both ends have a number for the session; packets bear the receiver's. `key` is the session's,
    // from which those for signing and for encrypting are made.
    sealer(const cipher_suite &suite, const bytes &key, uint32_t our_number, uint32_t their_number);

    // With a number of its own, so a packet that is sent again is sealed again.
    bytes sealed(const bytes &message);

    // The message; none when the packet is not of this session, not genuine, or not newer than
    // those before.
    std::optional<bytes> unsealed(const bytes &datagram);

  private:
    size_t signature_length_;
    signer signer_;
    block_cipher cipher_;
    uint32_t our_number_;
    uint32_t their_number_;
    uint32_t sent_ = 0;
    uint32_t received_ = 0;
};

} // namespace chassisd::rmcpplus

#endif
