// Named mutexes. An object holds nothing but its name: it can be copied and thrown away.

#include <cstring>

#include "platform/identity.h"
#include "platform/mutex_table.h"
#include "platform/os.h"
#include "platform/os_region.h"
#include "platform/status.h"

namespace
{

using namespace ruk::host;

static_assert(sizeof(os_mutex) == 84 && sizeof(os_mutex::name) == sizeof(mutex_name));

// What an operation works on.
struct target {
    mutex_name name;
    mutex_table *table = nullptr;
};

// Refuses a name that is none with `no_name`.
uint32_t open_target(const char *name, uint32_t no_name, target &to)
{
    if (!read_mutex_name(name, to.name))
        return no_name;
    os_region *region = nullptr;
    const uint32_t rc = attach_os_region(region);
    if (rc == 0)
        to.table = &region->mutexes;
    return rc;
}

void bind(os_mutex *mutex, const mutex_name &name)
{
    *mutex = os_mutex{};
    memcpy(mutex->name, name.data(), sizeof mutex->name);
}

} // namespace

uint32_t os_mutex_create(const char *name, os_mutex *mutex)
{
    if (!mutex)
        return RUK_OS_BAD_ARGUMENT;
    target to;
    uint32_t rc = open_target(name, RUK_OS_BAD_ARGUMENT, to);
    if (rc != 0)
        return rc;
    mutex_slot *slot = find_mutex(*to.table, to.name);
    if (slot)
        return RUK_OS_EXISTS;
    rc = make_mutex(*to.table, to.name, slot);
    if (rc == 0)
        bind(mutex, to.name);
    return rc;
}

uint32_t os_mutex_ident(const char *name, os_mutex *mutex)
{
    if (!mutex)
        return RUK_OS_BAD_ARGUMENT;
    target to;
    const uint32_t rc = open_target(name, RUK_OS_BAD_ARGUMENT, to);
    if (rc != 0)
        return rc;
    if (!find_mutex(*to.table, to.name))
        return RUK_OS_NO_SUCH;
    bind(mutex, to.name);
    return 0;
}

uint32_t os_mutex_get(os_mutex *mutex, uint32_t ticks)
{
    if (!mutex)
        return RUK_OS_BAD_ARGUMENT;
    target to;
    uint32_t rc = open_target(mutex->name, RUK_OS_NOT_CREATED, to);
    const moment until = ticks_from_now(ticks);
    while (rc == 0) {
        mutex_slot *slot = find_mutex(*to.table, to.name);
        if (!slot)
            rc = make_mutex(*to.table, to.name, slot);
        if (!slot)
            break;
        rc = take_lock(slot->lock, until);
        if (rc != 0)
            break;
        if (bears(*slot, to.name)) {
            slot->holder = own_identity().thread;
            break;
        }
        release_lock(slot->lock); // it went to another name before this had it
    }
    return rc;
}

uint32_t os_mutex_put(os_mutex *mutex)
{
    if (!mutex)
        return RUK_OS_BAD_ARGUMENT;
    target to;
    const uint32_t rc = open_target(mutex->name, RUK_OS_NOT_CREATED, to);
    if (rc != 0)
        return rc;
    mutex_slot *slot = find_mutex(*to.table, to.name);
    if (!slot || slot->holder != own_identity().thread)
        return RUK_OS_NOT_HELD;
    slot->holder = 0;
    release_lock(slot->lock);
    return 0;
}
