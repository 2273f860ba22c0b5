// The functions of the operating-system layer, each handing its call to the platform that lives.

#include <cstdarg>

#include "platform/message_service.h"
#include "platform/os.h"
#include "platform/platform_info.h"
#include "stage.h"

namespace
{

ruk_ipmi_testing::scripted_os &os()
{
    return ruk_ipmi_testing::stage::current().os;
}

} // namespace

void ruk_ipmi_testing::bring_os_functions() {}

uint32_t find_component_shm(uint32_t component, void **holder)
{
    return os().find_shm(component, holder);
}

const uint32_t *_gPlatInfo()
{
    return os().platform_info.data();
}

uint32_t os_mutex_create(const char *name, os_mutex *mutex)
{
    return os().create_mutex(name, mutex);
}

uint32_t os_mutex_ident(const char *name, os_mutex *mutex)
{
    return os().find_mutex(name, mutex);
}

uint32_t os_mutex_get(os_mutex *mutex, uint32_t ticks)
{
    return os().lock(mutex, ticks);
}

uint32_t os_mutex_put(os_mutex *mutex)
{
    return os().unlock(mutex);
}

uint32_t os_ev_create(const char *name, os_event *event)
{
    return os().create_event(name, event);
}

uint32_t os_ev_set(os_event *event)
{
    return os().set_event(event);
}

uint32_t os_ev_wait(os_event *event, uint32_t ticks)
{
    return os().wait(event, ticks);
}

uint32_t os_ev_delete(os_event *event)
{
    return os().delete_event(event);
}

uint32_t os_thread_create(void *(*entry)(void *), void *arg, os_thread_id *id)
{
    return os().create_thread(entry, arg, id);
}

uint32_t os_thread_set_name(const char *name)
{
    return os().name_thread(name);
}

void os_thread_exit()
{
    os().end_thread();
}

uint32_t os_notify_list_init(os_notify_list *list)
{
    return os().make_list(list);
}

uint32_t os_notify_list_add(uint32_t type, os_notify_list list)
{
    return os().add_to_list(type, list);
}

uint32_t os_notify_init(os_notify_handle *handle, os_notify_hook hook)
{
    return os().make_handle(handle, hook);
}

uint32_t os_notify_get(uint32_t *type, uint32_t reserved, va_list args)
{
    return os().read_type(type, reserved, args);
}

uint32_t os_notify_register(os_notify_list list, os_notify_handle handle)
{
    return os().register_list(list, handle);
}

uint32_t os_notify_unregister(os_notify_handle handle)
{
    return os().unregister(handle);
}

uint32_t os_sleep(uint32_t ticks)
{
    return os().sleep(ticks);
}

void *os_malloc(size_t size)
{
    return os().allocate(size);
}
