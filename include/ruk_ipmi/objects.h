/**
 * Named mutexes and events of the operating-system layer, by which processes and threads find each
 * other. Nothing here sends anything to a blade.
 */
#ifndef RUK_IPMI_OBJECTS_H
#define RUK_IPMI_OBJECTS_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A named mutex, 84 bytes beginning with its name; an empty name: not looked up yet. Zero the
 *  whole object before its first use. */
typedef struct os_mutex {
    char name[52];        /**< 0x00: zero-terminated */
    uint32_t platform[8]; /**< 0x34: the platform's own */
} os_mutex;

/** A named event, 84 bytes beginning with its name; an empty name: not created yet. Zero the whole
 *  object before its first use. */
typedef struct os_event {
    char name[52];        /**< 0x00: zero-terminated */
    uint32_t platform[8]; /**< 0x34: the platform's own */
} os_event;

typedef os_mutex mutex_obj; /**< what `acquire_mutex` locks by */
typedef os_event event_obj; /**< what `create_event` creates */

/**
 * Locks a named mutex, waiting up to 100 operating-system ticks (10 ms each on the host platform).
 *
 * An object with an empty name is looked up first: the mutex is created, or attached to when some
 * process created it before.
 *
 * @param name        the mutex's name; what exceeds 49 characters is cut off. Not looked at when
 *                    the object has a name already.
 * @param obj         the object to lock by; to be used by one thread at a time.
 * @param per_thread  non-zero: the name is `name`, a hyphen and the calling thread's number.
 * @return 0 when the mutex is held: give it back with `release_mutex`. `IPMI_ERR_RESOURCE` when
 *         `name` or `obj` is null; any other value is the platform's status for the failing look-up
 *         or lock, a time-out among them. Every failure is written to the debug log.
 */
RUK_IPMI_API uint32_t acquire_mutex(const char *name, mutex_obj *obj, uint32_t per_thread);

/**
 * Unlocks what `acquire_mutex` locked.
 *
 * @param obj  the object it was locked by; must not be null.
 */
RUK_IPMI_API void release_mutex(mutex_obj *obj);

/**
 * Creates a named event, not set; does nothing when the object has a name already.
 *
 * @param name        the event's name; what exceeds 49 characters is cut off.
 * @param obj         the object.
 * @param per_thread  non-zero: the name is `name`, a hyphen and the calling thread's number.
 * @return 0; `IPMI_ERR_RESOURCE` when `name` or `obj` is null; any other value is the platform's
 *         status.
 */
RUK_IPMI_API uint32_t create_event(const char *name, event_obj *obj, uint32_t per_thread);

#ifdef __cplusplus
}
#endif

#endif
