/**
 * The statuses of the host platform's message service, besides `RUK_MSG_NOT_ANSWERED` of
 * platform/message_service.h. They reach the library's callers unchanged.
 */
#ifndef RUK_HOST_PLATFORM_STATUS_H
#define RUK_HOST_PLATFORM_STATUS_H

#include <stdint.h>

#include "platform/message_service.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
    RUK_MSG_NO_SERVICE = 0x5001,        /**< nobody serves this runtime directory */
    RUK_MSG_SERVICE_GONE = 0x5002,      /**< the service went away before it answered */
    RUK_MSG_UNKNOWN_INDEX = 0x5003,     /**< no outstanding message of this process has the index */
    RUK_MSG_BAD_LENGTH = 0x5004,        /**< the message is not a request record of its length */
    RUK_MSG_UNKNOWN_COMPONENT = 0x5005, /**< the service has no such component */
    RUK_MSG_TOO_MANY = 0x5006,          /**< too many messages are outstanding */
    RUK_MSG_ANSWER_TOO_LONG = 0x5008, /**< the answer exceeds the caller's buffer and was dropped */
    RUK_MSG_NO_BLADE = 0x5009,        /**< the chassis has no blade at the location */
    RUK_MSG_UNREACHABLE = 0x500A,     /**< the blade's controller does not answer */
    RUK_MSG_ACCESS = 0x500B           /**< the blade's controller refuses the session: user,
                                           password, privilege or cipher suite */
};

/** What a status says, in a few words, e.g. "no answer in time"; null when it is not one of the
 *  message service's. */
const char *ruk_msg_status_text(uint32_t status);

#ifdef __cplusplus
}
#endif

#endif
