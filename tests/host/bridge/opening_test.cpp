// How a session of our own begins, or does not.

#include <gtest/gtest.h>

#include "platform/status.h"
#include "spoilt_controller.h"

namespace
{

using namespace tests;

class opening : public testing::Test
{
  protected:
    spoilt_controller controller;

    // Changes the payload of one step of the controller's.
    template <typename Change>
    void change(kind step, Change change)
    {
        controller.behind([=](const bytes &, bytes answer) {
            constexpr size_t payload_at = 16;
            if (kind_of(answer) == step)
                change(&answer[payload_at], answer);
            return std::vector<bytes>{answer};
        });
    }

    uint32_t status() { return answer_of(controller.config()).status; }
};

TEST_F(opening, takes_three_steps_and_no_question_about_capabilities)
{
    EXPECT_EQ(status(), 0u);
    for (const kind kind : {open_session_request, rakp_1, rakp_3})
        EXPECT_EQ(controller.asked(kind), 1u);
    EXPECT_EQ(controller.asked(message_before_a_session), 0u);
}

TEST_F(opening, is_possible_in_both_cipher_suites_with_every_privilege_and_any_name)
{
    for (const int suite : {3, 17})
        for (const char *privilege : {"user", "operator", "admin"})
            for (const size_t length : {0, 1, 16}) {
                chassisd::bridge_config config = controller.config();
                config.cipher_suite = static_cast<uint8_t>(suite);
                config.privilege = privilege;
                config.username = std::string(length, 'u');
                EXPECT_EQ(answer_of(config).status, 0u);
            }
}

TEST_F(opening, finds_an_ipv6_address_in_brackets)
{
    chassisd::bridge_config config = controller.config();
    config.host = "[::ffff:127.0.0.1]";
    EXPECT_EQ(answer_of(config).status, 0u);
}

TEST_F(opening, with_a_wrong_password_is_a_matter_of_access)
{
    chassisd::bridge_config config = controller.config();
    config.password = "guess";
    EXPECT_EQ(answer_of(config).status, RUK_MSG_ACCESS);
}

TEST_F(opening, that_a_controller_refuses_at_any_step_is_a_matter_of_access)
{
    for (const kind step : {open_session_response, rakp_2, rakp_4}) {
        change(step, [](uint8_t *payload, bytes &) { payload[1] = 0x0D; });
        EXPECT_EQ(status(), RUK_MSG_ACCESS) << step;
    }
}

TEST_F(opening, may_be_refused_in_no_more_than_a_status)
{
    change(open_session_response, [](uint8_t *payload, bytes &answer) {
        payload[1] = 0x01;
        answer[14] = 2;
        answer.resize(16 + 2);
    });
    EXPECT_EQ(status(), RUK_MSG_ACCESS);
}

TEST_F(opening, needs_the_algorithms_that_were_proposed)
{
    for (const size_t at : {16, 24, 32}) {
        change(open_session_response, [at](uint8_t *payload, bytes &) { payload[at] ^= 0x01; });
        EXPECT_EQ(status(), RUK_MSG_ACCESS) << at;
    }
}

TEST_F(opening, needs_a_proof_from_the_controller_that_is_right_in_every_byte)
{
    for (const size_t at : {40, 59}) {
        change(rakp_2, [at](uint8_t *payload, bytes &) { payload[at] ^= 0x80; });
        EXPECT_EQ(status(), RUK_MSG_ACCESS) << at;
    }
    for (const size_t at : {8, 19}) {
        change(rakp_4, [at](uint8_t *payload, bytes &) { payload[at] ^= 0x80; });
        EXPECT_EQ(status(), RUK_MSG_ACCESS) << at;
    }
}

TEST_F(opening, needs_a_whole_proof)
{
    for (const kind step : {rakp_2, rakp_4}) {
        change(step, [](uint8_t *, bytes &answer) {
            answer.pop_back();
            --answer[14];
        });
        EXPECT_EQ(status(), RUK_MSG_ACCESS);
    }
}

TEST_F(opening, is_not_for_another_console)
{
    change(rakp_2, [](uint8_t *payload, bytes &) { payload[4] ^= 0x01; });
    EXPECT_EQ(status(), RUK_MSG_UNREACHABLE);
}

TEST_F(opening, passes_over_answers_to_another_step)
{
    change(rakp_2, [](uint8_t *payload, bytes &) { ++payload[0]; });
    EXPECT_EQ(status(), RUK_MSG_UNREACHABLE);
}

TEST_F(opening, without_the_privilege_is_a_matter_of_access)
{
    controller.spoil([](layer where, bytes &data) {
        constexpr uint8_t above_the_users = 0x81;
        if (where == layer::content && data == bytes{0, 0x04})
            data = {above_the_users};
    });
    EXPECT_EQ(status(), RUK_MSG_ACCESS);
}

TEST_F(opening, that_nobody_answers_ends_in_time)
{
    controller.behind([](const bytes &, const bytes &) { return std::vector<bytes>(); });
    uint32_t status = 0;
    const auto took = time_of([&] { status = answer_of(controller.config()).status; });
    EXPECT_EQ(status, RUK_MSG_UNREACHABLE);
    EXPECT_GE(took.count(), 300);
    EXPECT_LT(took.count(), 1000);
    EXPECT_LE(controller.asked(open_session_request), 6u); // every 50 ms
    EXPECT_GE(controller.asked(open_session_request), 3u);
}

TEST_F(opening, where_nobody_listens_ends_at_once)
{
    chassisd::bridge_config config;
    {
        const spoilt_controller gone;
        config = gone.config();
    }
    config.timeout_ms = 5000;
    const auto took = time_of([&] { EXPECT_EQ(answer_of(config).status, RUK_MSG_UNREACHABLE); });
    EXPECT_LT(took.count(), 2000);
}

TEST_F(opening, to_a_host_that_has_no_address_ends_without_a_session)
{
    chassisd::bridge_config config = controller.config();
    config.host = "[::1"; // no name of a host, so nobody is asked for its address
    EXPECT_EQ(answer_of(config).status, RUK_MSG_UNREACHABLE);
}

TEST_F(opening, is_not_tried_again_for_a_second)
{
    controller.behind([](const bytes &, const bytes &) { return std::vector<bytes>(); });
    const auto bridge = chassisd::make_bridge(controller.config());
    bridge->execute(get_device_id);
    const auto took =
        time_of([&] { EXPECT_EQ(bridge->execute(get_device_id).status, RUK_MSG_UNREACHABLE); });
    EXPECT_LT(took.count(), 200);
}

} // namespace
