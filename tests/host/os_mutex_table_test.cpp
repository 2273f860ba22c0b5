// The table of named mutexes: more names than it has room for, processes killed at any instant.

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "daemon.h"
#include "os_mutexes.h"
#include "os_processes.h"
#include "platform/os.h"
#include "platform/os_region.h"
#include "platform/status.h"

namespace
{

using namespace tests;

class OsMutexTable : public os_layer_test
{
};

// Makes so many names in each of so many processes, one after the other; how many of these were
// refused any.
int processes_refused_names(const std::string &base, int processes, int names)
{
    int refused = 0;
    for (int i = 0; i < processes; ++i)
        refused += in_child([&] {
            os_mutex mutex{};
            bool refused_one = false;
            for (int k = 0; k < names; ++k) {
                const std::string name = base + std::to_string(i) + "_" + std::to_string(k);
                refused_one |= os_mutex_create(name.c_str(), &mutex) != 0;
            }
            return refused_one ? 1 : 0;
        });
    return refused;
}

TEST_F(OsMutexTable, NamesOfTheDeadGiveWayToNewOnes)
{
    const os_mutex kept = made("of the living");
    EXPECT_EQ(0, processes_refused_names("list mutex_", 100, 100));
    os_mutex mutex{};
    EXPECT_EQ(RUK_OS_EXISTS, os_mutex_create(kept.name, &mutex));
}

TEST_F(OsMutexTable, NamesOfTheLivingAreNeverGivenAway)
{
    const auto fill_the_table = [] {
        os_mutex mutex{};
        int names = 0;
        uint32_t rc = 0;
        while ((rc = os_mutex_create(("mine " + std::to_string(names)).c_str(), &mutex)) == 0)
            ++names;
        for (int i = 0; i < names; ++i)
            if (os_mutex_ident(("mine " + std::to_string(i)).c_str(), &mutex) != 0)
                return 1;
        return rc == RUK_OS_TABLE_FULL && names > 500 ? 0 : 2;
    };
    EXPECT_EQ(0, in_child(fill_the_table));
}

void let_a_child_be_its_last_user(const os_mutex &mutex)
{
    EXPECT_EQ(0, in_child([&] {
                  os_mutex found{};
                  return as_exit_status(os_mutex_ident(mutex.name, &found));
              }));
}

// Takes the place of every name that nobody alive uses.
void crowd_out_the_dead()
{
    EXPECT_LT(0, processes_refused_names("crowd ", 1, 20000));
}

TEST_F(OsMutexTable, WorksOnWhenItsNameWasGivenAway)
{
    os_mutex mutex = made("given away");
    let_a_child_be_its_last_user(mutex);
    crowd_out_the_dead();
    os_mutex found{};
    ASSERT_EQ(RUK_OS_NO_SUCH, os_mutex_ident(mutex.name, &found));
    EXPECT_EQ(0u, os_mutex_get(&mutex, 0));
    EXPECT_TRUE(is_held(mutex));
    EXPECT_EQ(0u, os_mutex_put(&mutex));
}

TEST_F(OsMutexTable, IsNotGivenAwayWhileItIsHeld)
{
    os_mutex mutex = made("held on to");
    ASSERT_EQ(0u, os_mutex_get(&mutex, 0));
    let_a_child_be_its_last_user(mutex);
    crowd_out_the_dead();
    EXPECT_TRUE(is_held(mutex));
    EXPECT_EQ(0u, os_mutex_put(&mutex));
}

TEST_F(OsMutexTable, LooksAgainWhenItsNameWasGivenAwayDuringTheWait)
{
    using namespace ruk::host;
    os_mutex mutex = made("given away meanwhile");
    os_region *region = nullptr;
    mutex_name name;
    ASSERT_EQ(0u, attach_os_region(region));
    ASSERT_TRUE(read_mutex_name(mutex.name, name));
    mutex_slot *const slot = find_mutex(region->mutexes, name);
    ASSERT_EQ(0u, try_lock(slot->lock));
    std::thread waiter([mutex]() mutable {
        EXPECT_EQ(0u, os_mutex_get(&mutex, 500));
        EXPECT_EQ(0u, os_mutex_put(&mutex));
    });
    os_sleep(5);
    slot->name[0] = 'x';
    slot->version += 2;
    release_lock(slot->lock);
    waiter.join();
    EXPECT_NE(nullptr, find_mutex(region->mutexes, name));
    EXPECT_NE(slot, find_mutex(region->mutexes, name));
}

TEST_F(OsMutexTable, NamesThatTheDeadLeftHalfWrittenAreWrittenAnew)
{
    using namespace ruk::host;
    const shared<mutex_table> table;
    init_mutexes(*table);
    child_process writer([&] {
        take_lock(table->changes, never);
        for (mutex_set &set : table->sets)
            for (mutex_slot &slot : set) {
                slot.version = 1;
                slot.name[0] = 'x';
            }
        raise(SIGKILL);
        return 0;
    });
    EXPECT_EQ(-SIGKILL, writer.wait());
    mutex_name name;
    ASSERT_TRUE(read_mutex_name("x", name));
    EXPECT_EQ(nullptr, find_mutex(*table, name));
    mutex_slot *slot = nullptr;
    EXPECT_EQ(0u, make_mutex(*table, name, slot));
    EXPECT_EQ(slot, find_mutex(*table, name));
}

TEST_F(OsMutexTable, EveryNameIsMadeByOneOfManyProcesses)
{
    constexpr int names = 300;
    const shared<std::atomic<int>> made_of_them;
    std::vector<child_process> makers;
    for (int i = 0; i < 4; ++i)
        makers.emplace_back([&] {
            os_mutex mutex{};
            for (int k = 0; k < names; ++k)
                if (os_mutex_create(("race " + std::to_string(k)).c_str(), &mutex) == 0)
                    ++*made_of_them;
            return 0;
        });
    for (child_process &each : makers)
        EXPECT_EQ(0, each.wait());
    EXPECT_EQ(names, *made_of_them);
}

// What the processes of the killing have in common.
struct arena {
    std::atomic<uint32_t> inside; // who has the mutex, by their own account
    std::atomic<uint32_t> broken; // how often two had it
    std::atomic<uint32_t> failed; // calls that failed
    std::atomic<uint32_t> longest_ms;
    std::atomic<uint32_t> rounds;
};

void lock_and_look(arena &common, uint32_t self)
{
    os_mutex mutex{};
    const auto waited = duration_of([&] {
        if (look_up("fought over", mutex) != 0 || os_mutex_get(&mutex, 300) != 0)
            ++common.failed;
    });
    uint32_t longest = common.longest_ms;
    while (waited.count() > longest &&
           !common.longest_ms.compare_exchange_weak(longest, static_cast<uint32_t>(waited.count())))
        ;
    common.inside = self;
    for (int i = 0; i < 50; ++i)
        common.broken += common.inside != self;
    ++common.rounds;
    if (os_mutex_put(&mutex) != 0)
        ++common.failed;
}

// Locks, unlocks and makes names for as long as it is let live.
int live_dangerously(arena &common, uint32_t self)
{
    for (uint32_t i = 0;; ++i) {
        lock_and_look(common, self);
        os_mutex own{};
        const std::string name = "list_" + std::to_string(self) + "_" + std::to_string(i % 32);
        if (look_up(name.c_str(), own) != 0 || os_mutex_get(&own, 300) != 0 ||
            os_mutex_put(&own) != 0)
            ++common.failed;
    }
}

TEST_F(OsMutexTable, AThousandKillsWedgeNobody)
{
    const shared<arena> common;
    std::vector<child_process> living;
    uint32_t born = 0;
    const auto give_birth = [&] {
        const uint32_t self = ++born;
        return child_process([&common, self] { return live_dangerously(*common, self); });
    };
    for (int i = 0; i < 4; ++i)
        living.push_back(give_birth());
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) { // of two victims, and two that live on
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        const size_t first = random() % living.size();
        for (const size_t victim : {first, (first + 1) % living.size()})
            living[victim].kill();
        for (const size_t victim : {first, (first + 1) % living.size()})
            living[victim] = give_birth();
    }
    living.clear();
    lock_and_look(*common, ++born);
    EXPECT_EQ(0u, common->broken);
    EXPECT_EQ(0u, common->failed);
    EXPECT_LT(common->longest_ms, 1000u);
    EXPECT_GT(common->rounds, 1000u);
}

} // namespace
