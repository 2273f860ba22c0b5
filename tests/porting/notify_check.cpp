// Notifications: a doorbell that one process rings and every registered one hears.

#include <atomic>
#include <cstdarg>

#include "check.h"

namespace
{

using namespace tests;

constexpr uint32_t interrupt_posted = 0x15;

std::atomic<int> calls{0};
std::atomic<uint32_t> type_told{0};

void hook(uint32_t word, ...)
{
    va_list args;
    va_start(args, word);
    uint32_t type = 0;
    os_notify_get(&type, 0, args);
    va_end(args);
    type_told = type;
    ++calls;
}

class Notification : public testing::Test
{
  protected:
    void SetUp() override
    {
        calls = 0;
        ASSERT_EQ(0u, os_notify_list_init(&list));
        ASSERT_EQ(0u, os_notify_list_add(interrupt_posted, list));
        ASSERT_EQ(0u, os_notify_init(&handle, hook));
        ASSERT_EQ(0u, os_notify_register(list, handle));
    }
    void TearDown() override { os_notify_unregister(handle); }

    os_notify_list list = 0;
    os_notify_handle handle = 0;
};

TEST_F(Notification, CallsTheHookWithItsType)
{
    if (!can_post())
        GTEST_SKIP() << no_way_to_post;
    ASSERT_TRUE(post_event());
    EXPECT_TRUE(eventually([] { return calls > 0; }));
    EXPECT_EQ(interrupt_posted, type_told);
}

TEST_F(Notification, CallsNobodyAfterItWasUnregistered)
{
    if (!can_post())
        GTEST_SKIP() << no_way_to_post;
    EXPECT_EQ(0u, os_notify_unregister(handle));
    const int before = calls;
    ASSERT_TRUE(post_event());
    os_sleep(20);
    EXPECT_EQ(before, calls);
}

TEST(NoNotification, IsRegisteredForNothing)
{
    EXPECT_NE(0u, os_notify_register(0, 0));
}

} // namespace
