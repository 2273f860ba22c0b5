// The synchronous exchange on which every command function stands. It keeps no state: each call
// attaches, sends, waits and detaches by itself, so any number of threads may be in it at once.

#include "ruk_ipmi/exchange.h"

#include <cstddef>

#include "platform/log.h"
#include "platform/message_service.h"
#include "runtime/messages.h"
#include "runtime/threads.h"

static_assert(sizeof(blade_location) == 4 && offsetof(blade_location, sub_slot_id) == 1 &&
              offsetof(blade_location, reserved) == 2);

static_assert(sizeof(ipmi_request) == 512 && offsetof(ipmi_request, msg_type) == 0x00 &&
              offsetof(ipmi_request, reserved_04) == 0x04 &&
              offsetof(ipmi_request, location) == 0x08 &&
              offsetof(ipmi_request, reserved_0c) == 0x0C &&
              offsetof(ipmi_request, netfn_cmd) == 0x10 &&
              offsetof(ipmi_request, data_len) == 0x14 && offsetof(ipmi_request, data) == 0x18);

static_assert(sizeof(ipmi_response) == 512 && offsetof(ipmi_response, msg_type) == 0x00 &&
              offsetof(ipmi_response, reserved_04) == 0x04 &&
              offsetof(ipmi_response, location) == 0x08 &&
              offsetof(ipmi_response, reserved_0c) == 0x0C &&
              offsetof(ipmi_response, netfn_cmd) == 0x10 &&
              offsetof(ipmi_response, comp_code) == 0x14 &&
              offsetof(ipmi_response, data_len) == 0x18 && offsetof(ipmi_response, data) == 0x1C);

namespace ruk
{

uint32_t null_record()
{
    slog_elog("Invalid parameter for IPMI Call (null parameter received)");
    return IPMI_ERR_INVALID_PARAM;
}

uint32_t send_request(ipmi_request *request, uint32_t *index)
{
    uint32_t rc = attach_ruk_shm();
    if (rc != 0) {
        slog_elog("attach_ruk_shm returned %d (0x%08x)\n", rc, rc);
        return rc;
    }

    request->msg_type = 0x101; // a request to the IPMI component
    const uint32_t length = request->data_len + static_cast<uint32_t>(offsetof(ipmi_request, data));
    rc = send_ruk_command(IPMI_COMPONENT, request, length, 0, index);
    if (rc != 0) {
        slog_elog("pid %d send_ruk_command returned %d (0x%08x)\n", thread_number(), rc, rc);
        slog_elog("    idx %d    len %d   comp %d   \n", *index, length, IPMI_COMPONENT);
        detach_ruk_shm();
    }
    return rc;
}

} // namespace ruk

using namespace ruk;

uint32_t get_ruk_ipmi_response(ipmi_request *request, ipmi_response *response, uint32_t timeout)
{
    if (!request || !response)
        return null_record();
    uint32_t length = response->data_len;

    uint32_t index = 0;
    uint32_t rc = send_request(request, &index);
    if (rc != 0)
        return rc;

    rc = receive_ruk_response(index, timeout, IPMI_COMPONENT, response, &length);
    if (rc != 0) {
        slog_elog("pid %d receive_ruk_command returned %d (0x%08x)\n", thread_number(), rc, rc);
        slog_elog("    idx %d    maxTO %d ticks  comp %d  \n", index, timeout, IPMI_COMPONENT);
    }
    detach_ruk_shm();
    return rc;
}
