// Notifications: a counter for each type in memory that all processes share; threads that listen
// compare the counters with those they have seen.
//
// A list costs some 40 bytes, a handle as much, for as long as the process lives: nothing deletes
// them. A process that is killed leaves nothing behind; one that is forked listens like its
// parent, with a thread of its own.

#include "platform/notifications.h"

#include <algorithm>
#include <bitset>
#include <deque>
#include <mutex>

#include "platform/delivery.h"
#include "platform/futex.h"
#include "platform/os.h"
#include "platform/os_region.h"
#include "platform/status.h"

namespace
{

using namespace ruk::host;

constexpr size_t types = std::tuple_size_v<decltype(notification_counters::posted)>;

audience &here = own_audience();

std::deque<std::bitset<types>> &lists = *new std::deque<std::bitset<types>>; // never destroyed

// Lists have odd numbers and handles even ones, so that neither passes for the other; 0 is none.
uint32_t list_number(size_t index)
{
    return static_cast<uint32_t>(2 * index + 1);
}

uint32_t handle_number(size_t index)
{
    return static_cast<uint32_t>(2 * index + 2);
}

std::bitset<types> *find_list(os_notify_list list)
{
    const size_t index = list / 2;
    return list % 2 == 1 && index < lists.size() ? &lists[index] : nullptr;
}

listener *find_listener(os_notify_handle handle)
{
    const size_t index = handle / 2 - 1;
    return handle % 2 == 0 && index < here.listeners.size() ? &here.listeners[index] : nullptr;
}

// From now on: what was posted before is no news.
void watch_types(listener &to, const std::bitset<types> &wanted)
{
    for (uint32_t type = 0; type < types; ++type) {
        const bool watched = std::any_of(to.watches.begin(), to.watches.end(),
                                         [=](const watch &each) { return each.type == type; });
        if (wanted[type] && !watched)
            to.watches.push_back({type, here.counters->posted[type]});
    }
}

} // namespace

uint32_t os_notify_list_init(os_notify_list *list)
{
    if (!list)
        return RUK_OS_BAD_ARGUMENT;
    const std::lock_guard lock(here.mutex);
    *list = list_number(lists.size());
    lists.emplace_back();
    return 0;
}

uint32_t os_notify_list_add(uint32_t type, os_notify_list list)
{
    const std::lock_guard lock(here.mutex);
    std::bitset<types> *const found = find_list(list);
    if (!found || type >= types)
        return RUK_OS_BAD_ARGUMENT;
    found->set(type);
    return 0;
}

uint32_t os_notify_init(os_notify_handle *handle, os_notify_hook hook)
{
    if (!handle || !hook)
        return RUK_OS_BAD_ARGUMENT;
    const std::lock_guard lock(here.mutex);
    *handle = handle_number(here.listeners.size());
    here.listeners.emplace_back().hook = hook;
    return 0;
}

uint32_t os_notify_get(uint32_t *type, uint32_t, va_list args)
{
    if (!type)
        return RUK_OS_BAD_ARGUMENT;
    *type = va_arg(args, uint32_t);
    return 0;
}

uint32_t os_notify_register(os_notify_list list, os_notify_handle handle)
{
    os_region *region = nullptr;
    uint32_t rc = attach_os_region(region);
    if (rc != 0)
        return rc;
    const std::lock_guard lock(here.mutex);
    const std::bitset<types> *const wanted = find_list(list);
    listener *const to = find_listener(handle);
    if (!wanted || wanted->none() || !to)
        return RUK_OS_BAD_ARGUMENT;
    here.counters = &region->notifications;
    rc = begin_delivery(*to);
    if (rc == 0)
        watch_types(*to, *wanted);
    return rc;
}

uint32_t os_notify_unregister(os_notify_handle handle)
{
    std::unique_lock lock(here.mutex);
    listener *const from = find_listener(handle);
    if (!from)
        return RUK_OS_BAD_ARGUMENT;
    const bool was_registered = !from->watches.empty();
    from->watches.clear();
    lock.unlock();
    wait_for_hook(*from); // whoever comes second does too
    return was_registered ? 0 : RUK_OS_NOT_REGISTERED;
}

uint32_t os_notify_post(uint32_t type)
{
    if (type >= types)
        return RUK_OS_BAD_ARGUMENT;
    os_region *region = nullptr;
    const uint32_t rc = attach_os_region(region);
    if (rc != 0)
        return rc;
    notification_counters &counters = region->notifications;
    ++counters.posted[type];
    ++counters.bell;
    futex_wake_all(counters.bell);
    return 0;
}
