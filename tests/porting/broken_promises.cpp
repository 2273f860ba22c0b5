// A platform that gets one function wrong, as a hurried one might: RUK_BREAK names it. The linker
// sends every call of each function here (--wrap), and most go on to where they were meant to go.

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/log.h"
#include "platform/message_service.h"
#include "platform/os.h"
#include "platform/platform_info.h"

namespace
{

bool broken(const char *function)
{
    static const char *const chosen = getenv("RUK_BREAK");
    return chosen && strcmp(chosen, function) == 0;
}

// Logs nothing, which nobody can see from here, and spoils errno, which one can.
void careless_log(const char *function)
{
    errno = broken(function) ? EINVAL : errno;
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): linker names
extern "C" {

uint32_t __real_attach_ruk_shm();
uint32_t __real_detach_ruk_shm();
uint32_t __real_find_component_shm(uint32_t, void **);
uint32_t __real_send_ruk_command(uint32_t, const void *, uint32_t, uint32_t, uint32_t *);
uint32_t __real_receive_ruk_response(uint32_t, uint32_t, uint32_t, void *, uint32_t *);
const char *__real_ruk_blade_clt_to_str(const blade_location *);
uint32_t __real_os_mutex_create(const char *, os_mutex *);
uint32_t __real_os_mutex_ident(const char *, os_mutex *);
uint32_t __real_os_mutex_get(os_mutex *, uint32_t);
uint32_t __real_os_mutex_put(os_mutex *);
uint32_t __real_os_ev_create(const char *, os_event *);
uint32_t __real_os_ev_set(os_event *);
uint32_t __real_os_ev_wait(os_event *, uint32_t);
uint32_t __real_os_ev_delete(os_event *);
uint32_t __real_os_thread_create(void *(*)(void *), void *, os_thread_id *);
uint32_t __real_os_thread_set_name(const char *);
void __real_os_thread_exit();
uint32_t __real_os_notify_list_init(os_notify_list *);
uint32_t __real_os_notify_list_add(uint32_t, os_notify_list);
uint32_t __real_os_notify_init(os_notify_handle *, os_notify_hook);
uint32_t __real_os_notify_get(uint32_t *, uint32_t, va_list);
uint32_t __real_os_notify_register(os_notify_list, os_notify_handle);
uint32_t __real_os_notify_unregister(os_notify_handle);
uint32_t __real_os_sleep(uint32_t);
void *__real_os_malloc(size_t);
const uint32_t *__real__gPlatInfo();

// Counts in 16 bits.
uint32_t __wrap_attach_ruk_shm()
{
    static std::atomic<uint16_t> count{0};
    return broken("attach_ruk_shm") && ++count == 0 ? 0x5FFF : __real_attach_ruk_shm();
}

// Gives back too much.
uint32_t __wrap_detach_ruk_shm()
{
    if (broken("detach_ruk_shm"))
        __real_detach_ruk_shm();
    return __real_detach_ruk_shm();
}

// Says that there is none by a null.
uint32_t __wrap_find_component_shm(uint32_t component, void **holder)
{
    if (broken("find_component_shm"))
        *holder = nullptr;
    return __real_find_component_shm(component, holder);
}

// Forgets a word of the header.
uint32_t __wrap_send_ruk_command(uint32_t component, const void *msg, uint32_t length,
                                 uint32_t flags, uint32_t *index)
{
    ipmi_request request;
    memcpy(&request, msg, length);
    if (broken("send_ruk_command"))
        request.reserved_0c = 0;
    return __real_send_ruk_command(component, &request, length, flags, index);
}

// Takes every buffer for a whole record.
uint32_t __wrap_receive_ruk_response(uint32_t index, uint32_t timeout, uint32_t component,
                                     void *buffer, uint32_t *length)
{
    if (broken("receive_ruk_response"))
        memset(static_cast<uint8_t *>(buffer) + *length, 0, sizeof(ipmi_response) - *length);
    return __real_receive_ruk_response(index, timeout, component, buffer, length);
}

// Has one buffer for all threads.
const char *__wrap_ruk_blade_clt_to_str(const blade_location *location)
{
    static char text[16];
    const char *const name = __real_ruk_blade_clt_to_str(location);
    return broken("ruk_blade_clt_to_str") ? strcpy(text, name) : name;
}

void __wrap_slog_elog(const char *, ...)
{
    careless_log("slog_elog");
}

void __wrap_slog_nlog(const char *, ...)
{
    careless_log("slog_nlog");
}

void __wrap_slog_dlog(const char *, ...)
{
    careless_log("slog_dlog");
}

void __wrap_slog_vlog(const char *, ...)
{
    careless_log("slog_vlog");
}

void __wrap_os_log(int, int, const char *, ...)
{
    careless_log("os_log");
}

void __wrap_slog_dump(const char *, const void *, uint32_t, uint32_t)
{
    careless_log("slog_dump");
}

// Takes what is there for what it was to make.
uint32_t __wrap_os_mutex_create(const char *name, os_mutex *mutex)
{
    const uint32_t rc = __real_os_mutex_create(name, mutex);
    return broken("os_mutex_create") && rc != 0 ? __real_os_mutex_ident(name, mutex) : rc;
}

// Finds what is not there, too.
uint32_t __wrap_os_mutex_ident(const char *name, os_mutex *mutex)
{
    const uint32_t rc = __real_os_mutex_ident(name, mutex);
    return broken("os_mutex_ident") ? 0 : rc;
}

// Takes a time-out for success.
uint32_t __wrap_os_mutex_get(os_mutex *mutex, uint32_t ticks)
{
    const uint32_t rc = __real_os_mutex_get(mutex, ticks);
    return broken("os_mutex_get") ? 0 : rc;
}

// Does nothing.
uint32_t __wrap_os_mutex_put(os_mutex *mutex)
{
    return broken("os_mutex_put") ? 0 : __real_os_mutex_put(mutex);
}

// Makes it set.
uint32_t __wrap_os_ev_create(const char *name, os_event *event)
{
    const uint32_t rc = __real_os_ev_create(name, event);
    if (broken("os_ev_create"))
        __real_os_ev_set(event);
    return rc;
}

// Has set whatever it is given.
uint32_t __wrap_os_ev_set(os_event *event)
{
    const uint32_t rc = __real_os_ev_set(event);
    return broken("os_ev_set") ? 0 : rc;
}

// Takes a time-out for a failure.
uint32_t __wrap_os_ev_wait(os_event *event, uint32_t ticks)
{
    const uint32_t rc = __real_os_ev_wait(event, ticks);
    return broken("os_ev_wait") && ticks < 3000 ? 0x5FFF : rc;
}

// Leaves the name.
uint32_t __wrap_os_ev_delete(os_event *event)
{
    const os_event before = *event;
    const uint32_t rc = __real_os_ev_delete(event);
    if (broken("os_ev_delete"))
        memcpy(event->name, before.name, sizeof event->name);
    return rc;
}

// Tells no number.
uint32_t __wrap_os_thread_create(void *(*entry)(void *), void *arg, os_thread_id *id)
{
    os_thread_id unseen = 0;
    return __real_os_thread_create(entry, arg, broken("os_thread_create") ? &unseen : id);
}

uint32_t __wrap_os_thread_set_name(const char *name)
{
    return broken("os_thread_set_name") ? 0x5FFF : __real_os_thread_set_name(name);
}

// Returns.
void __wrap_os_thread_exit()
{
    if (!broken("os_thread_exit"))
        __real_os_thread_exit();
}

// Makes none.
uint32_t __wrap_os_notify_list_init(os_notify_list *list)
{
    return broken("os_notify_list_init") ? 0 : __real_os_notify_list_init(list);
}

// Adds nothing.
uint32_t __wrap_os_notify_list_add(uint32_t type, os_notify_list list)
{
    return __real_os_notify_list_add(broken("os_notify_list_add") ? type + 1 : type, list);
}

// Makes none.
uint32_t __wrap_os_notify_init(os_notify_handle *handle, os_notify_hook hook)
{
    return broken("os_notify_init") ? 0 : __real_os_notify_init(handle, hook);
}

// Knows no type.
uint32_t __wrap_os_notify_get(uint32_t *type, uint32_t reserved, va_list args)
{
    const uint32_t rc = __real_os_notify_get(type, reserved, args);
    if (broken("os_notify_get"))
        *type = 0;
    return rc;
}

// Refuses nothing.
uint32_t __wrap_os_notify_register(os_notify_list list, os_notify_handle handle)
{
    const uint32_t rc = __real_os_notify_register(list, handle);
    return broken("os_notify_register") ? 0 : rc;
}

// Goes on delivering.
uint32_t __wrap_os_notify_unregister(os_notify_handle handle)
{
    return broken("os_notify_unregister") ? 0 : __real_os_notify_unregister(handle);
}

// Takes ticks for milliseconds.
uint32_t __wrap_os_sleep(uint32_t ticks)
{
    return __real_os_sleep(broken("os_sleep") ? ticks / 10 : ticks);
}

// Has memory of its own.
void *__wrap_os_malloc(size_t size)
{
    static char memory[4096];
    return broken("os_malloc") ? memory : __real_os_malloc(size);
}

// Knows nothing yet.
const uint32_t *__wrap__gPlatInfo()
{
    return broken("_gPlatInfo") ? nullptr : __real__gPlatInfo();
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
