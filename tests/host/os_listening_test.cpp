// A thread that waits for events tells the hooks that it registered by itself; a thread of the
// platform's tells all others.

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <memory>
#include <string>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#include <vector>

#include "daemon.h"
#include "os_processes.h"
#include "os_registration.h"
#include "platform/notifications.h"
#include "platform/os.h"

namespace
{

using namespace tests;
using std::chrono::milliseconds;

// Hooks are plain functions: what they do and see is here.
os_event event{};
std::atomic<int> own_calls{0};
std::atomic<int> calls_by_waiter{0};
std::atomic<int> other_calls{0};
std::atomic<int> other_calls_by_waiter{0};
std::atomic<bool> hold{false};
thread_local bool is_waiter = false;

void own_hook(uint32_t, ...)
{
    calls_by_waiter += is_waiter;
    ++own_calls;
    os_ev_set(&event);
}

void other_hook(uint32_t, ...)
{
    other_calls_by_waiter += is_waiter;
    ++other_calls;
}

class OsListening : public os_layer_test
{
  protected:
    void SetUp() override
    {
        for (std::atomic<int> *each :
             {&own_calls, &calls_by_waiter, &other_calls, &other_calls_by_waiter})
            *each = 0;
        event = {};
        ASSERT_EQ(0u, os_ev_create("event", &event));
        is_waiter = true;
    }
};

// Posts again and again, from a thread of its own, until this goes.
class poster
{
  public:
    ~poster()
    {
        over_ = true;
        thread_.join();
    }

  private:
    std::atomic<bool> over_{false};
    std::thread thread_{[this] {
        while (!over_) {
            os_notify_post(interrupt);
            os_sleep(1);
        }
    }};
};

bool waits_until(const std::function<bool()> &so)
{
    return eventually([&] {
        EXPECT_EQ(0u, os_ev_wait(&event, 500));
        return so();
    });
}

// Posts and waits until the calling thread is the one that tells its hooks.
void begin_to_listen()
{
    const poster posting;
    EXPECT_TRUE(waits_until([] { return calls_by_waiter > 0; }));
}

bool has_delivery_thread()
{
    for (const auto &task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::ifstream(task.path() / "comm") >> name;
        if (name == "ruk-notify")
            return true;
    }
    return false;
}

TEST_F(OsListening, AThreadThatWaitsTellsItsOwnHooks)
{
    const registration own(own_hook);
    begin_to_listen();
    const int before = own_calls - calls_by_waiter;
    {
        const poster posting;
        EXPECT_TRUE(waits_until([] { return calls_by_waiter > 5; }));
    }
    EXPECT_EQ(before, own_calls - calls_by_waiter);
}

TEST_F(OsListening, NoOtherThreadIsNeededForThese)
{
    const registration own(own_hook);
    EXPECT_TRUE(eventually(has_delivery_thread));
    begin_to_listen();
    os_notify_post(interrupt);
    EXPECT_TRUE(eventually([] { return !has_delivery_thread(); }));
}

TEST_F(OsListening, AThreadThatWaitsTellsNoHookOfOthers)
{
    const registration own(own_hook);
    std::unique_ptr<registration> other;
    std::thread([&] { other = std::make_unique<registration>(other_hook); }).join();
    {
        const poster posting;
        EXPECT_TRUE(waits_until([] { return calls_by_waiter > 2 && other_calls > 2; }));
    }
    EXPECT_EQ(0, other_calls_by_waiter);
}

TEST_F(OsListening, HooksOfAThreadThatHasNotWaitedYetAreToldAtOnce)
{
    const registration own(own_hook);
    os_notify_post(interrupt);
    EXPECT_TRUE(eventually([] { return own_calls == 1; }));
    EXPECT_EQ(0, calls_by_waiter);
}

TEST_F(OsListening, WhatIsPostedWhileItDoesNotWaitIsToldWhenItDoes)
{
    const registration own(own_hook);
    begin_to_listen();
    os_ev_wait(&event, 1); // for the last posts
    own_calls = 0;
    os_notify_post(interrupt);
    os_notify_post(interrupt);
    os_sleep(5);
    EXPECT_EQ(0, own_calls);
    EXPECT_TRUE(waits_until([] { return own_calls == 1; }));
}

TEST_F(OsListening, AThreadThatDoesNotWaitKeepsNoOtherHookWaiting)
{
    const registration own(own_hook);
    begin_to_listen();
    std::unique_ptr<registration> other;
    std::thread([&] { other = std::make_unique<registration>(other_hook); }).join();
    os_notify_post(interrupt);
    EXPECT_TRUE(eventually([] { return other_calls > 0; }));
}

TEST_F(OsListening, HooksOfAThreadThatHasEndedAreTold)
{
    std::unique_ptr<registration> own;
    std::thread([&] {
        is_waiter = true;
        own = std::make_unique<registration>(own_hook);
        begin_to_listen();
    }).join();
    own_calls = 0;
    os_notify_post(interrupt);
    EXPECT_TRUE(eventually([] { return own_calls > 0; }));
}

TEST_F(OsListening, HooksAreToldInAForkedChildToo)
{
    const registration own(own_hook);
    begin_to_listen();
    EXPECT_EQ(0, in_child([] {
                  own_calls = 0;
                  os_notify_post(interrupt);
                  return eventually([] { return own_calls > 0; }) ? 0 : 1;
              }));
}

TEST_F(OsListening, WhatIsNoNewsForItShortensNoWait)
{
    const registration other(other_hook);
    const poster posting;
    const milliseconds waited = duration_of([] { EXPECT_EQ(0u, os_ev_wait(&event, 20)); });
    EXPECT_GE(waited, milliseconds(200));
    EXPECT_GT(other_calls, 2);
}

void hook_that_waits(uint32_t, ...)
{
    if (is_waiter)
        os_ev_wait(&event, 5);
    own_hook(0);
}

TEST_F(OsListening, AHookMayWaitForAnEvent)
{
    const registration own(hook_that_waits);
    const poster posting;
    EXPECT_TRUE(waits_until([] { return calls_by_waiter > 2; }));
}

void hook_that_forks(uint32_t, ...)
{
    if (is_waiter) {
        EXPECT_EQ(0, in_child([] { return os_notify_post(interrupt + 1) == 0 ? 0 : 1; }));
    }
    own_hook(0);
}

TEST_F(OsListening, AHookMayFork)
{
    const registration own(hook_that_forks);
    const poster posting;
    EXPECT_TRUE(waits_until([] { return calls_by_waiter > 0; }));
}

void hook_that_holds(uint32_t, ...)
{
    ++other_calls;
    while (hold)
        os_sleep(1);
}

TEST_F(OsListening, AHookThatRunsInItsThreadIsWaitedForByWhoUnregistersIt)
{
    hold = true;
    std::atomic<os_notify_handle> handle{0};
    std::thread waiter([&] {
        os_event own{};
        os_ev_create("own", &own);
        const registration registered(hook_that_holds);
        handle = registered.handle();
        while (hold)
            os_ev_wait(&own, 1);
    });
    ASSERT_TRUE(eventually([&] { return handle != 0; }));
    os_notify_post(interrupt);
    ASSERT_TRUE(eventually([] { return other_calls > 0; }));
    std::thread releaser([] {
        os_sleep(10);
        hold = false;
    });
    EXPECT_EQ(0u, os_notify_unregister(handle));
    EXPECT_FALSE(hold);
    releaser.join();
    waiter.join();
}

// From now on a system call fails in this process, as where the kernel does not know it.
void refuse(long number, uint32_t error)
{
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<uint32_t>(number), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog program = {static_cast<unsigned short>(std::size(steps)), steps};
    ASSERT_EQ(0, prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0));
    ASSERT_EQ(0, prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program));
}

TEST_F(OsListening, TheDeliveryThreadDoesItAllWhereNobodyCanWaitForTwoWords)
{
    for (const uint32_t error : {ENOSYS, EPERM})
        EXPECT_EQ(0, in_child([=] {
                      refuse(SYS_futex_waitv, error);
                      const registration own(own_hook);
                      os_notify_post(interrupt);
                      for (int round = 1; round <= 3; ++round) {
                          os_ev_wait(&event, OS_WAIT_FOREVER);
                          if (own_calls != round)
                              return 1;
                          os_notify_post(interrupt);
                      }
                      return 0;
                  }));
}

TEST_F(OsListening, KilledWaitersLeaveTheOthersTheirs)
{
    const registration own(own_hook);
    for (int i = 0; i < 20; ++i) {
        child_process victim([] {
            const registration mine(other_hook);
            os_ev_wait(&event, OS_WAIT_FOREVER);
            return 0;
        });
        os_notify_post(interrupt);
        victim.kill();
        victim.wait();
    }
    own_calls = 0;
    os_notify_post(interrupt);
    EXPECT_TRUE(waits_until([] { return own_calls > 0; }));
}

} // namespace
