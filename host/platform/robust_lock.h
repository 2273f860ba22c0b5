// A lock in memory that processes share, which a holder's death does not close: whoever comes next
// has it. What it guards must make sense at every instant.
#ifndef RUK_HOST_PLATFORM_ROBUST_LOCK_H
#define RUK_HOST_PLATFORM_ROBUST_LOCK_H

#include <atomic>
#include <cstdint>
#include <pthread.h>

#include "platform/ticks.h"

namespace ruk::host
{

struct robust_lock {
    pthread_mutex_t mutex;
    std::atomic<uint32_t> queue; // odd: somebody waits; changes when all are woken
};

// Done once, before any other process sees the lock.
void init_lock(robust_lock &lock);

// Takes the lock if it is free: 0, RUK_OS_TIMED_OUT when it is not, RUK_OS_HELD_ALREADY when the
// calling thread has it.
uint32_t try_lock(robust_lock &lock);

// The same, waiting until `until` at the latest.
uint32_t take_lock(robust_lock &lock, moment until);

// By the holder alone.
void release_lock(robust_lock &lock);

} // namespace ruk::host

#endif
