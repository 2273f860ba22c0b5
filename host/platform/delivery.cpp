// A thread that registers a hook and then waits for an event tells the hook itself: whoever is to
// be woken in the end is woken at once, not by another thread that is woken first. From then on it
// tells it whenever it waits, also of what was posted while it did not. All other hooks are told by
// the delivery thread, which there is as long as there are such.

#include "platform/delivery.h"

#include <algorithm>

#include "platform/futex.h"
#include "platform/log.h"

namespace ruk::host
{

namespace
{

audience &here = own_audience();

thread_local bool is_delivery_thread = false;
thread_local const listener *in_hook_of = nullptr;

bool is_told_by_delivery_thread(const listener &each)
{
    return !each.watches.empty() && !each.is_told_there;
}

bool is_own(const listener &each)
{
    return pthread_equal(each.thread, pthread_self()) != 0;
}

void call(std::unique_lock<std::mutex> &lock, listener &told, uint32_t type)
{
    told.running = 1;
    in_hook_of = &told;
    lock.unlock();
    told.hook(0, type);
    lock.lock();
    in_hook_of = nullptr;
    told.running = 0;
    if (here.leaving != 0)
        futex_wake_all(told.running);
}

// Calls the hook once for each of its types that was posted since. It may register and unregister,
// itself or others.
void tell_news(std::unique_lock<std::mutex> &lock, listener &told)
{
    for (size_t i = 0; i < told.watches.size(); ++i) {
        watch &each = told.watches[i];
        const uint32_t posted = here.counters->posted[each.type];
        if (each.seen == posted)
            continue;
        each.seen = posted; // before the call: what is posted during it is news again
        call(lock, told, each.type);
    }
}

template <typename Which>
void tell_each(std::unique_lock<std::mutex> &lock, Which which)
{
    size_t at = 0; // and not an iterator: a hook may make listeners
    while (at < here.listeners.size()) {
        listener &each = here.listeners[at++];
        if (which(each))
            tell_news(lock, each);
    }
}

bool needs_thread()
{
    return std::any_of(here.listeners.begin(), here.listeners.end(), is_told_by_delivery_thread);
}

// Ends when a post finds nobody whom it would tell any more.
void *deliver(void *)
{
    os_thread_set_name("ruk-notify");
    is_delivery_thread = true;
    std::unique_lock lock(here.mutex);
    while (needs_thread()) {
        std::atomic<uint32_t> &bell = here.counters->bell;
        const uint32_t heard = bell;
        tell_each(lock, is_told_by_delivery_thread);
        lock.unlock();
        futex_wait(bell, heard, never);
        lock.lock();
    }
    here.has_thread = false;
    return nullptr;
}

uint32_t start_thread()
{
    if (here.has_thread)
        return 0;
    os_thread_id id = 0;
    const uint32_t rc = os_thread_create(deliver, nullptr, &id);
    here.has_thread = rc == 0;
    return rc;
}

// The thread that registered it is no more.
void leave_to_delivery_thread(listener &each)
{
    each.thread = pthread_t{};
    each.is_told_there = false;
}

void go_on_without_them()
{
    if (needs_thread() && start_thread() != 0)
        slog_elog("no thread for notifications\n");
}

// Whether a thread listens while it waits, until it ends.
struct listening {
    bool when_it_waits = false;

    ~listening()
    {
        if (!when_it_waits)
            return;
        const std::lock_guard lock(here.mutex);
        for (listener &each : here.listeners)
            if (is_own(each))
                leave_to_delivery_thread(each);
        go_on_without_them();
    }
};

thread_local listening own;

// The child has a copy of everything, but of the threads only of the one that forked; which may
// have been in a hook.
void go_on_in_child()
{
    for (listener &each : here.listeners) {
        leave_to_delivery_thread(each);
        each.running = &each == in_hook_of ? 1 : 0;
    }
    here.leaving = 0;
    here.has_thread = is_delivery_thread;
    go_on_without_them();
    here.mutex.unlock();
}

const int at_fork =
    pthread_atfork([] { here.mutex.lock(); }, [] { here.mutex.unlock(); }, go_on_in_child);

} // namespace

// Never destroyed: threads may outlive the end of main.
audience &own_audience()
{
    static audience &only = *new audience;
    return only;
}

uint32_t begin_delivery(listener &to)
{
    // The thread waits for the lock before it looks whom it has to tell.
    const uint32_t rc = start_thread();
    if (rc != 0)
        return rc;
    to.thread = pthread_self();
    to.is_told_there = false;
    own.when_it_waits = can_wait_for_either();
    return 0;
}

void wait_for_hook(listener &of)
{
    ++here.leaving;
    while (of.running != 0 && &of != in_hook_of)
        futex_wait(of.running, 1, never);
    --here.leaving;
}

bool wait_and_listen(std::atomic<uint32_t> &word, uint32_t seen, moment until)
{
    if (!own.when_it_waits || in_hook_of)
        return futex_wait(word, seen, until);
    std::unique_lock lock(here.mutex);
    std::atomic<uint32_t> &bell = here.counters->bell;
    const uint32_t heard = bell;
    tell_each(lock, [](listener &each) {
        if (!is_own(each))
            return false;
        each.is_told_there |= each.running == 0; // else the delivery thread is still at it
        return each.is_told_there;
    });
    lock.unlock();
    return word != seen || futex_wait_either(word, seen, bell, heard, until);
}

} // namespace ruk::host
