#include "platform/futex.h"

#include <climits>
#include <ctime>
#include <linux/futex.h>
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

timespec as_timespec(moment when)
{
    using namespace std::chrono;
    const auto since_start = when.time_since_epoch();
    const auto whole = duration_cast<seconds>(since_start);
    timespec result{};
    result.tv_sec = static_cast<time_t>(whole.count());
    result.tv_nsec = static_cast<long>(nanoseconds(since_start - whole).count());
    return result;
}

} // namespace

void futex_wait(std::atomic<uint32_t> &word, uint32_t seen, moment until)
{
    // Of the two waits this is the one whose time-out is a point on the monotonic clock.
    const timespec end = as_timespec(until);
    syscall(SYS_futex, &word, FUTEX_WAIT_BITSET, seen, until == never ? nullptr : &end, nullptr,
            FUTEX_BITSET_MATCH_ANY);
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
