// The event that wakes the callback thread.

#include <atomic>
#include <thread>

#include "check.h"

namespace
{

using namespace tests;
using std::chrono::milliseconds;

class Event : public testing::Test
{
  protected:
    void SetUp() override { ASSERT_EQ(0u, os_ev_create("ruk_platform_check", &event)); }
    void TearDown() override { os_ev_delete(&event); }

    // How long a wait takes that must end well.
    milliseconds wait(uint32_t limit)
    {
        return duration_of([&] { EXPECT_EQ(0u, os_ev_wait(&event, limit)); });
    }

    os_event event{};
};

TEST_F(Event, HasItsNameAndIsNotSet)
{
    EXPECT_STREQ("ruk_platform_check", event.name);
    EXPECT_GE(wait(20), ticks(19)) << "a wait that takes its time is no failure";
}

TEST_F(Event, StaysSetUntilSomebodyWaits)
{
    EXPECT_EQ(0u, os_ev_set(&event));
    EXPECT_EQ(0u, os_ev_set(&event));
    EXPECT_LT(wait(3000), ticks(2000));
}

TEST_F(Event, IsClearedByTheWait)
{
    os_ev_set(&event);
    wait(20);
    EXPECT_GE(wait(20), ticks(19));
}

TEST_F(Event, WakesTheOneWhoWaits)
{
    std::thread setter([&] {
        os_sleep(5);
        os_ev_set(&event);
    });
    EXPECT_LT(wait(3000), ticks(2000));
    setter.join();
}

TEST_F(Event, WakesTheOneWhoWaitsWithoutLimit)
{
    std::thread setter([&] {
        os_sleep(5);
        os_ev_set(&event);
    });
    EXPECT_EQ(0u, os_ev_wait(&event, OS_WAIT_FOREVER));
    setter.join();
}

TEST_F(Event, LosesItsNameWhenItIsDeleted)
{
    EXPECT_EQ(0u, os_ev_delete(&event));
    EXPECT_STREQ("", event.name);
}

TEST_F(Event, IsMadeAnewAfterItWasDeleted)
{
    os_ev_delete(&event);
    EXPECT_EQ(0u, os_ev_create("ruk_platform_check", &event));
    EXPECT_EQ(0u, os_ev_set(&event));
    EXPECT_LT(wait(3000), ticks(2000));
}

TEST_F(Event, IsMadeInAnotherProcessUnderTheSameName)
{
    EXPECT_EQ(0, in_child([] {
                  os_event other{};
                  return os_ev_create("ruk_platform_check", &other) == 0 ? 0 : 1;
              }));
}

TEST_F(Event, IsNotSetWhenItWasDeleted)
{
    os_ev_delete(&event);
    EXPECT_NE(0u, os_ev_set(&event));
}

TEST_F(Event, MayBeSetWhileItIsDeleted)
{
    std::atomic<bool> over{false};
    std::thread setter([&] {
        while (!over)
            os_ev_set(&event);
    });
    for (int round = 0; round < 1000; ++round) {
        os_ev_delete(&event);
        EXPECT_EQ(0u, os_ev_create("ruk_platform_check", &event));
    }
    over = true;
    setter.join();
}

TEST(NoEvent, IsNotSet)
{
    os_event never_created{};
    EXPECT_NE(0u, os_ev_set(&never_created));
}

} // namespace
