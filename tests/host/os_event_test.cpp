// Named events: set and waited for by the threads of one process.

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "os_processes.h"
#include "platform/os.h"
#include "platform/status.h"

namespace
{

using namespace tests;
using std::chrono::milliseconds;

os_event made(const char *name = "event")
{
    os_event event{};
    EXPECT_EQ(0u, os_ev_create(name, &event));
    return event;
}

// A wait that only took its time is no failure, so time tells; the event is not set any more.
bool was_set(os_event &event)
{
    return duration_of([&] { EXPECT_EQ(0u, os_ev_wait(&event, 10)); }) < milliseconds(100);
}

TEST(OsEvent, IsMadeUnderItsNameAndNotSet)
{
    os_event event = made("IPMI Callback event-7");
    EXPECT_STREQ("IPMI Callback event-7", event.name);
    EXPECT_FALSE(was_set(event));
}

TEST(OsEvent, IsKeptForTheNextToCome)
{
    os_event event = made();
    EXPECT_EQ(0u, os_ev_set(&event));
    EXPECT_EQ(0u, os_ev_set(&event));
    EXPECT_TRUE(was_set(event));
    EXPECT_FALSE(was_set(event)) << "set twice, waited for once";
}

TEST(OsEvent, WakesOneWaiterForEachTimeItIsSet)
{
    os_event event = made();
    std::atomic<int> woken{0};
    std::vector<std::thread> waiters;
    for (int i = 0; i < 3; ++i)
        waiters.emplace_back([&] {
            EXPECT_EQ(0u, os_ev_wait(&event, OS_WAIT_FOREVER));
            ++woken;
        });
    for (int expected = 1; expected <= 3; ++expected) {
        EXPECT_EQ(0u, os_ev_set(&event));
        os_sleep(5);
        EXPECT_EQ(expected, woken);
    }
    for (std::thread &each : waiters)
        each.join();
}

TEST(OsEvent, IsWaitedForAsLongAsTold)
{
    os_event event = made();
    const milliseconds waited = duration_of([&] { EXPECT_EQ(0u, os_ev_wait(&event, 25)); });
    EXPECT_GE(waited, milliseconds(250));
    EXPECT_LT(waited, milliseconds(750));
}

TEST(OsEvent, PassesAWordBetweenThreads)
{
    os_event asked = made("asked");
    os_event answered = made("answered");
    int word = 0;
    std::thread other([&] {
        for (int i = 0; i < 1000; ++i) {
            os_ev_wait(&asked, OS_WAIT_FOREVER);
            ++word;
            os_ev_set(&answered);
        }
    });
    for (int i = 0; i < 1000; ++i) {
        os_ev_set(&asked);
        EXPECT_EQ(0u, os_ev_wait(&answered, 500));
        EXPECT_EQ(i + 1, word);
    }
    other.join();
}

TEST(OsEvent, ThatWasNeverMadeGivesAStatus)
{
    os_event event{};
    EXPECT_EQ(RUK_OS_NOT_CREATED, os_ev_set(&event));
    EXPECT_EQ(RUK_OS_NOT_CREATED, os_ev_wait(&event, OS_WAIT_FOREVER));
    EXPECT_EQ(RUK_OS_NOT_CREATED, os_ev_delete(&event));
}

TEST(OsEvent, ThatWasDeletedHasNoNameAndCanBeMadeAgain)
{
    os_event event = made();
    os_ev_set(&event);
    EXPECT_EQ(0u, os_ev_delete(&event));
    EXPECT_STREQ("", event.name);
    EXPECT_EQ(RUK_OS_NOT_CREATED, os_ev_set(&event));
    EXPECT_EQ(RUK_OS_NOT_CREATED, os_ev_wait(&event, OS_WAIT_FOREVER));
    EXPECT_EQ(0u, os_ev_create("again", &event));
    EXPECT_FALSE(was_set(event)) << "made again, not set";
}

TEST(OsEvent, ThatIsDeletedSendsItsWaitersAway)
{
    os_event event = made();
    std::vector<std::thread> waiters;
    for (int i = 0; i < 3; ++i)
        waiters.emplace_back(
            [&] { EXPECT_EQ(RUK_OS_NOT_CREATED, os_ev_wait(&event, OS_WAIT_FOREVER)); });
    os_sleep(5);
    EXPECT_EQ(0u, os_ev_delete(&event));
    for (std::thread &each : waiters)
        each.join();
}

TEST(OsEvent, ThatIsMadeAgainIsNotTheOneThatWasWaitedFor)
{
    for (int round = 0; round < 10; ++round) {
        os_event event = made();
        std::thread waiter([&] { EXPECT_EQ(RUK_OS_NOT_CREATED, os_ev_wait(&event, 100)); });
        os_sleep(1);
        EXPECT_EQ(0u, os_ev_delete(&event));
        EXPECT_EQ(0u, os_ev_create("again", &event));
        waiter.join();
    }
}

TEST(OsEvent, CanBeSetWhileItIsDeleted)
{
    for (int round = 0; round < 200; ++round) {
        os_event event = made();
        std::thread setter([&] {
            while (os_ev_set(&event) == 0)
                ;
        });
        EXPECT_EQ(0u, os_ev_delete(&event));
        setter.join();
        EXPECT_EQ(RUK_OS_NOT_CREATED, os_ev_wait(&event, OS_WAIT_FOREVER));
    }
}

TEST(OsEvent, RefusesBadArguments)
{
    os_event event{};
    for (const uint32_t rc :
         {os_ev_create(nullptr, &event), os_ev_create("", &event),
          os_ev_create(std::string(52, 'x').c_str(), &event), os_ev_create("x", nullptr),
          os_ev_set(nullptr), os_ev_wait(nullptr, 0), os_ev_delete(nullptr)})
        EXPECT_EQ(RUK_OS_BAD_ARGUMENT, rc);
    EXPECT_EQ(0u, os_ev_create(std::string(51, 'x').c_str(), &event));
    EXPECT_EQ(RUK_OS_EXISTS, os_ev_create("other", &event));
    EXPECT_EQ(std::string(51, 'x'), event.name);
}

} // namespace
