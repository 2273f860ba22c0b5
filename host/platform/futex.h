// Waiting for a word to change, among the threads of all processes that share it.
#ifndef RUK_HOST_PLATFORM_FUTEX_H
#define RUK_HOST_PLATFORM_FUTEX_H

#include <atomic>
#include <cstdint>

#include "platform/ticks.h"

namespace ruk::host
{

static_assert(sizeof(std::atomic<uint32_t>) == sizeof(uint32_t) &&
              std::atomic<uint32_t>::is_always_lock_free);

// Sleeps if `word` is `seen`, until it is woken or `until` has come; false in that case. May also
// return for nothing: the caller looks at the word again.
bool futex_wait(std::atomic<uint32_t> &word, uint32_t seen, moment until);

// The same for two words, until either is woken; where the kernel can (since 5.16).
bool can_wait_for_either();
bool futex_wait_either(std::atomic<uint32_t> &word, uint32_t seen, std::atomic<uint32_t> &other,
                       uint32_t other_seen, moment until);

void futex_wake_one(std::atomic<uint32_t> &word);
void futex_wake_all(std::atomic<uint32_t> &word);

} // namespace ruk::host

#endif
