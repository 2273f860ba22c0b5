// Threads, sleep and memory.

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <pthread.h>
#include <string>
#include <sys/time.h>

#include "daemon.h"
#include "os_processes.h"
#include "platform/os.h"
#include "platform/status.h"

namespace
{

using namespace tests;
using std::chrono::milliseconds;

// What a thread saw of itself.
struct sighting {
    os_thread_id id = 0; // as its creator was told
    os_thread_id id_at_start = 0;
    std::string name;
    bool signals_blocked = true;
    std::atomic<bool> over{false};
};

void *look_around(void *arg)
{
    auto *seen = static_cast<sighting *>(arg);
    seen->id_at_start = seen->id;
    os_thread_set_name("IPMI_Callback, a long name");
    char name[32] = "";
    pthread_getname_np(pthread_self(), name, sizeof name);
    seen->name = name;
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGCHLD, SIGALRM, SIGUSR1})
        seen->signals_blocked = seen->signals_blocked && sigismember(&blocked, signal) == 1;
    seen->over = true;
    return nullptr;
}

TEST(OsThread, KnowsItsNumberWhenItBegins)
{
    for (int round = 0; round < 100; ++round) {
        sighting seen;
        ASSERT_EQ(0u, os_thread_create(look_around, &seen, &seen.id));
        EXPECT_NE(0u, seen.id);
        ASSERT_TRUE(eventually([&] { return seen.over.load(); }));
        EXPECT_EQ(seen.id, seen.id_at_start);
    }
}

TEST(OsThread, LeavesSignalsToTheProcessAndHasTheNameThatFits)
{
    sighting seen;
    ASSERT_EQ(0u, os_thread_create(look_around, &seen, &seen.id));
    ASSERT_TRUE(eventually([&] { return seen.over.load(); }));
    EXPECT_TRUE(seen.signals_blocked);
    EXPECT_EQ("IPMI_Callback, ", seen.name);
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    EXPECT_EQ(0, sigismember(&blocked, SIGTERM)) << "the creator's own are as they were";
}

TEST(OsThread, EndsWhereItSaysSo)
{
    static std::atomic<int> got_to{0};
    os_thread_id id = 0;
    ASSERT_EQ(0u, os_thread_create(
                      [](void *) -> void * {
                          got_to = 1;
                          os_thread_exit();
                          got_to = 2;
                          return nullptr;
                      },
                      nullptr, &id));
    ASSERT_TRUE(eventually([] { return got_to != 0; }));
    os_sleep(5);
    EXPECT_EQ(1, got_to);
}

TEST(OsThread, IsNotMadeOfNothing)
{
    os_thread_id id = 0;
    EXPECT_EQ(RUK_OS_BAD_ARGUMENT, os_thread_create(nullptr, nullptr, &id));
    EXPECT_EQ(RUK_OS_BAD_ARGUMENT, os_thread_create(look_around, nullptr, nullptr));
    EXPECT_EQ(RUK_OS_BAD_ARGUMENT, os_thread_set_name(nullptr));
}

TEST(OsSleep, LastsItsTimeAcrossSignals)
{
    static std::atomic<int> signals{0};
    struct sigaction count = {};
    count.sa_handler = [](int) { ++signals; };
    struct sigaction before = {};
    sigaction(SIGALRM, &count, &before);
    const itimerval often = {{0, 20000}, {0, 20000}};
    const itimerval no_more = {};
    setitimer(ITIMER_REAL, &often, nullptr);
    const milliseconds slept = duration_of([] { EXPECT_EQ(0u, os_sleep(25)); });
    setitimer(ITIMER_REAL, &no_more, nullptr);
    sigaction(SIGALRM, &before, nullptr);
    EXPECT_GT(signals, 2);
    EXPECT_GE(slept, milliseconds(250));
    EXPECT_LT(slept, milliseconds(750));
}

TEST(OsMemory, IsWhatFreeTakesBack)
{
    void *memory = os_malloc(20);
    ASSERT_NE(nullptr, memory);
    free(memory);
}

} // namespace
