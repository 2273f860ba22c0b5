// Callbacks above the scripted platform as a process' tests have them: they run when the test says
// so, and at no other time.

#include <gtest/gtest.h>

#include "ruk_ipmi_testing.h"
#include "runtime.h"

using namespace ruk_ipmi_testing;

namespace
{

class scripted_callbacks : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        its_platform = &platform;
        request = request_to(blade(5), 0x0601);
        told_of().clear();
        answered().clear();
        ASSERT_EQ(ruk_ipmi_init(), 0u);
    }

    void TearDown() override { EXPECT_EQ(platform.complaint(), ""); }

    static std::vector<told> &told_of() { return runtime_test::events_told; }
    static std::vector<ipmi_response> &answered() { return runtime_test::answers; }

    static void registers(std::initializer_list<uint32_t> asserted,
                          imc_event_callback callback = runtime_test::on_event)
    {
        const imc_event_set set = set_of(asserted);
        ASSERT_EQ(ruk_register_imc_event_set(&set, callback), 0u);
    }

    void sends(uint32_t timeout = 3)
    {
        ASSERT_EQ(send_ruk_ipmi_command(&request, runtime_test::on_answer, timeout), 0u);
    }

    // What callbacks of these tests use.
    static inline scripted_platform *its_platform;
    static inline ipmi_request request;

    scripted_platform platform;
};

class misused_callbacks : public scripted_callbacks
{
  protected:
    void TearDown() override {}
};

} // namespace

TEST_F(scripted_callbacks, are_told_of_an_interrupt_before_posting_returns)
{
    registers({1, 9});
    platform.posts_interrupt(blade(3), {9, 40, 1});
    EXPECT_EQ(told_of(), (std::vector<told>{{3, 1}, {3, 9}}));
    platform.posts_interrupt(blade(4), {1});
    EXPECT_EQ(told_of().back(), (told{4, 1}));
}

TEST_F(scripted_callbacks, are_not_told_of_what_came_before_the_registration)
{
    platform.posts_interrupt(blade(3), {1});
    registers({1});
    platform.run_callbacks();
    EXPECT_TRUE(told_of().empty());
}

TEST_F(scripted_callbacks, may_post_interrupts_themselves)
{
    registers({1, 2}, [](uint32_t reserved, imc_event_info *info) {
        if (info->event == 1)
            its_platform->posts_interrupt(blade(4), {2});
        return runtime_test::on_event(reserved, info);
    });
    platform.posts_interrupt(blade(3), {1});
    EXPECT_EQ(told_of(), (std::vector<told>{{3, 1}, {4, 2}}));
}

TEST_F(scripted_callbacks, leave_the_data_of_an_interrupt_to_readers_of_the_ring)
{
    platform.posts_interrupt(blade(3), {1}, {0xAB, 0xCD});
    void *holder = nullptr;
    uint32_t position = 0;
    ipmi_interrupt interrupt;
    EXPECT_EQ(get_next_interrupt(&position, &holder, &interrupt, 0), 0u);
    EXPECT_EQ(bytes_at(interrupt.data, interrupt.data_len), (bytes{0xAB, 0xCD}));
}

TEST_F(scripted_callbacks, are_spared_interrupts_that_cannot_be)
{
    EXPECT_THROW(platform.posts_interrupt(blade(3), {0}), std::out_of_range);
    EXPECT_THROW(platform.posts_interrupt(blade(3), {65}), std::out_of_range);
    EXPECT_THROW(platform.posts_interrupt(blade(3), {1}, bytes(165)), std::length_error);
}

TEST_F(scripted_callbacks, get_answers_when_they_are_let_run_and_not_before)
{
    platform.expects(request).answers({0x00, 0x22});
    sends();
    EXPECT_TRUE(answered().empty());
    platform.run_callbacks();
    ASSERT_EQ(answered().size(), 1u);
    EXPECT_EQ(bytes_at(answered()[0].data, 2), (bytes{0x00, 0x22}));
}

TEST_F(scripted_callbacks, get_a_late_answer_in_its_tick)
{
    platform.expects(request).answers({0x00}).keeps_waiting(2);
    sends();
    platform.run_callbacks(2);
    EXPECT_TRUE(answered().empty());
    platform.run_callbacks(1);
    EXPECT_EQ(answered().size(), 1u);
}

TEST_F(scripted_callbacks, learn_of_a_time_out_at_once)
{
    platform.expects(request).keeps_waiting();
    sends(500);
    platform.run_callbacks();
    ASSERT_EQ(answered().size(), 1u);
    EXPECT_EQ(answered()[0].comp_code, 0x5007u);
}

TEST_F(scripted_callbacks, may_send_commands)
{
    platform.expects(request);
    registers({1}, [](uint32_t, imc_event_info *) {
        return static_cast<int>(send_ruk_ipmi_command(&request, runtime_test::on_answer, 3));
    });
    platform.posts_interrupt(blade(3), {1});
    platform.run_callbacks();
    EXPECT_EQ(answered().size(), 1u);
}

TEST_F(scripted_callbacks, end_with_the_runtime_and_begin_anew_with_the_next)
{
    registers({1});
    ruk_ipmi_exit();
    platform.run_callbacks();
    platform.posts_interrupt(blade(3), {1});
    EXPECT_TRUE(told_of().empty());
    ASSERT_EQ(ruk_ipmi_init(), 0u);
    registers({1});
    platform.posts_interrupt(blade(4), {1});
    EXPECT_EQ(told_of(), (std::vector<told>{{4, 1}}));
}

TEST_F(scripted_callbacks, may_end_the_runtime)
{
    registers({1, 2}, [](uint32_t reserved, imc_event_info *info) {
        runtime_test::on_event(reserved, info);
        ruk_ipmi_exit();
        return 0;
    });
    platform.posts_interrupt(blade(3), {1, 2});
    EXPECT_EQ(told_of(), (std::vector<told>{{3, 1}}));
}

TEST_F(misused_callbacks, may_not_wait_for_themselves)
{
    registers({1}, [](uint32_t, imc_event_info *) {
        its_platform->run_callbacks();
        return 0;
    });
    platform.posts_interrupt(blade(3), {1});
    EXPECT_EQ(platform.complaint(), "run_callbacks was called from a callback\n");
}

TEST_F(misused_callbacks, have_one_thread)
{
    registers({1});
    ASSERT_EQ(ruk_ipmi_init(), 0u);
    const imc_event_set set = set_of({1});
    EXPECT_NE(ruk_register_imc_event_set(&set, runtime_test::on_event), 0u);
    EXPECT_EQ(platform.complaint(), "a callback thread was started while there is one\n");
}

TEST_F(misused_callbacks, are_all_that_can_wait_for_an_event)
{
    os_event event{};
    EXPECT_EQ(os_ev_create("an event", &event), 0u);
    os_ev_wait(&event, OS_WAIT_FOREVER);
    EXPECT_EQ(platform.complaint(), "waits for an event on a thread that is not the callback "
                                    "thread: an event\n");
}
