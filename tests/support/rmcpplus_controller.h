// A controller behind RMCP+, as far as it takes to open a session and to ask in it: cipher suites 0
// to 3 and 17, and one answer to whatever is asked.
//
// It is honest, but what it sends may be spoilt at every layer while that is being made, so that
// what is wrong can lie below a checksum, a signature and an encryption that are right.
#ifndef RUK_TESTS_SUPPORT_RMCPPLUS_CONTROLLER_H
#define RUK_TESTS_SUPPORT_RMCPPLUS_CONTROLLER_H

#include <functional>
#include <string>

#include "chassisd/blade.h"

namespace ruk_ipmi_testing
{

using chassisd::bytes;

// What a datagram is made of, from the inside out.
enum class layer {
    content,  // of a message: completion code and data; of a step towards a session: its record
    message,  // with addresses, sequence number and checksums
    padded,   // as it will be encrypted
    packet,   // with the session's header and trailer, as it will be signed
    datagram, // as it will be sent
};

class rmcpplus_controller
{
  public:
    using spoiler = std::function<void(layer, bytes &)>;

    // Its answer to anything but what opens and closes a session: a completion code and data.
    static const bytes usual_answer;

    rmcpplus_controller(const std::string &password, spoiler spoil);

    // The answer to a datagram; none to one that it cannot read.
    bytes answer(const bytes &asked);

  private:
    bytes answer_as_it_came(const bytes &asked);
    bytes answer_message(const bytes &asked) const;
    bytes open_session(const bytes &asked);
    bytes first_proof(const bytes &asked);
    bytes second_proof(const bytes &asked) const;
    bytes step(uint8_t kind, bytes record) const;
    bytes in_session(uint8_t kind, bytes payload);

    bytes encrypted(bytes payload) const;
    bytes decrypted(const bytes &payload) const;
    bytes proof_of(const bytes &key, const bytes &text) const;

    bytes password_;
    spoiler spoil_;
    int hash_ = 0; // that the session is authenticated with
    size_t signature_length_ = 0;
    bytes console_session_;
    bytes console_random_;
    bytes session_key_;
    uint32_t sequence_ = 0;
};

} // namespace ruk_ipmi_testing

#endif
