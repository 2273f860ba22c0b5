#include "chassisd/bridge/rmcpplus/handshake.h"

#include <algorithm>
#include <iterator>

#include "chassisd/bridge/rmcpplus/packet.h"
#include "chassisd/fields.h"
#include "platform/status.h"

namespace chassisd::rmcpplus
{

namespace
{

constexpr size_t random_length = 16;
constexpr size_t guid_length = 16;

struct refusal {
    uint8_t status;
    const char *words;
};

constexpr refusal refusals[] = {
    {0x01, "it has no room for another session"},
    {0x04, "it lacks the cipher suite's authentication algorithm"},
    {0x05, "it lacks the cipher suite's integrity algorithm"},
    {0x09, "it does not know the privilege"},
    {0x0A, "it does not grant the privilege"},
    {0x0B, "it has no room for another session of that privilege"},
    {0x0C, "it does not take user names of that length"},
    {0x0D, "it does not know the user"},
    {0x0F, "it found the password wrong"},
    {0x10, "it lacks the cipher suite's confidentiality algorithm"},
    {0x11, "it does not have the cipher suite"},
};

[[noreturn]] void refuse_for(uint8_t status)
{
    const auto known = std::find_if(std::begin(refusals), std::end(refusals),
                                    [&](const refusal &each) { return each.status == status; });
    if (known != std::end(refusals))
        refuse(known->words);
    refuse("its status is " + std::to_string(status));
}

// Reads a payload from its front. What ends too early goes on with zeros, which prove nothing.
class reader
{
  public:
    explicit reader(bytes payload) : rest_(std::move(payload)) {}

    bytes next(size_t count)
    {
        const size_t there = std::min(count, rest_.size());
        const auto end = rest_.begin() + static_cast<std::ptrdiff_t>(there);
        bytes taken(rest_.begin(), end);
        taken.resize(count);
        rest_.erase(rest_.begin(), end);
        return taken;
    }

    uint32_t next_number() { return ruk::load_le32(next(4).data()); }

    bytes rest() { return std::move(rest_); }

  private:
    bytes rest_;
};

class handshake
{
  public:
    handshake(connection &controller, const bridge_config &config, const cipher_suite &suite,
              session::clock::time_point deadline)
        : controller_(controller),
          suite_(suite),
          deadline_(deadline),
          password_(config.password.begin(), config.password.end()),
          role_(name_only | privilege_of(config)),
          user_(record_of(role_, static_cast<int>(config.username.size()),
                          bytes(config.username.begin(), config.username.end())))
    {
    }

    agreement shake()
    {
        const bytes drawn = unforeseeable(sizeof ours_);
        ours_ = std::max<uint32_t>(1, ruk::load_le32(drawn.data()));
        propose_algorithms();
        exchange_proofs();
        confirm();
        return {ours_, theirs_, key_};
    }

  private:
    // The user is looked up by the name alone, whatever privilege is wanted.
    static constexpr uint8_t name_only = 0x10;

    void propose_algorithms();
    void exchange_proofs();
    void confirm();
    reader step(kind asked, const bytes &payload, kind answered);
    bytes proof(const bytes &key, const bytes &text) const { return hmac(suite_.hash, key, text); }

    connection &controller_;
    const cipher_suite &suite_;
    session::clock::time_point deadline_;
    uint8_t tag_ = 0;
    bytes password_;
    uint8_t role_;
    bytes user_; // role, length and name, as proofs have it
    uint32_t ours_ = 0;
    uint32_t theirs_ = 0;
    bytes our_random_ = unforeseeable(random_length);
    bytes their_random_;
    bytes guid_;
    bytes key_;
};

// Sends a payload behind a new tag, and reads the answer's from behind the session's number.
reader handshake::step(kind asked, const bytes &payload, kind answered)
{
    const uint8_t tag = ++tag_;
    const auto packet = [&] { return open_packet(asked, record_of(tag, payload)); };
    const auto take = [&](const bytes &datagram) {
        std::optional<bytes> found = payload_of_open_packet(datagram, answered);
        return found && found->size() > 1 && found->front() == tag ? found : std::nullopt;
    };
    reader answer(controller_.converse(packet, take, deadline_));
    if (const uint8_t status = answer.next(4)[1])
        refuse_for(status);
    if (answer.next_number() != ours_)
        throw session_error(RUK_MSG_UNREACHABLE, "an answer that makes no sense");
    return answer;
}

bytes algorithm(uint8_t purpose, uint8_t chosen)
{
    constexpr uint8_t length = 8;
    return {purpose, 0, 0, length, chosen, 0, 0, 0};
}

uint8_t next_algorithm(reader &answer)
{
    return answer.next(8)[4];
}

void handshake::propose_algorithms()
{
    reader answer = step(
        open_session_request,
        record_of(role_ & ~name_only, le16(0), le32{ours_}, algorithm(0, suite_.authentication),
                  algorithm(1, suite_.integrity), algorithm(2, suite_.confidentiality)),
        open_session_response);
    theirs_ = answer.next_number();
    const bool is_agreed = next_algorithm(answer) == suite_.authentication &&
                           next_algorithm(answer) == suite_.integrity &&
                           next_algorithm(answer) == suite_.confidentiality;
    if (theirs_ == 0 || !is_agreed)
        refuse("it wants other algorithms");
}

// The controller proves that it knows the password, and we make the session's key.
void handshake::exchange_proofs()
{
    constexpr size_t behind_role = 1;
    const bytes name(user_.begin() + behind_role, user_.end());
    reader answer = step(rakp_message_1,
                         record_of(0, le16(0), le32{theirs_}, our_random_, role_, le16(0), name),
                         rakp_message_2);
    their_random_ = answer.next(random_length);
    guid_ = answer.next(guid_length);
    const bytes expected = proof(
        password_, record_of(le32{ours_}, le32{theirs_}, our_random_, their_random_, guid_, user_));
    if (answer.rest() != expected)
        refuse("the password is wrong");
    key_ = proof(password_, record_of(our_random_, their_random_, user_));
}

// We prove that we know it, and the controller that it has the same key.
void handshake::confirm()
{
    const bytes ours = proof(password_, record_of(their_random_, le32{ours_}, user_));
    reader answer =
        step(rakp_message_3, record_of(0, le16(0), le32{theirs_}, ours), rakp_message_4);
    bytes expected = proof(key_, record_of(our_random_, le32{theirs_}, guid_));
    expected.resize(suite_.signature_length);
    if (answer.rest() != expected)
        refuse("it has another key");
}

} // namespace

void refuse(const std::string &reason)
{
    throw session_error(RUK_MSG_ACCESS, "no session: " + reason);
}

agreement shake_hands(connection &controller, const bridge_config &config,
                      const cipher_suite &suite, session::clock::time_point deadline)
{
    return handshake(controller, config, suite, deadline).shake();
}

} // namespace chassisd::rmcpplus
