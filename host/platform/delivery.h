// Who is told of notifications, and the thread that tells them.
#ifndef RUK_HOST_PLATFORM_DELIVERY_H
#define RUK_HOST_PLATFORM_DELIVERY_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <vector>

#include "platform/os.h"
#include "platform/os_region.h"
#include "platform/ticks.h"

namespace ruk::host
{

struct watch {
    uint32_t type;
    uint32_t seen; // of the type's counter
};

struct listener {
    os_notify_hook hook = nullptr;
    std::vector<watch> watches;       // empty: not registered
    pthread_t thread{};               // that registered it
    bool is_told_there = false;       // by that thread, and not by the delivery thread
    std::atomic<uint32_t> running{0}; // 1 while its hook runs
};

// Of the process. Handles are never deleted, so listeners stay where they are.
struct audience {
    std::mutex mutex; // over all of it
    std::deque<listener> listeners;
    notification_counters *counters = nullptr; // known to whoever has registered once
    bool has_thread = false;
    std::atomic<uint32_t> leaving{0}; // those who wait until a hook does not run
};

audience &own_audience();

// Has the listener told from now on, which the calling thread registered: 0, or the status of
// starting the delivery thread. The caller has the mutex.
uint32_t begin_delivery(listener &to);

// Returns when the listener's hook does not run, unless it is the hook that calls. The caller does
// not have the mutex.
void wait_for_hook(listener &of);

// Waits for a word of the process as futex_wait does. What is posted for hooks that the calling
// thread registered, it tells them meanwhile, which may change the word.
bool wait_and_listen(std::atomic<uint32_t> &word, uint32_t seen, moment until);

} // namespace ruk::host

#endif
