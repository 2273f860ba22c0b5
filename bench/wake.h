// How long it takes until the last of some processes hears of something, for every way to tell
// them.
#ifndef RUK_BENCH_WAKE_H
#define RUK_BENCH_WAKE_H

#include <algorithm>
#include <array>
#include <atomic>

#include "processes.h"

namespace bench
{

constexpr unsigned most_waiters = 64;

// What a process knows of the marks that it is told.
struct alignas(64) waiter {
    std::atomic<uint64_t> heard_ns; // when it heard of the last one
    std::atomic<uint32_t> heard;    // which that was

    void hears(uint32_t mark)
    {
        heard_ns = now_ns();
        heard = mark;
    }
};

class waiters
{
  public:
    // `wait` is what each process does, for ever: whenever it is told a mark, it calls `hears`.
    // `tell` tells all of them a mark.
    waiters(unsigned many, const std::function<void(waiter &)> &wait,
            std::function<void(uint32_t)> tell)
        : many_(many),
          tell_(std::move(tell)),
          processes_(start(many, [&](unsigned i) { wait(all_[i]); }))
    {
        do {
            tell_(++mark_);
            pause_us(asleep_us);
        } while (!all_heard());
    }
    ~waiters() { stop(processes_); }
    waiters(const waiters &) = delete;
    waiters &operator=(const waiters &) = delete;

    // From just before they are told until the last one hears of it; the median of `count` times.
    uint64_t median_ns(unsigned count)
    {
        std::vector<uint64_t> times;
        for (unsigned i = 0; i < count; ++i)
            times.push_back(tell_once());
        return median(std::move(times));
    }

  private:
    // Long enough that whoever heard of the last mark waits for the next one again.
    static constexpr unsigned asleep_us = 5000;

    uint64_t tell_once()
    {
        const uint64_t begin = now_ns();
        tell_(++mark_);
        do
            pause_us(asleep_us);
        while (!all_heard());
        uint64_t last = 0;
        for (unsigned i = 0; i < many_; ++i)
            last = std::max<uint64_t>(last, all_[i].heard_ns);
        return last - begin;
    }

    bool all_heard() const
    {
        return std::all_of(all_.begin(), all_.begin() + many_,
                           [this](const waiter &each) { return each.heard == mark_; });
    }

    std::array<waiter, most_waiters> &all_ =
        shared_with_children<std::array<waiter, most_waiters>>();
    unsigned many_;
    std::function<void(uint32_t)> tell_;
    std::vector<pid_t> processes_;
    uint32_t mark_ = 0;
};

} // namespace bench

#endif
