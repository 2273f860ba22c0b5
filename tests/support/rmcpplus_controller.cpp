#include "support/rmcpplus_controller.h"

#include <algorithm>
#include <gcrypt.h>
#include <numeric>
#include <stdexcept>

namespace ruk_ipmi_testing
{

namespace
{

const bytes rmcp_header = {0x06, 0x00, 0xFF, 0x07};

// Before a session: authentication type, sequence number, session, length, message.
constexpr size_t authentication_type_at = 4;
constexpr size_t message_length_at = 13;
constexpr size_t message_at = 14;

// Afterwards: authentication type, kind of payload, session, sequence number, length, payload.
constexpr uint8_t rmcpplus = 6;
constexpr size_t kind_at = 5;
constexpr size_t payload_length_at = 14;
constexpr size_t payload_at = 16;

// The kinds; an answer's is the next one, but for messages.
constexpr uint8_t kind_mask = 0x3F;
constexpr uint8_t signed_bit = 0x40;
constexpr uint8_t encrypted_bit = 0x80;
constexpr uint8_t ipmi_message = 0x00;
constexpr uint8_t open_session_request = 0x10;
constexpr uint8_t rakp_1 = 0x12;
constexpr uint8_t rakp_3 = 0x14;

constexpr size_t random_length = 16;
constexpr size_t block = 16; // of AES-128, whose key is as long

const bytes own_session = {0x44, 0x33, 0x22, 0x11};
const bytes own_random(random_length, 0xC0);
const bytes own_guid(16, 0x1D);

// What the keys of signatures and of encryption are made from.
const bytes of_signatures(20, 1);
const bytes of_encryption(20, 2);

bytes joined(std::initializer_list<bytes> parts)
{
    bytes all;
    for (const bytes &part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

bytes part(const bytes &whole, size_t from, size_t length)
{
    if (from > whole.size() || length > whole.size() - from)
        throw std::out_of_range("ends too early");
    const uint8_t *const first = whole.data() + from;
    return bytes(first, first + length);
}

bytes part(const bytes &whole, size_t from)
{
    return part(whole, from, whole.size() - std::min(from, whole.size()));
}

bytes little_endian(size_t number, size_t length)
{
    bytes field;
    for (; field.size() < length; number >>= 8)
        field.push_back(static_cast<uint8_t>(number));
    return field;
}

void append_checksum(bytes &data)
{
    data.push_back(static_cast<uint8_t>(-std::accumulate(data.begin(), data.end(), 0)));
}

void check(gcry_error_t error)
{
    if (error != 0)
        throw std::runtime_error(gcry_strerror(error));
}

// In place, with whole blocks.
void run_aes(gcry_error_t (*direction)(gcry_cipher_hd_t, void *, size_t, const void *, size_t),
             const bytes &key, const bytes &initial, bytes &data)
{
    gcry_cipher_hd_t cipher;
    check(gcry_cipher_open(&cipher, GCRY_CIPHER_AES128, GCRY_CIPHER_MODE_CBC, 0));
    check(gcry_cipher_setkey(cipher, key.data(), block));
    check(gcry_cipher_setiv(cipher, initial.data(), initial.size()));
    check(direction(cipher, data.data(), data.size(), nullptr, 0));
    gcry_cipher_close(cipher);
}

bytes content_for(uint8_t command, const bytes &data)
{
    switch (command) {
    case 0x38: // Get Channel Authentication Capabilities: RMCP+, and users that have names
        return {0, 1, 0x80, 0x04, 0x02, 0, 0, 0, 0};
    case 0x3B: // Set Session Privilege Level: the one that is asked for
        return joined({{0}, data});
    case 0x3C: // Close Session
        return {0};
    default:
        return rmcpplus_controller::usual_answer;
    }
}

} // namespace

const bytes rmcpplus_controller::usual_answer = {0,    0x20, 0x81, 1, 0x23, 2, 0xBF, 0x57,
                                                 0x01, 0,    0x34, 2, 0,    0, 0,    0};

rmcpplus_controller::rmcpplus_controller(const std::string &password, spoiler spoil)
    : password_(password.begin(), password.end()),
      spoil_(std::move(spoil))
{
}

bytes rmcpplus_controller::answer(const bytes &asked)
try {
    bytes datagram = answer_as_it_came(asked);
    spoil_(layer::datagram, datagram);
    return datagram;
} catch (const std::out_of_range &) {
    return {};
}

bytes rmcpplus_controller::answer_as_it_came(const bytes &asked)
{
    if (asked.at(authentication_type_at) != rmcpplus) {
        const size_t length = asked.at(message_length_at);
        const bytes message = answer_message(part(asked, message_at, length));
        return joined({rmcp_header, bytes(9), little_endian(message.size(), 1), message});
    }
    const uint8_t kind = asked.at(kind_at);
    const size_t length = asked.at(payload_length_at) + asked.at(payload_length_at + 1) * 256u;
    const bytes payload = part(asked, payload_at, length);
    switch (kind & kind_mask) {
    case open_session_request:
        return step(kind + 1, open_session(payload));
    case rakp_1:
        return step(kind + 1, first_proof(payload));
    case rakp_3:
        return step(kind + 1, second_proof(payload));
    case ipmi_message:
        return in_session(kind,
                          answer_message(kind & encrypted_bit ? decrypted(payload) : payload));
    default:
        throw std::out_of_range("unknown kind of payload");
    }
}

// To the address that asked, and so on backwards.
bytes rmcpplus_controller::answer_message(const bytes &asked) const
{
    const uint8_t command = asked.at(5);
    bytes content = content_for(command, part(asked, 6, asked.size() - 7));
    spoil_(layer::content, content);
    bytes head = {asked[3], static_cast<uint8_t>(asked[1] + 4)};
    append_checksum(head);
    bytes body = joined({{asked[0], asked[4], command}, content});
    append_checksum(body);
    bytes message = joined({head, body});
    spoil_(layer::message, message);
    return message;
}

// Whatever algorithms are asked for, at the highest privilege if none is.
bytes rmcpplus_controller::open_session(const bytes &asked)
{
    constexpr uint8_t administrator = 4;
    const uint8_t privilege = asked.at(1) == 0 ? administrator : asked[1];
    console_session_ = part(asked, 4, 4);
    const bytes algorithms = part(asked, 8, 24);
    hash_ = algorithms[4] == 0 ? 0 : algorithms[4] == 1 ? GCRY_MD_SHA1 : GCRY_MD_SHA256;
    signature_length_ = hash_ == 0 ? 0 : hash_ == GCRY_MD_SHA1 ? 12 : 16;
    return joined({{asked[0], 0, privilege, 0}, console_session_, own_session, algorithms});
}

// The second message of RAKP: the controller knows the password.
bytes rmcpplus_controller::first_proof(const bytes &asked)
{
    console_random_ = part(asked, 8, random_length);
    const uint8_t role = asked.at(24);
    const bytes user = joined({{role}, part(asked, 27)});
    session_key_ = proof_of(password_, joined({console_random_, own_random, user}));
    return joined({{asked[0], 0, 0, 0},
                   console_session_,
                   own_random,
                   own_guid,
                   proof_of(password_, joined({console_session_, own_session, console_random_,
                                               own_random, own_guid, user}))});
}

// The fourth: both have the same keys.
bytes rmcpplus_controller::second_proof(const bytes &asked) const
{
    bytes proof = proof_of(session_key_, joined({console_random_, own_session, own_guid}));
    proof.resize(signature_length_);
    return joined({{asked.at(0), 0, 0, 0}, console_session_, proof});
}

bytes rmcpplus_controller::step(uint8_t kind, bytes record) const
{
    spoil_(layer::content, record);
    return joined(
        {rmcp_header, {rmcpplus, kind}, bytes(8), little_endian(record.size(), 2), record});
}

bytes rmcpplus_controller::in_session(uint8_t kind, bytes payload)
{
    if (kind & encrypted_bit)
        payload = encrypted(std::move(payload));
    bytes packet = joined({{rmcpplus, kind},
                           console_session_,
                           little_endian(++sequence_, 4),
                           little_endian(payload.size(), 2),
                           payload});
    if (kind & signed_bit) {
        const size_t fill = (4 - (packet.size() + 2) % 4) % 4;
        packet = joined({packet, bytes(fill, 0xFF), little_endian(fill, 1), {rmcp_header.back()}});
    }
    spoil_(layer::packet, packet);
    bytes signature;
    if (kind & signed_bit) {
        signature = proof_of(proof_of(session_key_, of_signatures), packet);
        signature.resize(signature_length_);
    }
    return joined({rmcp_header, packet, signature});
}

// What is no whole block any more, once it is spoilt, is left out.
bytes rmcpplus_controller::encrypted(bytes payload) const
{
    const size_t fill = (block - (payload.size() + 1) % block) % block;
    for (size_t each = 1; each <= fill; ++each)
        payload.push_back(static_cast<uint8_t>(each));
    payload.push_back(static_cast<uint8_t>(fill));
    spoil_(layer::padded, payload);
    payload.resize(payload.size() / block * block);
    run_aes(gcry_cipher_encrypt, proof_of(session_key_, of_encryption), own_random, payload);
    return joined({own_random, payload});
}

bytes rmcpplus_controller::decrypted(const bytes &payload) const
{
    const bytes initial = part(payload, 0, block);
    bytes plain = part(payload, block);
    run_aes(gcry_cipher_decrypt, proof_of(session_key_, of_encryption), initial, plain);
    return part(plain, 0, plain.size() - 1 - plain.at(plain.size() - 1));
}

bytes rmcpplus_controller::proof_of(const bytes &key, const bytes &text) const
{
    if (hash_ == 0)
        return {};
    const auto buffer = [](const bytes &from) {
        return gcry_buffer_t{0, 0, from.size(), const_cast<uint8_t *>(from.data())};
    };
    const gcry_buffer_t both[] = {buffer(key), buffer(text)};
    bytes proof(gcry_md_get_algo_dlen(hash_));
    check(gcry_md_hash_buffers(hash_, GCRY_MD_FLAG_HMAC, proof.data(), both, 2));
    return proof;
}

} // namespace ruk_ipmi_testing
