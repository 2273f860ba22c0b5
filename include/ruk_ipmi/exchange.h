/** The synchronous exchange: one request to one blade, and its answer. */
#ifndef RUK_IPMI_EXCHANGE_H
#define RUK_IPMI_EXCHANGE_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Sends `request` to the blade it names and waits for the answer.
 *
 * Every command function stands on this one; call it directly for a command that has no function
 * of its own. It sends whatever `request->netfn_cmd` says: the record's first `data_len` + 0x18
 * bytes, after storing 0x101 in its `msg_type`.
 *
 * @param request   the request; `data_len` at most 488. Its `msg_type` is overwritten.
 * @param response  receives the answer. On entry its `data_len` is the capacity handed to the
 *                  message service (the command functions use 483); on return the number of bytes
 *                  in `data`. After a failure it holds what the service left there.
 * @param timeout   longest wait for the answer, in operating-system ticks (10 ms each on the host
 *                  platform); 0xFFFFFFFF waits without limit.
 * @return 0 when an answer came, whatever its `comp_code`, which is for the caller to look at;
 *         `IPMI_ERR_INVALID_PARAM` when `request` or `response` is null (nothing is sent);
 *         any other value is the message service's status, among them 0x5007: not answered within
 *         `timeout`. Every failure is written to the error log.
 */
RUK_IPMI_API uint32_t get_ruk_ipmi_response(ipmi_request *request, ipmi_response *response,
                                            uint32_t timeout);

#ifdef __cplusplus
}
#endif

#endif
