/**
 * The statuses of the host platform: of its message service, besides `RUK_MSG_NOT_ANSWERED` of
 * platform/message_service.h, and of its OS layer. They reach the library's callers unchanged.
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

enum {
    RUK_OS_EXISTS = 0x5201,       /**< the name, or the object, is in use already */
    RUK_OS_NO_SUCH = 0x5202,      /**< no mutex has the name */
    RUK_OS_TIMED_OUT = 0x5203,    /**< the wait was in vain */
    RUK_OS_TABLE_FULL = 0x5204,   /**< no room for the name among those of living processes */
    RUK_OS_NOT_CREATED = 0x5205,  /**< the object was never created, or was deleted meanwhile */
    RUK_OS_BAD_ARGUMENT = 0x5206, /**< a null, a name empty or above 51 characters, a type above
                                       255, an unknown or empty list, an unknown handle */
    RUK_OS_NO_RESOURCES = 0x5207, /**< the system gives no thread */
    RUK_OS_NOT_HELD = 0x5208,     /**< the calling thread does not hold the mutex */
    RUK_OS_HELD_ALREADY = 0x5209, /**< the calling thread holds the mutex */
    RUK_OS_NO_FILE = 0x520A,      /**< the runtime directory's shared file cannot be made or read */
    RUK_OS_BAD_FILE = 0x520B,     /**< the shared file is another build's, or damaged */
    RUK_OS_NOT_REGISTERED = 0x520C /**< the handle is not registered */
};

/** What a status says, in a few words, e.g. "no answer in time"; null when it is not one of the
 *  host platform's. */
const char *ruk_msg_status_text(uint32_t status);

#ifdef __cplusplus
}
#endif

#endif
