#include "platform/robust_lock.h"

#include <algorithm>
#include <cerrno>

#include "platform/futex.h"
#include "platform/status.h"

namespace ruk::host
{

namespace
{

// The dead wake nobody, so whoever waits looks for himself this often.
constexpr std::chrono::milliseconds patience{20};

} // namespace

void init_lock(robust_lock &lock)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
    pthread_mutex_init(&lock.mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    lock.queue = 0;
}

uint32_t try_lock(robust_lock &lock)
{
    switch (pthread_mutex_trylock(&lock.mutex)) {
    case 0:
        return 0;
    case EOWNERDEAD:
        pthread_mutex_consistent(&lock.mutex);
        return 0;
    case EBUSY:
        return RUK_OS_TIMED_OUT;
    case EDEADLK:
        return RUK_OS_HELD_ALREADY;
    default:
        return RUK_OS_BAD_FILE;
    }
}

// Waits beside the mutex and not in it: ThreadSanitizer follows a mutex that is tried, but not one
// that is waited for on the monotonic clock.
uint32_t take_lock(robust_lock &lock, moment until)
{
    uint32_t rc = try_lock(lock);
    while (rc == RUK_OS_TIMED_OUT) {
        const moment now = monotonic::now();
        if (now >= until)
            break;
        const uint32_t queue = lock.queue.fetch_or(1) | 1;
        rc = try_lock(lock); // a holder that let go before it could see the queue
        if (rc != RUK_OS_TIMED_OUT)
            break;
        futex_wait(lock.queue, queue, std::min(until, now + patience));
        rc = try_lock(lock);
    }
    return rc;
}

void release_lock(robust_lock &lock)
{
    pthread_mutex_unlock(&lock.mutex);
    uint32_t queue = lock.queue.load();
    if (queue % 2 != 0 && lock.queue.compare_exchange_strong(queue, queue + 1))
        futex_wake_all(lock.queue);
}

} // namespace ruk::host
