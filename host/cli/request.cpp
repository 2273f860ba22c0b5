#include "cli/request.h"

#include <algorithm>

#include "platform/status.h"

namespace cli
{

namespace
{

// What the library's own command functions offer and how long they wait at the most.
constexpr uint32_t capacity = 483;
constexpr uint32_t wait_ticks = 1000;

} // namespace

bytes exchange(const request_name &name, const blade &at, const bytes &payload, size_t shortest)
{
    ipmi_request request{};
    request.location = at.location;
    request.netfn_cmd = name.netfn_cmd;
    request.data_len = static_cast<uint32_t>(payload.size());
    if (payload.size() > sizeof request.data)
        throw usage_failure(std::to_string(payload.size()) + " bytes do not fit a request of " +
                            std::to_string(sizeof request.data));
    std::copy(payload.begin(), payload.end(), request.data);

    ipmi_response response{};
    response.data_len = capacity;
    check(name, timed(at, [&] { return get_ruk_ipmi_response(&request, &response, wait_ticks); }));
    check(name, response.comp_code);

    const size_t length = std::min<size_t>(response.data_len, sizeof response.data);
    if (length < 1 + shortest)
        throw failure(exit_refused, std::string(name.name) + ": the answer has " +
                                        std::to_string(length) + " bytes, not " +
                                        std::to_string(1 + shortest));
    return bytes(response.data + 1, response.data + length);
}

byte_pair ask_pair(const request_name &request, const blade &at,
                   int (*get)(const blade_location *, uint8_t *, uint8_t *), const bytes &bare)
{
    constexpr size_t ends_at = 9; // head and length stand before the two
    byte_pair found;
    call(request, at, get, &found.a, &found.b);
    if (found.b == 0)
        exchange(request, at, bare, ends_at);
    return found;
}

bool too_long(const failure &refusal)
{
    switch (refusal.code) {
    case 0xC7: // request length invalid
    case 0xC8: // request length limit exceeded
    case 0xCA: // cannot return that many bytes
    case 0xFF: // unspecified
        return true;
    default:
        return false;
    }
}

bool nobody_serves(const failure &why)
{
    return why.code == RUK_MSG_NO_SERVICE || why.code == RUK_MSG_SERVICE_GONE;
}

} // namespace cli
