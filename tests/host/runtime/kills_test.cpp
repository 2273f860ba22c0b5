// Readers and writers that are killed at any moment, also while they hold the ring's lock.

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "daemon.h"
#include "os_processes.h"
#include "producer/producer.h"
#include "runtime_processes.h"

namespace
{

using namespace tests;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr char one_blade[] = "[[blade]]\nslot = 1\n";

struct common {
    std::atomic<uint64_t> longest_wait_us;
    std::atomic<uint64_t> accesses;
    std::atomic<uint32_t> damaged;      // interrupts that were not whole
    std::atomic<uint32_t> out_of_order; // numbers that did not ascend
    std::atomic<uint32_t> failed;       // accesses that did not succeed
    std::atomic<bool> held;

    void note(steady_clock::time_point begin)
    {
        using namespace std::chrono;
        const auto took = duration_cast<microseconds>(steady_clock::now() - begin).count();
        auto longest = longest_wait_us.load();
        while (static_cast<uint64_t>(took) > longest &&
               !longest_wait_us.compare_exchange_weak(longest, static_cast<uint64_t>(took)))
            ;
        ++accesses;
    }
};

// All of the interrupt's data is its writer's mark again and again.
void fill(ipmi_interrupt &interrupt, uint32_t mark)
{
    interrupt = marked_interrupt(mark);
    interrupt.data_len = sizeof interrupt.data;
    for (size_t at = 0; at < sizeof interrupt.data; at += sizeof mark)
        memcpy(interrupt.data + at, &mark, sizeof mark);
}

bool whole(const ipmi_interrupt &interrupt)
{
    ipmi_interrupt expected;
    fill(expected, mark_of(interrupt.location));
    return memcmp(expected.data, interrupt.data, sizeof expected.data) == 0 &&
           interrupt.data_len == expected.data_len;
}

int write_for_ever(common &all)
{
    void *holder = nullptr;
    for (uint32_t mark = 1;; ++mark) {
        ipmi_interrupt interrupt;
        fill(interrupt, mark * 2654435761u);
        const auto begin = steady_clock::now();
        if (ruk::host::post_interrupt(&holder, interrupt) != 0)
            ++all.failed;
        all.note(begin);
    }
}

int read_for_ever(common &all)
{
    void *holder = nullptr;
    uint32_t position = 0;
    for (;;) {
        ipmi_interrupt interrupt{};
        const uint32_t last = position;
        const auto begin = steady_clock::now();
        if (get_next_interrupt(&position, &holder, &interrupt, 1) != 0)
            ++all.failed;
        all.note(begin);
        if (position < last)
            ++all.out_of_order;
        if (position != last && !whole(interrupt))
            ++all.damaged;
    }
}

// Under the ring's lock: its numbers ascend from the oldest to the newest, the last of them is not
// beyond the last number, and every interrupt is whole.
int inspect(common &all)
{
    void *holder = nullptr;
    mutex_obj lock{};
    const auto begin = steady_clock::now();
    if (get_ipmi_shm_ptr(&holder) != 0 || acquire_mutex("ruk_mutex_ipmi", &lock, 0) != 0)
        return 1;
    all.note(begin);
    const auto *region = static_cast<const ipmi_shm *>(holder);
    bool good = region->next_slot <= IPMI_RING_SLOTS && region->renumbered == 0;
    uint32_t last = 0;
    for (uint32_t i = 0; good && i < IPMI_RING_SLOTS; ++i) {
        const ipmi_interrupt &each = region->ring[(region->next_slot + i) % IPMI_RING_SLOTS];
        if (each.int_num == 0) // a hole that a killed writer left, or an empty slot
            continue;
        good = each.int_num > last && whole(each);
        last = each.int_num;
    }
    good = good && last <= region->last_int_num;
    release_mutex(&lock);
    return good ? 0 : 2;
}

// A process that has the ring's lock and keeps it.
child_process owner_of_the_lock(shared<common> &all)
{
    child_process owner([&] {
        mutex_obj lock{};
        if (acquire_mutex("ruk_mutex_ipmi", &lock, 0) != 0)
            return 1;
        all->held = true;
        for (;;)
            pause_for(1s);
    });
    EXPECT_TRUE(eventually([&] { return all->held.load(); }));
    return owner;
}

} // namespace

TEST(Kills, LeaveTheRingConsistentAndNobodyWaitingForASecond)
{
    const chassis_daemon served(one_blade);
    shared<common> all;
    std::vector<child_process> workers;
    const auto worker = [&](size_t i) {
        return child_process(
            [&all, i] { return i % 2 == 0 ? write_for_ever(*all) : read_for_ever(*all); });
    };
    for (size_t i = 0; i < 4; ++i)
        workers.push_back(worker(i));

    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int killed = 1; killed <= 1000; ++killed) {
        pause_for(std::chrono::microseconds(random() % 5000));
        const size_t victim = random() % workers.size();
        workers[victim].kill();
        ASSERT_EQ(workers[victim].wait(), -SIGKILL);
        workers[victim] = worker(victim);
        if (killed % 50 == 0) {
            ASSERT_EQ(in_child([&] { return inspect(*all); }), 0) << "after " << killed;
        }
    }
    workers.clear();

    EXPECT_EQ(all->damaged, 0u);
    EXPECT_EQ(all->out_of_order, 0u);
    EXPECT_EQ(all->failed, 0u);
    EXPECT_LT(all->longest_wait_us, 1000000u);
    EXPECT_GT(all->accesses, 10000u);
}

TEST(Kills, OfWhoHoldsTheRingsLockHandItToTheNext)
{
    const chassis_daemon served(one_blade);
    for (int i = 0; i < 20; ++i) {
        shared<common> all;
        child_process owner = owner_of_the_lock(all);
        owner.kill();
        EXPECT_EQ(owner.wait(), -SIGKILL);
        EXPECT_EQ(in_child([&] { return inspect(*all); }), 0);
        EXPECT_LT(all->longest_wait_us, 1000000u);
    }
}

TEST(Kills, OfWhoHoldsTheRingsLockReachThoseThatWaitForIt)
{
    const chassis_daemon served(one_blade);
    shared<common> all;
    child_process owner = owner_of_the_lock(all);
    child_process waiting([&] { return inspect(*all); });
    pause_for(200ms);
    owner.kill();
    EXPECT_EQ(waiting.wait(), 0);
    EXPECT_LT(all->longest_wait_us, 1000000u);
}
