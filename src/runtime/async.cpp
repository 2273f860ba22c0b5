// Commands whose answer comes to a callback.

#include "ruk_ipmi/async.h"

#include <cstddef>
#include <cstdlib>

#include "platform/log.h"
#include "platform/message_service.h"
#include "runtime/messages.h"
#include "runtime/state.h"

static_assert(sizeof(void *) != 4 || sizeof(ruk::pending_request) == 20);

using namespace ruk;

namespace
{

uint32_t no_memory()
{
    slog_elog("Cannot allocate memory in IPMI Call (null parameter received)\n");
    return IPMI_ERR_NO_MEMORY;
}

} // namespace

uint32_t send_ruk_ipmi_command(ipmi_request *request, ipmi_response_callback callback,
                               uint32_t timeout)
{
    lib_state &lib = ipmi_lib_state;
    if (!request || !callback)
        return null_record();
    auto *pending = static_cast<pending_request *>(os_malloc(sizeof(pending_request)));
    if (!pending)
        return no_memory();
    *pending = {};

    // A failure to attach or send leaves the record to nobody: nothing else refers to it.
    uint32_t index = 0;
    const uint32_t rc = send_request(request, &index);
    if (rc != 0)
        return rc;

    // The process stays attached: the callback thread collects the answer.
    *pending = {request, 0, index, callback, timeout};
    if (list_insert(&lib.pending, pending) != 0) {
        detach_ruk_shm();
        free(pending);
        return no_memory();
    }
    if (claims_callback_thread()) {
        slog_dlog("create event returned error %x\n", 0);
        slog_dlog("Creating Ipmi callback thread \n");
        create_callback_thread();
    } else {
        slog_dlog("Sending event to callback thread \n");
        os_ev_set(&lib.callback_event);
    }
    return 0;
}
