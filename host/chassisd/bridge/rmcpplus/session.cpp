#include "chassisd/bridge/rmcpplus/session.h"

#include "chassisd/bridge/rmcpplus/message.h"
#include "chassisd/fields.h"

namespace chassisd::rmcpplus
{

namespace
{

constexpr uint8_t application = 0x06;
constexpr uint8_t set_session_privilege = 0x3B;
constexpr uint8_t close_session = 0x3C;

// A session that was idle for longer is asked whether it is still there: a controller that was
// started anew does not know it any more, and leaves a request in it without an answer.
constexpr auto soon = std::chrono::seconds(1);

} // namespace

rmcpplus_session::rmcpplus_session(const bridge_config &config, const cipher_suite &suite,
                                   clock::time_point deadline)
    : controller_(config),
      agreed_(shake_hands(controller_, config, suite, deadline)),
      sealer_(suite, agreed_.session_key, agreed_.our_number, agreed_.their_number)
{
    raise_privilege(config, deadline);
}

// Does not wait for the answer: it would be that of a session that is no more.
rmcpplus_session::~rmcpplus_session()
{
    const request end{application, 0, close_session, record_of(le32{agreed_.their_number})};
    controller_.send(sealer_.sealed(message_of(end, message_number_)));
}

bytes rmcpplus_session::ask(const request &request, clock::time_point deadline)
{
    const unsigned number = message_number_++ % message_numbers;
    const bytes message = message_of(request, number);
    const auto take = [&](const bytes &datagram) -> std::optional<bytes> {
        const std::optional<bytes> answer = sealer_.unsealed(datagram);
        return answer ? answer_in(*answer, request, number) : std::nullopt;
    };
    bytes answer = controller_.converse([&] { return sealer_.sealed(message); }, take, deadline);
    answered_ = clock::now();
    return answer;
}

bool rmcpplus_session::is_usable(clock::time_point deadline)
{
    const auto now = clock::now();
    const auto idle = now - answered_;
    if (idle <= soon)
        return true;
    if (idle > longest_idleness())
        return false;
    try {
        ask(presence_request, now + (deadline - now) / 2);
        return true;
    } catch (const session_error &) {
        return false;
    }
}

// A session begins with a user's privilege.
void rmcpplus_session::raise_privilege(const bridge_config &config, clock::time_point deadline)
{
    const bytes answer =
        ask({application, 0, set_session_privilege, {privilege_of(config)}}, deadline);
    if (answer[0] != 0)
        refuse("it does not grant the privilege");
}

} // namespace chassisd::rmcpplus
