// What the synchronous exchange and the asynchronous command do alike.
#ifndef RUK_RUNTIME_MESSAGES_H
#define RUK_RUNTIME_MESSAGES_H

#include "ruk_ipmi/types.h"

// Nothing here is exported, so calls need no indirection.
#pragma GCC visibility push(hidden)

namespace ruk
{

// Refuses a call without a request, or without a place for its answer.
uint32_t null_record();

// Attaches and sends a request to the IPMI component. The process stays attached when that
// succeeded, and only then.
uint32_t send_request(ipmi_request *request, uint32_t *index);

} // namespace ruk

#pragma GCC visibility pop

#endif
