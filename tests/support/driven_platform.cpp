#include "support/driven_platform.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/log.h"
#include "platform/message_service.h"
#include "platform/os.h"
#include "platform/platform_info.h"

namespace ruk_ipmi_testing
{

namespace
{

platform_driver *driver;
int attached;
int locked;
volatile uint8_t sink; // what was read in vain

void read_all(const void *bytes, size_t length)
{
    for (size_t at = 0; at < length; ++at)
        sink = static_cast<const uint8_t *>(bytes)[at];
}

void insist(bool rule, const char *broken)
{
    if (rule)
        return;
    fprintf(stderr, "the library %s\n", broken);
    abort();
}

void print(const char *format, va_list values)
{
    char line[2048];
    vsnprintf(line, sizeof line, format, values);
    read_all(line, strnlen(line, sizeof line));
}

} // namespace

platform_driver::platform_driver()
{
    driver = this;
    attached = locked = 0;
}

platform_driver::~platform_driver()
{
    driver = nullptr;
}

void platform_driver::check_nothing_is_attached()
{
    insist(attached == 0, "is still attached");
}

void platform_driver::check_nothing_is_locked()
{
    insist(locked == 0, "still holds a mutex");
}

} // namespace ruk_ipmi_testing

using namespace ruk_ipmi_testing;

// Logs.

#define PRINTS(channel)                                                                            \
    void channel(const char *format, ...)                                                          \
    {                                                                                              \
        va_list values;                                                                            \
        va_start(values, format);                                                                  \
        print(format, values);                                                                     \
        va_end(values);                                                                            \
    }

PRINTS(slog_elog)
PRINTS(slog_nlog)
PRINTS(slog_dlog)
PRINTS(slog_vlog)

void os_log(int, int, const char *format, ...)
{
    va_list values;
    va_start(values, format);
    print(format, values);
    va_end(values);
}

void slog_dump(const char *title, const void *buffer, uint32_t length, uint32_t)
{
    read_all(title, strlen(title));
    read_all(buffer, length);
}

// The message service.

uint32_t attach_ruk_shm(void)
{
    const uint32_t status = driver->status();
    attached += status == 0;
    return status;
}

uint32_t detach_ruk_shm(void)
{
    insist(--attached >= 0, "detaches what it has not attached");
    return driver->status();
}

uint32_t find_component_shm(uint32_t, void **holder)
{
    const uint32_t status = driver->status();
    if (status == 0)
        *holder = &driver->region;
    return status;
}

uint32_t send_ruk_command(uint32_t, const void *msg, uint32_t length, uint32_t, uint32_t *index)
{
    insist(attached > 0, "sends without being attached");
    if (length > sizeof(ipmi_request)) // a service refuses it unread
        return platform_driver::not_answered;
    read_all(msg, length);
    ipmi_request request{};
    memcpy(&request, msg, length);
    driver->sent(request);
    *index = 1;
    return driver->status();
}

uint32_t receive_ruk_response(uint32_t, uint32_t, uint32_t, void *buffer, uint32_t *length)
{
    insist(attached > 0, "receives without being attached");
    const uint32_t status = driver->status();
    driver->answer(*static_cast<ipmi_response *>(buffer), *length);
    return status;
}

const char *ruk_blade_clt_to_str(const blade_location *location)
{
    if (location)
        read_all(location, sizeof *location);
    return location ? "a blade" : "none";
}

const uint32_t *_gPlatInfo(void)
{
    static uint32_t words[PLAT_INFO_SLOTS + 1];
    for (uint32_t &word : words)
        word = driver->platform_word();
    return words;
}

// The operating-system layer.

namespace
{

template <typename Object>
uint32_t name_object(const char *name, Object *object)
{
    const uint32_t status = driver->status();
    if (status == 0)
        snprintf(object->name, sizeof object->name, "%s", name);
    return status;
}

} // namespace

uint32_t os_mutex_create(const char *name, os_mutex *mutex)
{
    return name_object(name, mutex);
}

uint32_t os_mutex_ident(const char *name, os_mutex *mutex)
{
    return name_object(name, mutex);
}

uint32_t os_mutex_get(os_mutex *, uint32_t)
{
    const uint32_t status = driver->status();
    locked += status == 0;
    return status;
}

uint32_t os_mutex_put(os_mutex *)
{
    insist(--locked >= 0, "unlocks what it has not locked");
    return driver->status();
}

uint32_t os_ev_create(const char *name, os_event *event)
{
    return name_object(name, event);
}

void *os_malloc(size_t size)
{
    return driver->status() == 0 ? malloc(size) : nullptr;
}

uint32_t os_ev_set(os_event *)
{
    return driver->status();
}

uint32_t os_ev_wait(os_event *, uint32_t)
{
    return driver->status();
}

uint32_t os_ev_delete(os_event *)
{
    return driver->status();
}

uint32_t os_thread_create(void *(*)(void *), void *, os_thread_id *)
{
    return platform_driver::not_answered;
}

uint32_t os_thread_set_name(const char *)
{
    return driver->status();
}

void os_thread_exit(void)
{
    insist(false, "ends a thread that it has not begun");
}

uint32_t os_notify_list_init(os_notify_list *)
{
    return driver->status();
}

uint32_t os_notify_list_add(uint32_t, os_notify_list)
{
    return driver->status();
}

uint32_t os_notify_init(os_notify_handle *, os_notify_hook)
{
    return driver->status();
}

uint32_t os_notify_get(uint32_t *, uint32_t, va_list)
{
    return driver->status();
}

uint32_t os_notify_register(os_notify_list, os_notify_handle)
{
    return driver->status();
}

uint32_t os_notify_unregister(os_notify_handle)
{
    return driver->status();
}

uint32_t os_sleep(uint32_t)
{
    return driver->status();
}
