// Named mutexes, among threads and among processes that die as their holders.

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "daemon.h"
#include "os_mutexes.h"
#include "os_processes.h"
#include "platform/os.h"
#include "platform/status.h"

namespace
{

using namespace tests;
using std::chrono::milliseconds;

class OsMutex : public os_layer_test
{
};

// A child that has the mutex and keeps it.
child_process holder_of(os_mutex mutex)
{
    child_process holder([mutex]() mutable {
        os_mutex_get(&mutex, 0);
        os_sleep(OS_WAIT_FOREVER);
        return 0;
    });
    EXPECT_TRUE(eventually([&] { return is_held(mutex); }));
    return holder;
}

TEST_F(OsMutex, IsMadeOnceAndFoundThen)
{
    os_mutex mutex{};
    os_mutex again{};
    EXPECT_EQ(0u, os_mutex_create("made once", &mutex));
    EXPECT_EQ(RUK_OS_EXISTS, os_mutex_create("made once", &again));
    EXPECT_STREQ("", again.name);
    EXPECT_EQ(0u, os_mutex_ident("made once", &again));
    EXPECT_STREQ("made once", again.name);
}

TEST_F(OsMutex, IsNotFoundBeforeItIsMade)
{
    os_mutex mutex{};
    EXPECT_EQ(RUK_OS_NO_SUCH, os_mutex_ident("nobody made this", &mutex));
    EXPECT_STREQ("", mutex.name);
}

TEST_F(OsMutex, IsMadeByOneProcessAndFoundByAnother)
{
    EXPECT_EQ(0, in_child([] {
                  os_mutex mutex{};
                  return as_exit_status(os_mutex_create("a child's", &mutex));
              }));
    os_mutex mutex{};
    EXPECT_EQ(0u, os_mutex_ident("a child's", &mutex));
}

TEST_F(OsMutex, HasANameOf1To51Characters)
{
    os_mutex mutex{};
    EXPECT_EQ(0u, os_mutex_create(std::string(51, 'x').c_str(), &mutex));
    for (const uint32_t rc :
         {os_mutex_create(nullptr, &mutex), os_mutex_create("", &mutex),
          os_mutex_create(std::string(52, 'x').c_str(), &mutex), os_mutex_create("x", nullptr),
          os_mutex_ident(nullptr, &mutex), os_mutex_ident("", &mutex),
          os_mutex_ident(std::string(52, 'x').c_str(), &mutex), os_mutex_ident("x", nullptr),
          os_mutex_get(nullptr, 0), os_mutex_put(nullptr)})
        EXPECT_EQ(RUK_OS_BAD_ARGUMENT, rc);
}

TEST_F(OsMutex, IsNotCreatedWhileItsObjectHasNoName)
{
    os_mutex mutex{};
    EXPECT_EQ(RUK_OS_NOT_CREATED, os_mutex_get(&mutex, OS_WAIT_FOREVER));
    EXPECT_EQ(RUK_OS_NOT_CREATED, os_mutex_put(&mutex));
    memset(mutex.name, 'x', sizeof mutex.name);
    EXPECT_EQ(RUK_OS_NOT_CREATED, os_mutex_get(&mutex, 0)) << "a name without an end";
}

TEST_F(OsMutex, KeepsOthersOutUntilItIsPut)
{
    os_mutex mutex = made("kept");
    EXPECT_EQ(0u, os_mutex_get(&mutex, 0));
    EXPECT_TRUE(is_held(mutex));
    EXPECT_EQ(0u, os_mutex_put(&mutex));
    EXPECT_FALSE(is_held(mutex));
}

TEST_F(OsMutex, WaitsAsLongAsItIsTold)
{
    os_mutex mutex = made("waited for");
    ASSERT_EQ(0u, os_mutex_get(&mutex, 0));
    const milliseconds waited = duration_of(
        [&] { EXPECT_EQ(RUK_OS_TIMED_OUT, in_thread([&] { return os_mutex_get(&mutex, 25); })); });
    EXPECT_GE(waited, milliseconds(250));
    EXPECT_LT(waited, milliseconds(750));
    os_mutex_put(&mutex);
}

TEST_F(OsMutex, WakesWhoeverWaitsWithoutLimit)
{
    os_mutex mutex = made("wanted");
    ASSERT_EQ(0u, os_mutex_get(&mutex, 0));
    std::thread waiter([mutex]() mutable {
        EXPECT_EQ(0u, os_mutex_get(&mutex, OS_WAIT_FOREVER));
        EXPECT_EQ(0u, os_mutex_put(&mutex));
    });
    os_sleep(10);
    EXPECT_EQ(0u, os_mutex_put(&mutex));
    waiter.join();
}

TEST_F(OsMutex, GuardsWhatManyThreadsCount)
{
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&count] {
            for (int k = 0; k < 500; ++k) {
                os_mutex mutex = made("guard");
                ASSERT_EQ(0u, os_mutex_get(&mutex, OS_WAIT_FOREVER));
                ++count;
                os_mutex_put(&mutex);
            }
        });
    for (std::thread &each : threads)
        each.join();
    EXPECT_EQ(8 * 500, count);
}

TEST_F(OsMutex, IsRefusedToItsHolderAtOnce)
{
    os_mutex mutex = made("once");
    EXPECT_EQ(0u, os_mutex_get(&mutex, 0));
    EXPECT_EQ(RUK_OS_HELD_ALREADY, os_mutex_get(&mutex, OS_WAIT_FOREVER));
    EXPECT_EQ(0u, os_mutex_put(&mutex));
}

TEST_F(OsMutex, IsNotPutByWhoeverDoesNotHoldIt)
{
    os_mutex mutex = made("not yours");
    EXPECT_EQ(RUK_OS_NOT_HELD, os_mutex_put(&mutex));
    EXPECT_EQ(0u, os_mutex_get(&mutex, 0));
    EXPECT_EQ(RUK_OS_NOT_HELD, in_thread([&] { return os_mutex_put(&mutex); }));
    EXPECT_EQ(as_exit_status(RUK_OS_NOT_HELD),
              in_child([&] { return as_exit_status(os_mutex_put(&mutex)); }));
    EXPECT_TRUE(is_held(mutex));
    EXPECT_EQ(0u, os_mutex_put(&mutex));
    EXPECT_EQ(RUK_OS_NOT_HELD, os_mutex_put(&mutex));
}

TEST_F(OsMutex, FollowsAKilledHolder)
{
    os_mutex mutex = made("orphan");
    child_process holder = holder_of(mutex);
    EXPECT_EQ(RUK_OS_TIMED_OUT, os_mutex_get(&mutex, 0));
    holder.kill();
    holder.wait();
    EXPECT_EQ(0u, os_mutex_get(&mutex, 0));
    EXPECT_EQ(0u, os_mutex_put(&mutex));
}

TEST_F(OsMutex, FollowsAHolderThatIsKilledDuringTheWait)
{
    os_mutex mutex = made("orphaned meanwhile");
    child_process holder = holder_of(mutex);
    std::thread killer([&] {
        os_sleep(10);
        holder.kill();
    });
    const milliseconds waited =
        duration_of([&] { EXPECT_EQ(0u, os_mutex_get(&mutex, OS_WAIT_FOREVER)); });
    killer.join();
    EXPECT_LT(waited, milliseconds(1000));
    EXPECT_EQ(0u, os_mutex_put(&mutex));
}

TEST_F(OsMutex, FollowsAThreadThatEndsAsItsHolder)
{
    os_mutex mutex = made("left behind");
    EXPECT_EQ(0u, in_thread([&] { return os_mutex_get(&mutex, 0); }));
    EXPECT_EQ(0u, os_mutex_get(&mutex, 100));
    EXPECT_EQ(0u, os_mutex_put(&mutex));
}

} // namespace
