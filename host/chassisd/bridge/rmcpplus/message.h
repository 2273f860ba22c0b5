// IPMI messages as they go over a LAN: addresses, sequence number and checksums around a request
// or an answer.
#ifndef RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_MESSAGE_H
#define RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_MESSAGE_H

#include <optional>

#include "chassisd/blade.h"

namespace chassisd::rmcpplus
{

constexpr unsigned message_numbers = 64; // they go round

bytes message_of(const request &asked, unsigned number);

// Completion code and data, when this is the answer to that request under that number.
std::optional<bytes> answer_in(const bytes &message, const request &asked, unsigned number);

} // namespace chassisd::rmcpplus

#endif
