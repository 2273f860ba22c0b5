#include "platform/futex.h"

#include <cerrno>
#include <climits>
#include <ctime>
#include <iterator>
#include <linux/futex.h>
#include <linux/time_types.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ruk::host
{

namespace
{

void wake(std::atomic<uint32_t> &word, int most)
{
    syscall(SYS_futex, &word, FUTEX_WAKE, most, nullptr, nullptr, 0);
}

template <typename Timespec>
Timespec as(moment when)
{
    using namespace std::chrono;
    const auto since_start = when.time_since_epoch();
    const auto whole = duration_cast<seconds>(since_start);
    Timespec result{};
    result.tv_sec = static_cast<decltype(result.tv_sec)>(whole.count());
    result.tv_nsec =
        static_cast<decltype(result.tv_nsec)>(nanoseconds(since_start - whole).count());
    return result;
}

futex_waitv waited_for(std::atomic<uint32_t> &word, uint32_t seen)
{
    return {seen, reinterpret_cast<uintptr_t>(&word), FUTEX_32, 0};
}

} // namespace

bool futex_wait(std::atomic<uint32_t> &word, uint32_t seen, moment until)
{
    // Of the two waits this is the one whose time-out is a point on the monotonic clock.
    const timespec end = as<timespec>(until);
    return syscall(SYS_futex, &word, FUTEX_WAIT_BITSET, seen, until == never ? nullptr : &end,
                   nullptr, FUTEX_BITSET_MATCH_ANY) == 0 ||
           errno != ETIMEDOUT;
}

// Waiting for nothing is an error of another kind than a call that is not there, or not allowed.
bool can_wait_for_either()
{
    return syscall(SYS_futex_waitv, nullptr, 0, 0, nullptr, 0) < 0 && errno == EINVAL;
}

bool futex_wait_either(std::atomic<uint32_t> &word, uint32_t seen, std::atomic<uint32_t> &other,
                       uint32_t other_seen, moment until)
{
    futex_waitv words[] = {waited_for(word, seen), waited_for(other, other_seen)};
    const auto end = as<__kernel_timespec>(until);
    return syscall(SYS_futex_waitv, words, std::size(words), 0, until == never ? nullptr : &end,
                   CLOCK_MONOTONIC) >= 0 ||
           errno != ETIMEDOUT;
}

void futex_wake_one(std::atomic<uint32_t> &word)
{
    wake(word, 1);
}

void futex_wake_all(std::atomic<uint32_t> &word)
{
    wake(word, INT_MAX);
}

} // namespace ruk::host
