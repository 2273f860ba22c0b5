// Named mutexes: the same one for every thread and process that knows the name.

#include <csignal>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "check.h"

namespace
{

using namespace tests;
using std::chrono::milliseconds;

os_mutex made(const std::string &name)
{
    os_mutex mutex{};
    EXPECT_EQ(0u, look_up(name, mutex));
    return mutex;
}

bool free_for_others(const std::string &name)
{
    return in_thread([&] {
               os_mutex mutex = made(name);
               const uint32_t rc = os_mutex_get(&mutex, 1);
               if (rc == 0)
                   os_mutex_put(&mutex);
               return rc;
           }) == 0;
}

TEST(Mutex, IsMadeOnceAndThenFound)
{
    const std::string name = new_name();
    os_mutex first{};
    EXPECT_EQ(0u, os_mutex_create(name.c_str(), &first));
    EXPECT_EQ(name, first.name);

    os_mutex second{};
    EXPECT_NE(0u, os_mutex_create(name.c_str(), &second));
    EXPECT_STREQ("", second.name);
    EXPECT_EQ(0u, os_mutex_ident(name.c_str(), &second));
    EXPECT_EQ(name, second.name);
}

TEST(Mutex, IsNotFoundBeforeItIsMade)
{
    os_mutex mutex{};
    EXPECT_NE(0u, os_mutex_ident(new_name().c_str(), &mutex));
}

TEST(Mutex, HasNamesOf49Characters)
{
    std::string name = new_name();
    name.resize(48, '-');
    os_mutex mutex = made(name + "1");
    EXPECT_EQ(0u, os_mutex_get(&mutex, 100));
    EXPECT_TRUE(free_for_others(name + "2"));
    os_mutex_put(&mutex);
}

TEST(Mutex, KeepsOtherThreadsOutUntilItIsGivenBack)
{
    const std::string name = new_name();
    os_mutex mutex = made(name);
    ASSERT_EQ(0u, os_mutex_get(&mutex, 100));
    EXPECT_FALSE(free_for_others(name));
    os_mutex_put(&mutex);
    EXPECT_TRUE(free_for_others(name));
}

TEST(Mutex, KeepsThreadsThatShareARecordOut)
{
    os_mutex mutex = made(new_name());
    ASSERT_EQ(0u, os_mutex_get(&mutex, 100));
    EXPECT_NE(0u, in_thread([&] { return os_mutex_get(&mutex, 1); }));
    os_mutex_put(&mutex);
}

TEST(Mutex, KeepsOtherProcessesOut)
{
    const std::string name = new_name();
    os_mutex mutex = made(name);
    ASSERT_EQ(0u, os_mutex_get(&mutex, 100));
    EXPECT_EQ(1, in_child([&] { return free_for_others(name) ? 0 : 1; }));
    os_mutex_put(&mutex);
    EXPECT_EQ(0, in_child([&] { return free_for_others(name) ? 0 : 1; }));
}

TEST(Mutex, IsWaitedForAsLongAsItWasAsked)
{
    os_mutex mutex = made(new_name());
    ASSERT_EQ(0u, os_mutex_get(&mutex, 100));
    const milliseconds waited =
        duration_of([&] { EXPECT_NE(0u, in_thread([&] { return os_mutex_get(&mutex, 20); })); });
    os_mutex_put(&mutex);
    EXPECT_GE(waited, ticks(19));
}

TEST(Mutex, IsHeldByOneAtATime)
{
    const std::string name = new_name();
    int inside = 0; // not atomic: the mutex is what guards it
    int passes = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                os_mutex mutex = made(name); // for this access alone, as at the ring
                ASSERT_EQ(0u, os_mutex_get(&mutex, 500));
                EXPECT_EQ(1, ++inside);
                --inside;
                ++passes;
                os_mutex_put(&mutex);
            }
        });
    for (std::thread &each : threads)
        each.join();
    EXPECT_EQ(800, passes);
}

TEST(Mutex, IsRefusedWhereThereIsNone)
{
    os_mutex nameless{};
    EXPECT_NE(0u, os_mutex_get(nullptr, 1));
    EXPECT_NE(0u, os_mutex_get(&nameless, 1));
    os_mutex_put(nullptr);
    os_mutex_put(&nameless);
}

TEST(Mutex, DoesNoHarmWhenItIsGivenBackByAnotherThanTheHolder)
{
    const std::string name = new_name();
    os_mutex mutex = made(name);
    ASSERT_EQ(0u, os_mutex_get(&mutex, 100));
    in_thread([&] { return os_mutex_put(&mutex); });
    EXPECT_FALSE(free_for_others(name));
    os_mutex_put(&mutex);
}

TEST(Mutex, GoesToTheNextWhenItsHolderIsKilled)
{
    const std::string name = new_name();
    os_mutex mutex = made(name);
    ASSERT_EQ(-SIGKILL, in_child([&] {
        return os_mutex_get(&mutex, 100) == 0 ? kill(getpid(), SIGKILL) : 1;
    }));
    if (os_mutex_get(&mutex, 100) != 0)
        GTEST_SKIP()
            << "it stays locked: a process that is killed at the ring locks all others out";
    os_mutex_put(&mutex);
}

} // namespace
