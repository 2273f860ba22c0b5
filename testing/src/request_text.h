// Requests as complaints show them: in words, and in rows of bytes with what differs marked.
#ifndef RUK_IPMI_TESTING_REQUEST_TEXT_H
#define RUK_IPMI_TESTING_REQUEST_TEXT_H

#include <cstdint>
#include <string>

#include "ruk_ipmi_testing.h"

namespace ruk_ipmi_testing
{

// A message as it came to the message service.
struct sent_message {
    uint32_t component;
    uint32_t flags;
    uint32_t length; // as the sender has it
    bytes content;   // at most what a request can have
};

bool is_as_expected(const sent_message &came, const ipmi_request &expected);

// Lines, each with its end.
std::string expected_text(const ipmi_request &request);
std::string received_text(const sent_message &came);

// Both, and what of the one is not what the other has.
std::string difference(const sent_message &came, const ipmi_request &expected);

} // namespace ruk_ipmi_testing

#endif
