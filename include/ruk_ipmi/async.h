/**
 * Starting and stopping the library's runtime, and commands whose answer comes to a callback.
 *
 * The runtime serves asynchronous commands and blade events (events.h); the exchange and the
 * command functions need none of it. It has one thread, the callback thread, which runs every
 * callback, one at a time: a slow callback delays all others.
 */
#ifndef RUK_IPMI_ASYNC_H
#define RUK_IPMI_ASYNC_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Prepares the runtime of this process. Call it before the first asynchronous command and the
 * first registration for events, from one thread, and in a child process again after `fork`, which
 * leaves the callback thread behind. It sends nothing, and starts no thread yet.
 *
 * It begins by forgetting all that the runtime held. So call it a second time only when the
 * callback thread has ended, or was never started.
 *
 * @return 0, or the platform's status for the step that failed: what came before that step stays
 *         as it is. Failures are written to the debug log.
 */
RUK_IPMI_API uint32_t ruk_ipmi_init(void);

/**
 * Ends the callback thread. Called from a callback, it ends the thread at once and does not
 * return. Called from any other thread, it returns at once; the callback thread ends when the pass
 * under way is over. A thread that was started but does not run yet forgets a call that comes that
 * early. Commands that are unanswered then stay so: their callbacks never run. A later
 * asynchronous command or registration does not start the thread again until `ruk_ipmi_init` was
 * called.
 */
RUK_IPMI_API void ruk_ipmi_exit(void);

/**
 * Receives the answer to an asynchronous command, on the callback thread.
 *
 * @param response  the answer, valid during the call only. When none came: `location`,
 *                  `reserved_0c` and `netfn_cmd` are the request's, `data_len` is 0, and
 *                  `comp_code` is the message service's status, 0x5007 when time ran out.
 */
typedef void (*ipmi_response_callback)(ipmi_response *response);

/**
 * Sends `request` to the blade it names and returns; the answer comes to `callback`, exactly once.
 * The callback thread is started by the first call. A callback may call this function again.
 *
 * It sends whatever `request->netfn_cmd` says: the record's first `data_len` + 0x18 bytes, after
 * storing 0x101 in its `msg_type`.
 *
 * @param request   the request; `data_len` at most 488. It must stay as it is until the callback
 *                  has run, and is never freed by the library.
 * @param callback  gets the answer.
 * @param timeout   how many times the callback thread looks for the answer before it gives up: it
 *                  looks once in an operating-system tick (10 ms on the host platform), less often
 *                  while many commands are outstanding. 0 is the longest time-out of all.
 * @return 0 when the request was sent; `IPMI_ERR_INVALID_PARAM` when `request` or `callback` is
 *         null; `IPMI_ERR_NO_MEMORY`; any other value is the message service's status. When it is
 *         not 0 the callback never runs. Failures are written to the error log.
 */
RUK_IPMI_API uint32_t send_ruk_ipmi_command(ipmi_request *request, ipmi_response_callback callback,
                                            uint32_t timeout);

/**
 * The callback thread itself, which the library starts when it is needed: not to be called. It
 * looks for new interrupts and for answers whenever it is woken, and once in a tick while commands
 * are outstanding.
 *
 * @param arg  not looked at.
 * @return null; it ends when the runtime was not prepared, when the shared region cannot be had,
 *         and after `ruk_ipmi_exit`.
 */
RUK_IPMI_API void *ipmi_callback_thread(void *arg);

#ifdef __cplusplus
}
#endif

#endif
