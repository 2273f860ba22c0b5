#include <cstdio>

#include "platform/message_service.h"
#include "platform/status.h"

const char *ruk_blade_clt_to_str(const blade_location *location)
{
    static thread_local char text[16];
    if (!location)
        return "(none)";
    if (location->sub_slot_id == 0)
        snprintf(text, sizeof text, "%u", location->slot_id);
    else
        snprintf(text, sizeof text, "%u.%u", location->slot_id, location->sub_slot_id);
    return text;
}

const char *ruk_msg_status_text(uint32_t status)
{
    switch (status) {
    case RUK_MSG_NO_SERVICE:
        return "no message service: is ruk-chassisd running?";
    case RUK_MSG_SERVICE_GONE:
        return "the message service went away";
    case RUK_MSG_UNKNOWN_INDEX:
        return "no such outstanding message";
    case RUK_MSG_BAD_LENGTH:
        return "malformed request";
    case RUK_MSG_UNKNOWN_COMPONENT:
        return "no such component";
    case RUK_MSG_TOO_MANY:
        return "too many outstanding messages";
    case RUK_MSG_NOT_ANSWERED:
        return "no answer in time";
    case RUK_MSG_ANSWER_TOO_LONG:
        return "the answer is too long";
    case RUK_MSG_NO_BLADE:
        return "no such blade";
    case RUK_MSG_UNREACHABLE:
        return "the blade's controller does not answer";
    case RUK_MSG_ACCESS:
        return "the blade's controller refuses the session (user, password, privilege or cipher "
               "suite)";
    case RUK_OS_EXISTS:
        return "exists already";
    case RUK_OS_NO_SUCH:
        return "no such mutex";
    case RUK_OS_TIMED_OUT:
        return "waited in vain";
    case RUK_OS_TABLE_FULL:
        return "too many named mutexes";
    case RUK_OS_NOT_CREATED:
        return "the mutex or event was not created, or was deleted";
    case RUK_OS_BAD_ARGUMENT:
        return "bad argument to the OS layer";
    case RUK_OS_NO_RESOURCES:
        return "no thread to be had";
    case RUK_OS_NOT_HELD:
        return "the mutex is not the caller's";
    case RUK_OS_HELD_ALREADY:
        return "the mutex is the caller's already";
    case RUK_OS_NO_FILE:
        return "the runtime directory's shared file cannot be opened";
    case RUK_OS_BAD_FILE:
        return "the runtime directory's shared file is another build's, or damaged";
    case RUK_OS_NOT_REGISTERED:
        return "not registered for notifications";
    default:
        return nullptr;
    }
}
