// Sessions of our own that nobody uses for a while.

#include <gtest/gtest.h>

#include "spoilt_controller.h"

namespace
{

using namespace tests;
using namespace std::chrono_literals;

constexpr unsigned raising_the_privilege = 1;

class idle_session : public testing::Test
{
  protected:
    spoilt_controller controller;
    chassisd::bridge_config config = controller.config();

    std::unique_ptr<chassisd::blade> used_bridge()
    {
        auto bridge = chassisd::make_bridge(config);
        EXPECT_EQ(bridge->execute(get_device_id).status, 0u);
        return bridge;
    }
};

TEST_F(idle_session, is_kept_as_often_as_the_description_says)
{
    config.keepalive_s = 20;
    EXPECT_EQ(used_bridge()->idle_period(), 20s);
}

TEST_F(idle_session, is_kept_before_controllers_give_it_up)
{
    config.keepalive_s = 3600;
    EXPECT_EQ(used_bridge()->idle_period(), 30s);
}

TEST_F(idle_session, needs_nothing_before_it_was_opened)
{
    EXPECT_EQ(chassisd::make_bridge(config)->idle_period(), 0s);
}

TEST_F(idle_session, is_kept_by_a_request)
{
    const auto bridge = used_bridge();
    bridge->idle();
    EXPECT_EQ(controller.asked(sealed_message), raising_the_privilege + 2);
    EXPECT_EQ(controller.asked(open_session_request), 1u);
}

TEST_F(idle_session, is_closed_after_a_second_where_none_is_to_be_kept)
{
    config.keepalive_s = 0;
    const auto bridge = used_bridge();
    EXPECT_EQ(bridge->idle_period(), 1s);
    bridge->idle();
    EXPECT_EQ(bridge->idle_period(), 0s);
    bridge->execute(get_device_id);
    EXPECT_EQ(controller.asked(open_session_request), 2u);
    // What ended the first session came before what opened the second.
    EXPECT_EQ(controller.asked(sealed_message), 2 * raising_the_privilege + 2 + 1);
}

TEST_F(idle_session, of_a_controller_that_was_restarted_is_replaced_without_a_lost_request)
{
    const auto bridge = used_bridge();
    controller.restart();
    std::this_thread::sleep_for(1100ms);
    EXPECT_EQ(bridge->execute(get_device_id).status, 0u);
    EXPECT_EQ(controller.asked(open_session_request), 2u);
}

TEST_F(idle_session, is_asked_whether_it_is_still_there)
{
    const auto bridge = used_bridge();
    std::this_thread::sleep_for(1100ms);
    EXPECT_EQ(bridge->execute(get_device_id).status, 0u);
    EXPECT_EQ(controller.asked(open_session_request), 1u);
    EXPECT_EQ(controller.asked(sealed_message), raising_the_privilege + 3);
}

} // namespace
