// Notifications among processes: whoever is registered hears of every post, if not of each alone.

#include <array>
#include <atomic>
#include <csignal>
#include <cstdarg>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "daemon.h"
#include "os_processes.h"
#include "os_registration.h"
#include "platform/notifications.h"
#include "platform/os.h"
#include "platform/status.h"

namespace
{

using namespace tests;

// A hook is a plain function: what it does and sees is here.
std::atomic<int> calls{0};
std::atomic<uint32_t> last_type{0};
std::atomic<bool> hold{false};
std::atomic<bool> inside{false};

void hook(uint32_t, ...)
{
    inside = true;
    ++calls;
    while (hold)
        os_sleep(1);
    inside = false;
}

void hook_that_asks(uint32_t word, ...)
{
    va_list args;
    va_start(args, word);
    uint32_t type = 0;
    os_notify_get(&type, 0, args);
    va_end(args);
    last_type = type;
    ++calls;
}

class OsNotify : public os_layer_test
{
  protected:
    void SetUp() override { calls = 0; }
};

bool called_eventually(int times)
{
    return eventually([=] { return calls == times; });
}

TEST_F(OsNotify, TellsAHookTheTypeThatWasPosted)
{
    const registration registered(hook_that_asks, {interrupt, 0, 255});
    int times = 0;
    for (const uint32_t type : {0u, 255u, interrupt}) {
        EXPECT_EQ(0u, os_notify_post(type));
        EXPECT_TRUE(called_eventually(++times));
        EXPECT_EQ(type, last_type);
    }
}

TEST_F(OsNotify, TellsNoHookOfOtherTypesNorOfThePast)
{
    os_notify_post(interrupt);
    const registration registered(hook);
    os_notify_post(interrupt + 1);
    os_sleep(10);
    EXPECT_EQ(0, calls);
}

TEST_F(OsNotify, TellsEveryProcess)
{
    const shared<std::atomic<int>> ready;
    std::vector<child_process> listeners;
    for (int i = 0; i < 8; ++i)
        listeners.emplace_back([&] {
            const registration registered(hook);
            ++*ready;
            return called_eventually(1) ? 0 : 1;
        });
    ASSERT_TRUE(eventually([&] { return *ready == 8; }));
    EXPECT_EQ(0u, os_notify_post(interrupt));
    for (child_process &each : listeners)
        EXPECT_EQ(0, each.wait());
}

// How far the poster was when each listener's hook ran last.
struct progress {
    std::atomic<int> ready{0};
    std::atomic<int> posted{0};
    std::array<std::atomic<int>, 8> heard{};
};

progress *watched = nullptr;
size_t listener_number = 0;

void hook_that_watches(uint32_t, ...)
{
    watched->heard[listener_number] = watched->posted.load();
}

TEST_F(OsNotify, LosesNoPostOfTenThousand)
{
    const shared<progress> common;
    watched = &*common;
    std::vector<child_process> listeners;
    for (listener_number = 0; listener_number < 8; ++listener_number)
        listeners.emplace_back([] {
            const registration registered(hook_that_watches);
            ++watched->ready;
            if (listener_number % 2 == 0)
                os_sleep(OS_WAIT_FOREVER);
            os_event event{}; // the others tell it themselves
            os_ev_create("event", &event);
            os_ev_wait(&event, OS_WAIT_FOREVER);
            return 0;
        });
    ASSERT_TRUE(eventually([&] { return common->ready == 8; }));
    for (int i = 0; i < 10000; ++i) {
        ++common->posted;
        EXPECT_EQ(0u, os_notify_post(interrupt));
    }
    for (const std::atomic<int> &each : common->heard)
        EXPECT_TRUE(eventually([&] { return each == 10000; })) << each;
}

TEST_F(OsNotify, RunsTheHookAgainForWhatIsPostedWhileItRuns)
{
    const registration registered(hook);
    hold = true;
    os_notify_post(interrupt);
    EXPECT_TRUE(called_eventually(1));
    os_notify_post(interrupt);
    os_notify_post(interrupt);
    hold = false;
    EXPECT_TRUE(called_eventually(2));
    os_sleep(5);
    EXPECT_EQ(2, calls) << "a doorbell, not a counter";
}

TEST_F(OsNotify, AHookIsAtRestWhenItIsUnregistered)
{
    const registration registered(hook);
    hold = true;
    os_notify_post(interrupt);
    EXPECT_TRUE(eventually([] { return inside.load(); }));
    std::thread releaser([] {
        os_sleep(10);
        hold = false;
    });
    EXPECT_EQ(0u, os_notify_unregister(registered.handle()));
    EXPECT_FALSE(inside);
    releaser.join();
    os_notify_post(interrupt);
    os_sleep(5);
    EXPECT_EQ(1, calls);
}

os_notify_handle self = 0;

void hook_that_unregisters(uint32_t, ...)
{
    EXPECT_EQ(0u, os_notify_unregister(self));
    ++calls;
}

TEST_F(OsNotify, AHookMayUnregisterItself)
{
    const registration registered(hook_that_unregisters);
    self = registered.handle();
    os_notify_post(interrupt);
    EXPECT_TRUE(called_eventually(1));
    os_notify_post(interrupt);
    os_sleep(5);
    EXPECT_EQ(1, calls);
}

TEST_F(OsNotify, RegistersAgainAfterItsThreadHasEnded)
{
    for (int round = 0; round < 20; ++round) {
        {
            calls = 0;
            const registration registered(hook);
            os_notify_post(interrupt);
            EXPECT_TRUE(called_eventually(1));
        }
        os_notify_post(interrupt); // at which the thread finds nothing to do
        if (round % 2 == 0)
            os_sleep(1);
    }
}

TEST_F(OsNotify, GoesOnInParentAndChildAfterAFork)
{
    const registration registered(hook);
    const shared<std::atomic<bool>> posted;
    child_process child([&] {
        calls = 0;
        return eventually([&] { return calls > 0 && *posted; }) ? 0 : 1;
    });
    os_sleep(5);
    *posted = true;
    os_notify_post(interrupt);
    EXPECT_TRUE(called_eventually(1));
    EXPECT_EQ(0, child.wait());
}

void hook_that_forks(uint32_t, ...)
{
    EXPECT_EQ(0, in_child([] { return os_notify_post(interrupt + 1) == 0 ? 0 : 1; }));
    ++calls;
}

TEST_F(OsNotify, AHookMayFork)
{
    const registration registered(hook_that_forks);
    os_notify_post(interrupt);
    EXPECT_TRUE(called_eventually(1));
}

TEST_F(OsNotify, AProgramThatIsExecutedRegistersAnew)
{
    const registration registered(hook);
    const std::string directory = getenv("RUK_RUNTIME_DIR");
    const std::string type = std::to_string(interrupt);
    std::atomic<bool> over{false};
    std::thread poster([&] {
        while (!over) {
            os_notify_post(interrupt);
            os_sleep(1);
        }
    });
    EXPECT_EQ(0, in_child([&] { return exec_os_client(directory, "listen", type.c_str()); }));
    over = true;
    poster.join();
}

TEST_F(OsNotify, KilledListenersLeaveTheOthersTheirs)
{
    const registration registered(hook);
    for (int i = 0; i < 20; ++i) {
        child_process victim([] {
            os_sleep(OS_WAIT_FOREVER);
            return 0;
        });
        os_notify_post(interrupt);
        victim.kill();
        victim.wait();
    }
    calls = 0;
    os_notify_post(interrupt);
    EXPECT_TRUE(eventually([] { return calls > 0; }));
}

TEST_F(OsNotify, RefusesBadArguments)
{
    os_notify_list list = 0;
    os_notify_handle handle = 0;
    ASSERT_EQ(0u, os_notify_list_init(&list));
    ASSERT_EQ(0u, os_notify_init(&handle, hook));
    EXPECT_EQ(RUK_OS_BAD_ARGUMENT, os_notify_register(list, handle)) << "an empty list";
    ASSERT_EQ(0u, os_notify_list_add(1, list));
    const os_notify_list unknown = ~os_notify_list{0} / 4;
    for (const uint32_t rc :
         {os_notify_list_init(nullptr), os_notify_init(nullptr, hook),
          os_notify_init(&handle, nullptr), os_notify_list_add(256, list),
          os_notify_list_add(1, handle), os_notify_list_add(1, 0), os_notify_list_add(1, unknown),
          os_notify_register(handle, list), // NOLINT(readability-suspicious-call-argument)
          os_notify_register(list, 0), os_notify_register(list, unknown + 1),
          os_notify_unregister(0), os_notify_unregister(list), os_notify_unregister(unknown + 1),
          os_notify_post(256)})
        EXPECT_EQ(RUK_OS_BAD_ARGUMENT, rc);
}

TEST_F(OsNotify, UnregistersOnlyWhatIsRegistered)
{
    const registration registered(hook);
    EXPECT_EQ(0u, os_notify_unregister(registered.handle()));
    EXPECT_EQ(RUK_OS_NOT_REGISTERED, os_notify_unregister(registered.handle()));
    os_notify_handle never = 0;
    ASSERT_EQ(0u, os_notify_init(&never, hook));
    EXPECT_EQ(RUK_OS_NOT_REGISTERED, os_notify_unregister(never));
}

} // namespace
