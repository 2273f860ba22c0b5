/**
 * The platform's operating-system layer: named mutexes and events, threads, notifications, sleep
 * and memory.
 *
 * Whoever ports the library provides these functions, with C linkage. Statuses are 0 for success
 * and otherwise the platform's own. Time is counted in ticks; 0xFFFFFFFF waits without limit.
 */
#ifndef RUK_PLATFORM_OS_H
#define RUK_PLATFORM_OS_H

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#include "ruk_ipmi/objects.h" /* os_mutex, os_event */

#ifdef __cplusplus
extern "C" {
#endif

/** A wait without limit. */
#define OS_WAIT_FOREVER 0xFFFFFFFFu

typedef uintptr_t os_thread_id;     /**< a thread; 0 is none */
typedef uintptr_t os_notify_list;   /**< a list of notification types */
typedef uintptr_t os_notify_handle; /**< a hook and its registrations */

/** Called when a notification arrives; what follows the word is for `os_notify_get`. */
typedef void (*os_notify_hook)(uint32_t, ...);

/** Makes the system-wide mutex `name`; fails when it exists already. */
uint32_t os_mutex_create(const char *name, os_mutex *mutex);

/** Attaches to the existing mutex `name`. Done at every access to the interrupt ring: it must cost
 *  next to nothing and hold on to nothing when the object is thrown away. */
uint32_t os_mutex_ident(const char *name, os_mutex *mutex);

/** Locks, waiting up to `ticks`. Null, or an object without a name, gives a status and does no
 *  harm. */
uint32_t os_mutex_get(os_mutex *mutex, uint32_t ticks);

/** Unlocks. Its result is not looked at; what the caller does not hold stays as it is. */
uint32_t os_mutex_put(os_mutex *mutex);

/** Makes the event `name`, not set. Another process may have one of the same name: it is another
 *  event. */
uint32_t os_ev_create(const char *name, os_event *event);

/** Sets the event: wakes one waiter, or the next one to come. An event that was never created or
 *  was deleted gives a status and does no harm. */
uint32_t os_ev_set(os_event *event);

/** Waits up to `ticks` for the event to be set, and clears it. A wait that only took its time is no
 *  failure: whoever waits looks at what there is to do. What is, the library writes to the error
 *  log. */
uint32_t os_ev_wait(os_event *event, uint32_t ticks);

/** Deletes the event and empties its name. */
uint32_t os_ev_delete(os_event *event);

/** Starts a POSIX thread in `entry(arg)`, which nobody will join, and stores its identifier, never
 *  0, in `*id`, before the thread runs; leaves `*id` alone on failure. */
uint32_t os_thread_create(void *(*entry)(void *), void *arg, os_thread_id *id);

/** Names the calling thread. */
uint32_t os_thread_set_name(const char *name);

/** Ends the calling thread; does not return. */
void os_thread_exit(void);

/** Makes an empty list of notification types. */
uint32_t os_notify_list_init(os_notify_list *list);

/** Adds a type to a list. */
uint32_t os_notify_list_add(uint32_t type, os_notify_list list);

/** Makes a handle for `hook`, which the platform calls in a thread of its choice. */
uint32_t os_notify_init(os_notify_handle *handle, os_notify_hook hook);

/** Called by a hook with its variable arguments: stores the type of the notification that is being
 *  delivered in `*type`. The second argument is 0. */
uint32_t os_notify_get(uint32_t *type, uint32_t reserved, va_list args);

/** Begins delivery to the handle's hook of the types in `list`. A list and a handle of 0 give a
 *  status: nobody has made them. */
uint32_t os_notify_register(os_notify_list list, os_notify_handle handle);

/** Ends delivery. The hook is not running any more when this returns, unless it is the hook that
 *  calls. */
uint32_t os_notify_unregister(os_notify_handle handle);

/** Sleeps. */
uint32_t os_sleep(uint32_t ticks);

/** Memory that `free` gives back; null when there is none. */
void *os_malloc(size_t size);

#ifdef __cplusplus
}
#endif

#endif
