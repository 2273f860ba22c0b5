#include "chassisd/bridge/freeipmi_session.h"

#include <algorithm>

#include "chassisd/bridge/workarounds.h"
#include "platform/status.h"

namespace chassisd
{

namespace
{

// More than any answer that fits a response record.
constexpr size_t longest_answer = 1024;

struct timing {
    unsigned patience_ms;
    unsigned retransmit_ms;
};

// FreeIPMI looks at the clock only when it is about to send a request again, and so overruns a
// time-out by up to one such interval.
timing timing_of(const bridge_config &config)
{
    const unsigned retransmit = std::min(config.retransmit_ms, config.timeout_ms / 4);
    return {config.timeout_ms - retransmit, retransmit};
}

// As FreeIPMI wants it: host:port, with brackets around an IPv6 address.
std::string address_of(const bridge_config &config)
{
    const bool bare_ipv6 = config.host.find(':') != std::string::npos && config.host.front() != '[';
    const std::string host = bare_ipv6 ? "[" + config.host + "]" : config.host;
    return host + ":" + std::to_string(config.port);
}

// What keeps a session from being opened is either silence or a controller (or FreeIPMI, ahead of
// it) that does not accept what was offered: only the first may look like a dead host. An answer
// that makes no sense, or that the network brings twice, is no refusal.
uint32_t status_of_opening(int error)
{
    switch (error) {
    case IPMI_ERR_SUCCESS:
    case IPMI_ERR_CONNECTION_TIMEOUT:
    case IPMI_ERR_SESSION_TIMEOUT:
    case IPMI_ERR_MESSAGE_TIMEOUT:
    case IPMI_ERR_DRIVER_TIMEOUT:
    case IPMI_ERR_DRIVER_BUSY:
    case IPMI_ERR_BMC_BUSY:
    case IPMI_ERR_HOSTNAME_INVALID:
    case IPMI_ERR_OUT_OF_MEMORY:
    case IPMI_ERR_SYSTEM_ERROR:
    case IPMI_ERR_INTERNAL_ERROR:
        return RUK_MSG_UNREACHABLE;
    default:
        return RUK_MSG_ACCESS;
    }
}

// FreeIPMI calls some answers that it can make nothing of a success, though there is no result.
std::string reason_of(ipmi_ctx_t context)
{
    if (ipmi_ctx_errnum(context) == IPMI_ERR_SUCCESS)
        return "an answer that makes no sense";
    return ipmi_ctx_errormsg(context);
}

} // namespace

void freeipmi_session::closer::operator()(ipmi_ctx_t context) const
{
    ipmi_ctx_close(context);
    ipmi_ctx_destroy(context);
}

freeipmi_session::freeipmi_session(const bridge_config &config) : context_(ipmi_ctx_create())
{
    if (!context_)
        throw std::bad_alloc();
    const timing timing = timing_of(config);
    patience_ = std::chrono::milliseconds(timing.patience_ms);
    if (ipmi_ctx_open_outofband_2_0(context_.get(), address_of(config).c_str(),
                                    config.username.c_str(), config.password.c_str(), nullptr, 0,
                                    privilege_of(config), config.cipher_suite, timing.patience_ms,
                                    timing.retransmit_ms, workaround_flags(config.workarounds),
                                    IPMI_FLAGS_DEFAULT) < 0)
        throw session_error(status_of_opening(ipmi_ctx_errnum(context_.get())),
                            reason_of(context_.get()));
    answered();
}

bytes freeipmi_session::ask(const request &request, clock::time_point /*deadline*/)
{
    bytes asked = {request.command};
    asked.insert(asked.end(), request.data.begin(), request.data.end());
    bytes answer(longest_answer);
    const int length =
        ipmi_cmd_raw(context_.get(), request.lun, request.netfn, asked.data(),
                     static_cast<unsigned>(asked.size()), answer.data(), longest_answer);
    if (length < 2)
        throw session_error(RUK_MSG_UNREACHABLE, reason_of(context_.get()));
    answered();
    answer.resize(static_cast<size_t>(length));
    answer.erase(answer.begin()); // the command, repeated
    return answer;
}

// Nor is it when the machine's clock was set: back, and FreeIPMI might wait by as much longer;
// forward, and it would not wait at all.
bool freeipmi_session::is_usable(clock::time_point /*deadline*/)
{
    using std::chrono::seconds;
    const auto idle = clock::now() - answered_;
    const auto drift = std::chrono::system_clock::now() - answered_at_ - idle;
    return idle <= longest_idleness() && drift <= seconds(1) && drift >= seconds(-1);
}

void freeipmi_session::answered()
{
    answered_ = clock::now();
    answered_at_ = std::chrono::system_clock::now();
}

} // namespace chassisd
