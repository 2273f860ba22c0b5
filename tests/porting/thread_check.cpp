// Threads, time and memory.

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <pthread.h>

#include "check.h"

namespace
{

using namespace tests;

std::atomic<int> got_to{0};

void *run(void *arg)
{
    static_cast<std::atomic<int> *>(arg)->store(1);
    return nullptr;
}

// Waits until a thread has got somewhere, and a while longer.
int stage_after(void *(*entry)(void *))
{
    got_to = 0;
    os_thread_id id = 0;
    EXPECT_EQ(0u, os_thread_create(entry, &got_to, &id));
    EXPECT_TRUE(eventually([] { return got_to != 0; }));
    os_sleep(5);
    return got_to;
}

TEST(Thread, RunsItsFunctionWithItsArgument)
{
    EXPECT_EQ(1, stage_after(run));
}

TEST(Thread, HasANumber)
{
    os_thread_id id = 0;
    ASSERT_EQ(0u, os_thread_create(run, &got_to, &id));
    EXPECT_NE(0u, id);
    os_sleep(5);
}

TEST(Thread, EndsWhereItSaysSo)
{
    EXPECT_EQ(1, stage_after([](void *) -> void * {
                  got_to = 1;
                  os_thread_exit();
                  got_to = 2;
                  return nullptr;
              }));
}

TEST(Thread, EndsAsPosixThreadsDo)
{
    EXPECT_EQ(1, stage_after([](void *) -> void * {
                  got_to = 1;
                  pthread_exit(nullptr);
              }));
}

TEST(Thread, HasAName)
{
    EXPECT_EQ(2, stage_after([](void *) -> void * {
                  got_to = os_thread_set_name("IPMI_Callback") == 0 ? 2 : 3;
                  return nullptr;
              }));
}

TEST(Thread, IsJoinedByNobodyAndLeavesNothingBehind)
{
    for (int count = 0; count < 2000; ++count) {
        os_thread_id id = 0;
        got_to = 0;
        ASSERT_EQ(0u, os_thread_create(run, &got_to, &id)) << "thread " << count;
        while (got_to == 0)
            sched_yield();
    }
}

TEST(Sleep, LastsItsTicks)
{
    const auto slept = duration_of([] { os_sleep(20); });
    EXPECT_GE(slept, ticks(19));
    EXPECT_LT(slept, ticks(2000));
}

TEST(Memory, IsWhatFreeTakesBack)
{
    for (size_t size = 1; size < 100; ++size) {
        void *const memory = os_malloc(size);
        ASSERT_NE(nullptr, memory);
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(memory) % alignof(void *));
        free(memory);
    }
}

} // namespace
