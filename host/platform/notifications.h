/**
 * The producers' side of the host platform's notifications.
 *
 * A notification is a doorbell and not a message: every process that registered for its type is
 * told that it was posted, after it was posted, but posts that come faster than a hook returns may
 * be told it in one call. Whatever there is to know beyond that, the hook looks up itself.
 *
 * A hook is called by a thread of the platform's. If the thread that registered it has waited for
 * an event since, it is called by that one alone, whenever it waits (`os_ev_wait`), until it ends:
 * so nobody else has to be woken first.
 */
#ifndef RUK_HOST_PLATFORM_NOTIFICATIONS_H
#define RUK_HOST_PLATFORM_NOTIFICATIONS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Posts a notification of `type`, 0 to 255, to every process of the runtime directory that is
 *  registered for it. Needs no daemon and no registration. */
uint32_t os_notify_post(uint32_t type);

#ifdef __cplusplus
}
#endif

#endif
