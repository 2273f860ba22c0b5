// Notifications: a counter for each type in memory that all processes share, and in each process
// that listens a thread that compares the counters with those it has seen.
//
// A list costs some 40 bytes, a handle as much, for as long as the process lives: nothing deletes
// them. A process that is killed leaves nothing behind; one that is forked listens like its
// parent, with a thread of its own.

#include "platform/notifications.h"

#include <algorithm>
#include <bitset>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <vector>

#include "platform/futex.h"
#include "platform/log.h"
#include "platform/os.h"
#include "platform/os_region.h"
#include "platform/status.h"

namespace
{

using namespace ruk::host;

constexpr size_t types = std::tuple_size_v<decltype(notification_counters::posted)>;

struct watch {
    uint32_t type;
    uint32_t seen; // of the type's counter
};

struct listener {
    os_notify_hook hook;
    std::vector<watch> watches; // empty: not registered
};

struct service {
    std::mutex mutex;
    std::deque<std::bitset<types>> lists;
    std::deque<listener> listeners;
    notification_counters *counters = nullptr; // known to whoever has registered once
    bool has_thread = false;
    std::atomic<uint32_t> calling{0}; // the handle whose hook runs
    std::atomic<uint32_t> leaving{0}; // those who wait until theirs does not
};

// Never destroyed: its thread may outlive the end of main.
service &here = *new service;

thread_local bool is_delivery_thread = false;

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
    return list % 2 == 1 && index < here.lists.size() ? &here.lists[index] : nullptr;
}

listener *find_listener(os_notify_handle handle)
{
    const size_t index = handle / 2 - 1;
    return handle % 2 == 0 && index < here.listeners.size() ? &here.listeners[index] : nullptr;
}

bool anybody_registered()
{
    return std::any_of(here.listeners.begin(), here.listeners.end(),
                       [](const listener &each) { return !each.watches.empty(); });
}

void call(std::unique_lock<std::mutex> &lock, uint32_t handle, os_notify_hook hook, uint32_t type)
{
    here.calling = handle;
    lock.unlock();
    hook(0, type);
    lock.lock();
    here.calling = 0;
    if (here.leaving != 0)
        futex_wake_all(here.calling);
}

// Tells every hook once of each of its types that was posted since. A hook may register and
// unregister, itself or others.
void tell_news(std::unique_lock<std::mutex> &lock)
{
    for (size_t at = 0; at < here.listeners.size(); ++at) {
        listener &told = here.listeners[at];
        for (size_t i = 0; i < told.watches.size(); ++i) {
            watch &each = told.watches[i];
            const uint32_t posted = here.counters->posted[each.type];
            if (each.seen == posted)
                continue;
            each.seen = posted; // before the call: what is posted during it is news again
            call(lock, handle_number(at), told.hook, each.type);
        }
    }
}

// Ends when a post finds nobody registered any more.
void *deliver(void *)
{
    os_thread_set_name("ruk-notify");
    is_delivery_thread = true;
    std::unique_lock lock(here.mutex);
    while (anybody_registered()) {
        std::atomic<uint32_t> &bell = here.counters->bell;
        const uint32_t heard = bell;
        tell_news(lock);
        lock.unlock();
        futex_wait(bell, heard, never);
        lock.lock();
    }
    here.has_thread = false;
    return nullptr;
}

uint32_t start_thread()
{
    os_thread_id id = 0;
    const uint32_t rc = os_thread_create(deliver, nullptr, &id);
    here.has_thread = rc == 0;
    return rc;
}

// The child has a copy of everything but the thread, unless a hook forked.
void go_on_in_child()
{
    if (!is_delivery_thread) {
        here.calling = 0;
        here.leaving = 0;
        here.has_thread = false;
        if (anybody_registered() && start_thread() != 0)
            slog_elog("no thread for notifications after a fork\n");
    }
    here.mutex.unlock();
}

const int at_fork =
    pthread_atfork([] { here.mutex.lock(); }, [] { here.mutex.unlock(); }, go_on_in_child);

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

uint32_t forget(os_notify_handle handle)
{
    const std::lock_guard lock(here.mutex);
    listener *const from = find_listener(handle);
    if (!from)
        return RUK_OS_BAD_ARGUMENT;
    if (from->watches.empty())
        return RUK_OS_NOT_REGISTERED;
    from->watches.clear();
    return 0;
}

} // namespace

uint32_t os_notify_list_init(os_notify_list *list)
{
    if (!list)
        return RUK_OS_BAD_ARGUMENT;
    const std::lock_guard lock(here.mutex);
    *list = list_number(here.lists.size());
    here.lists.emplace_back();
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
    here.listeners.push_back({hook, {}});
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
    const uint32_t rc = attach_os_region(region);
    if (rc != 0)
        return rc;
    const std::lock_guard lock(here.mutex);
    const std::bitset<types> *const wanted = find_list(list);
    listener *const to = find_listener(handle);
    if (!wanted || wanted->none() || !to)
        return RUK_OS_BAD_ARGUMENT;
    here.counters = &region->notifications;
    if (!here.has_thread) {
        // The thread waits for the lock before it looks whether anybody is registered.
        const uint32_t started = start_thread();
        if (started != 0)
            return started;
    }
    watch_types(*to, *wanted);
    return 0;
}

uint32_t os_notify_unregister(os_notify_handle handle)
{
    const uint32_t rc = forget(handle);
    // Whoever is second waits too; a hook would wait for itself.
    ++here.leaving;
    while (!is_delivery_thread && handle != 0 && here.calling == handle)
        futex_wait(here.calling, static_cast<uint32_t>(handle), never);
    --here.leaving;
    return rc;
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
