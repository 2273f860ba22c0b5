// Named mutexes and events.

#include "ruk_ipmi/objects.h"

#include <cstddef>
#include <cstdio>
#include <cstring>

#include "platform/log.h"
#include "platform/os.h"
#include "runtime/threads.h"

static_assert(sizeof(os_mutex) == 84 && offsetof(os_mutex, name) == 0);
static_assert(sizeof(os_event) == 84 && offsetof(os_event, name) == 0);

namespace
{

constexpr uint32_t wait_for_mutex = 100; // ticks

// The whole name of an object.
struct object_name {
    char text[50];

    object_name(const char *name, uint32_t per_thread)
    {
        if (per_thread != 0) {
            snprintf(text, sizeof text, "%s-%d", name, ruk::thread_number());
            return;
        }
        const size_t length = strnlen(name, sizeof text - 1);
        memcpy(text, name, length);
        text[length] = '\0';
    }
};

uint32_t look_up(const char *name, mutex_obj *obj, uint32_t per_thread)
{
    const object_name whole(name, per_thread);
    return os_mutex_create(whole.text, obj) == 0 ? 0 : os_mutex_ident(whole.text, obj);
}

} // namespace

uint32_t acquire_mutex(const char *name, mutex_obj *obj, uint32_t per_thread)
{
    if (!name || !obj) {
        slog_dlog("Null parameter passed in acquire_mutex.\n");
        return IPMI_ERR_RESOURCE;
    }
    uint32_t rc = obj->name[0] == '\0' ? look_up(name, obj, per_thread) : 0;
    if (rc == 0)
        rc = os_mutex_get(obj, wait_for_mutex);
    if (rc != 0)
        slog_dlog("Error in acqiuiring the mutex %x\n", rc);
    return rc;
}

void release_mutex(mutex_obj *obj)
{
    os_mutex_put(obj);
}

uint32_t create_event(const char *name, event_obj *obj, uint32_t per_thread)
{
    if (!name || !obj)
        return IPMI_ERR_RESOURCE;
    if (obj->name[0] != '\0')
        return 0;
    return os_ev_create(object_name(name, per_thread).text, obj);
}
