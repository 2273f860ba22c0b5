/**
 * The platform's message service, by which a client process reaches the components of the chassis
 * manager; component 4 (`IPMI_COMPONENT`) talks IPMI to the blades.
 *
 * Whoever ports the library provides these functions, with C linkage. All may be called from any
 * thread at any time, whether or not `attach_ruk_shm` succeeded before; statuses are 0 for success
 * and otherwise the platform's own, which the library passes on to its caller unchanged. The
 * library gives a meaning to one of them only: `RUK_MSG_NOT_ANSWERED`.
 */
#ifndef RUK_PLATFORM_MESSAGE_SERVICE_H
#define RUK_PLATFORM_MESSAGE_SERVICE_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The status by which `receive_ruk_response` says that the answer is not there yet. */
enum { RUK_MSG_NOT_ANSWERED = 0x5007 };

/**
 * Attaches the calling process to the service. Called before every exchange and balanced by
 * `detach_ruk_shm`, so attachments must nest, and be cheap. An asynchronous command keeps its
 * attachment for good, and so does whoever has found the shared region: there is no end of them.
 */
uint32_t attach_ruk_shm(void);

/** Gives back one attachment. Its result is not looked at. */
uint32_t detach_ruk_shm(void);

/**
 * Finds the memory that `component` shares with every client and stores its address in `*holder`;
 * `*holder` is left alone on failure. The region stays mapped; component 4's is at least
 * 42,668 bytes, aligned for 32-bit words, and zeroed when it is first made.
 */
uint32_t find_component_shm(uint32_t component, void **holder);

/**
 * Queues `length` bytes of `msg` (an `ipmi_request`: header and payload) for `component`, and
 * stores in `*index` a number that names the message until its answer was received. The bytes are
 * taken before the call returns. `flags` is 0. An index is not reused while its sender may still
 * ask for the answer.
 */
uint32_t send_ruk_command(uint32_t component, const void *msg, uint32_t length, uint32_t flags,
                          uint32_t *index);

/**
 * Waits up to `timeout` ticks (0xFFFFFFFF: without limit) for the answer to message `index` and
 * stores it, an `ipmi_response` of header and data, in `buffer`. `*length` is the capacity of the
 * whole buffer on entry, which must never be exceeded, and the length received on return. Returns
 * `RUK_MSG_NOT_ANSWERED` when the time ran out; the same index can then be asked for again.
 */
uint32_t receive_ruk_response(uint32_t index, uint32_t timeout, uint32_t component, void *buffer,
                              uint32_t *length);

/**
 * The blade's name for a log line. The text is used at once and never freed: it must stay as it
 * is until the calling thread asks for the next name. Must accept null.
 */
const char *ruk_blade_clt_to_str(const blade_location *location);

#ifdef __cplusplus
}
#endif

#endif
