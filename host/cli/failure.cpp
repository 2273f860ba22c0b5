#include "cli/failure.h"

#include <algorithm>
#include <cctype>

#include "cli/freeipmi.h"
#include "cli/numbers.h"
#include "platform/status.h"
#include "ruk_ipmi/types.h"

namespace cli
{

namespace
{

// The name without its explanation, its words beginning in lower case unless they are
// abbreviations.
std::string plain(std::string text)
{
    text.resize(std::min(text.find('.'), text.size()));
    bool word_begins = true;
    for (size_t at = 0; at < text.size(); ++at) {
        if (word_begins && at + 1 < text.size() &&
            islower(static_cast<unsigned char>(text[at + 1])))
            text[at] = static_cast<char>(tolower(static_cast<unsigned char>(text[at])));
        word_begins = text[at] == ' ';
    }
    return text;
}

// The codes from 0xC0 on, which say the same of every command. They are at hand, since many a
// command asks what a blade may refuse.
constexpr uint8_t first_general_code = 0xC0;
constexpr const char *general_codes[] = {
    "node busy",
    "invalid command",
    "command invalid for given LUN",
    "timeout while processing command",
    "out of space",
    "reservation canceled or invalid reservation ID",
    "request data truncated",
    "request data length invalid",
    "request data field length limit exceeded",
    "parameter out of range",
    "cannot return number of requested data bytes",
    "requested sensor, data, or record not present",
    "invalid data field in request",
    "command illegal for specified sensor or record type",
    "command response could not be provided",
    "cannot execute duplicated request",
    "command response could not be provided: SDR repository in update mode",
    "command response could not be provided: device in firmware update mode",
    "command response could not be provided: controller is being initialized",
    "destination unavailable",
    "cannot execute command due to insufficient privilege level or other restriction",
    "cannot execute command in present state",
    "cannot execute command: it is disabled or unavailable",
};

std::string completion_code_name(uint16_t netfn_cmd, uint8_t code)
{
    if (code >= first_general_code &&
        static_cast<size_t>(code - first_general_code) < std::size(general_codes))
        return general_codes[code - first_general_code];
    if (code == IPMI_COMP_CODE_UNSPECIFIED_ERROR)
        return "unspecified error";
    char text[IPMI_ERR_STR_MAX_LEN] = "";
    const auto netfn = static_cast<uint8_t>(netfn_cmd >> 8);
    const auto command = static_cast<uint8_t>(netfn_cmd);
    if (FREEIPMI(ipmi_completion_code_strerror_r)(command, netfn, code, text, sizeof text) != 0 ||
        std::string(text).find("No error message") == 0)
        return "a code of this command's own";
    return plain(text);
}

std::string status_name(uint32_t status)
{
    if (const char *text = ruk_msg_status_text(status))
        return text;
    switch (status) {
    case IPMI_ERR_BAD_LOCATION:
        return "no such location";
    case IPMI_ERR_BAD_RESPONSE_LENGTH:
        return "the answer has a wrong length";
    case IPMI_ERR_INVALID_PARAM:
        return "the library refuses a parameter";
    default:
        return "failure of the message service";
    }
}

exit_code kind_of_status(uint32_t status)
{
    switch (status) {
    case RUK_MSG_ACCESS:
        return exit_access;
    case IPMI_ERR_BAD_LOCATION:
    case IPMI_ERR_INVALID_PARAM:
        return exit_usage;
    case IPMI_ERR_BAD_RESPONSE_LENGTH:
        return exit_refused;
    default:
        return exit_transport;
    }
}

} // namespace

void check(const request_name &request, uint32_t result)
{
    if (result == 0)
        return;
    if (result > 0xFF) {
        // Statuses fit 16 bits; one that does not is shown whole.
        const std::string number =
            result <= 0xFFFF ? hex(static_cast<uint16_t>(result)) : hex(result);
        throw failure(kind_of_status(result), status_name(result) + " (" + number + ")", result);
    }
    const auto code = static_cast<uint8_t>(result);
    throw failure(code == IPMI_COMP_CODE_INVALID_COMMAND ? exit_unsupported : exit_refused,
                  std::string(request.name) + " refused: " + hex(code) + " (" +
                      completion_code_name(request.netfn_cmd, code) + ")",
                  code);
}

const char *kind_name(exit_code kind)
{
    switch (kind) {
    case exit_fine:
        return "fine";
    case exit_refused:
        return "refused";
    case exit_usage:
        return "usage";
    case exit_access:
        return "access";
    case exit_transport:
        return "transport";
    case exit_unsupported:
        return "unsupported";
    }
    return "unknown";
}

exit_code worse(exit_code one, exit_code other)
{
    static constexpr exit_code from_best[] = {exit_fine,  exit_unsupported, exit_refused,
                                              exit_usage, exit_access,      exit_transport};
    const auto rank = [](exit_code kind) {
        return std::find(std::begin(from_best), std::end(from_best), kind);
    };
    return rank(one) > rank(other) ? one : other;
}

} // namespace cli
