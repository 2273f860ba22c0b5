#include "chassisd/bridge/rmcpplus/packet.h"

#include <algorithm>

#include "chassisd/fields.h"

namespace chassisd::rmcpplus
{

namespace
{

// Where things are in a packet. What is signed begins at the format and ends before the signature.
const bytes rmcp_header = {0x06, 0x00, 0xFF, 0x07};
constexpr size_t format_at = 4;
constexpr size_t kind_at = 5;
constexpr size_t session_at = 6;
constexpr size_t number_at = 10;
constexpr size_t length_at = 14;
constexpr size_t payload_at = 16;

constexpr uint8_t rmcpplus_format = 0x06;
constexpr uint8_t next_header = 0x07;
constexpr uint8_t sealed_message = 0xC0; // one of IPMI, encrypted and signed

constexpr size_t block = block_cipher::block;

// How many bytes are missing to a multiple of `unit`.
size_t missing(size_t size, size_t unit)
{
    return (unit - size % unit) % unit;
}

// IPMI has keys made of the session's by signing a number that is repeated.
bytes key_for(int number, const cipher_suite &suite, const bytes &session_key)
{
    return hmac(suite.hash, session_key, bytes(20, static_cast<uint8_t>(number)));
}

// Whether a packet has that kind of payload for that session, and all of it.
bool is_packet(const bytes &datagram, uint8_t kind, uint32_t session)
{
    return datagram.size() >= payload_at && datagram[0] == rmcp_header[0] &&
           datagram[3] == rmcp_header[3] && datagram[format_at] == rmcpplus_format &&
           datagram[kind_at] == kind && ruk::load_le32(&datagram[session_at]) == session &&
           ruk::load_le16(&datagram[length_at]) <= datagram.size() - payload_at;
}

bytes packet_of(uint8_t kind, uint32_t session, uint32_t number, const bytes &payload)
{
    return record_of(rmcp_header, rmcpplus_format, kind, le32{session}, le32{number},
                     le16(payload.size()), payload);
}

} // namespace

bytes open_packet(kind kind, const bytes &payload)
{
    return packet_of(kind, 0, 0, payload);
}

std::optional<bytes> payload_of_open_packet(const bytes &datagram, kind kind)
{
    if (!is_packet(datagram, kind, 0))
        return std::nullopt;
    const auto payload = datagram.begin() + payload_at;
    return bytes(payload, payload + ruk::load_le16(&datagram[length_at]));
}

sealer::sealer(const cipher_suite &suite, const bytes &key, uint32_t our_number,
               uint32_t their_number)
    : signature_length_(suite.signature_length),
      signer_(suite.hash, key_for(1, suite, key)),
      cipher_(key_for(2, suite, key)),
      our_number_(our_number),
      their_number_(their_number)
{
}

bytes sealer::sealed(const bytes &message)
{
    bytes payload(block);
    gcry_create_nonce(payload.data(), block); // a fresh initial vector; it is no secret
    append(payload, message);
    const size_t fill = missing(message.size() + 1, block);
    for (size_t each = 1; each <= fill; ++each)
        append(payload, static_cast<int>(each));
    append(payload, static_cast<int>(fill));
    cipher_.encrypt(payload.data(), &payload[block], payload.size() - block);

    bytes packet = packet_of(sealed_message, their_number_, ++sent_, payload);
    const size_t padding = missing(packet.size() - format_at + 2, 4);
    packet.resize(packet.size() + padding, 0xFF);
    append(packet, static_cast<int>(padding));
    append(packet, next_header);
    append(packet,
           signer_.signature_of(&packet[format_at], packet.size() - format_at, signature_length_));
    return packet;
}

std::optional<bytes> sealer::unsealed(const bytes &datagram)
{
    if (!is_packet(datagram, sealed_message, our_number_))
        return std::nullopt;
    const size_t length = ruk::load_le16(&datagram[length_at]);
    const size_t behind = datagram.size() - payload_at - length;
    if (length < 2 * block || length % block != 0 || behind < 2 + signature_length_)
        return std::nullopt;
    const size_t signature_at = datagram.size() - signature_length_;
    if (!signer_.is_genuine(&datagram[format_at], signature_at - format_at, &datagram[signature_at],
                            signature_length_))
        return std::nullopt;
    const uint32_t number = ruk::load_le32(&datagram[number_at]);
    if (static_cast<int32_t>(number - received_) <= 0)
        return std::nullopt;
    received_ = number;

    const auto payload = datagram.begin() + payload_at;
    bytes message(payload + block, payload + static_cast<std::ptrdiff_t>(length));
    cipher_.decrypt(&datagram[payload_at], message.data(), message.size());
    const size_t fill = message.back();
    if (fill >= block)
        return std::nullopt;
    message.resize(message.size() - 1 - fill);
    return message;
}

} // namespace chassisd::rmcpplus
