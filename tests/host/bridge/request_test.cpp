// Requests in a session of our own, on networks that lose, repeat and delay.

#include <gtest/gtest.h>
#include <map>

#include "platform/status.h"
#include "spoilt_controller.h"

namespace
{

using namespace tests;

class request_in_a_session : public testing::Test
{
  protected:
    spoilt_controller controller;
    std::unique_ptr<chassisd::blade> bridge = chassisd::make_bridge(controller.config());

    void expect_the_answer()
    {
        const chassisd::answer given = bridge->execute(get_device_id);
        EXPECT_EQ(given.status, 0u);
        EXPECT_EQ(given.data, rmcpplus_controller::usual_answer);
    }
};

TEST_F(request_in_a_session, is_answered_more_often_than_there_are_numbers)
{
    for (int round = 0; round < 130; ++round)
        expect_the_answer();
    EXPECT_EQ(controller.asked(open_session_request), 1u) << "one session serves them all";
    EXPECT_EQ(controller.asked(sealed_message), 131u) << "and its privilege is raised once";
}

TEST_F(request_in_a_session, is_answered_when_everything_comes_twice)
{
    controller.behind([](const bytes &, const bytes &answer) {
        return std::vector<bytes>{answer, answer};
    });
    for (int round = 0; round < 3; ++round)
        expect_the_answer();
}

TEST_F(request_in_a_session, is_answered_when_everything_is_lost_the_first_time)
{
    auto times = std::make_shared<std::map<kind, int>>();
    controller.behind([times](const bytes &asked, const bytes &answer) {
        const bool is_lost = ++(*times)[kind_of(asked)] % 2 == 1;
        return is_lost ? std::vector<bytes>() : std::vector<bytes>{answer};
    });
    chassisd::bridge_config config = controller.config();
    config.timeout_ms = 3000;
    bridge = chassisd::make_bridge(config);
    for (int round = 0; round < 3; ++round)
        expect_the_answer();
}

TEST_F(request_in_a_session, does_not_take_a_late_answer_to_the_one_before)
{
    expect_the_answer();
    controller.spoil([count = uint8_t{0}](layer where, bytes &data) mutable {
        if (where == layer::content)
            data = {0, ++count};
    });
    controller.behind([asked = 0, late = bytes()](const bytes &, const bytes &answer) mutable {
        if (++asked == 1)
            late = answer;
        return asked == 1   ? std::vector<bytes>()
               : asked == 2 ? std::vector<bytes>{late, answer}
                            : std::vector<bytes>{answer};
    });
    EXPECT_EQ(bridge->execute(get_device_id).data, bytes({0, 1}));
    EXPECT_EQ(bridge->execute(get_device_id).data, bytes({0, 3}));
}

TEST_F(request_in_a_session, passes_over_what_is_not_sealed)
{
    expect_the_answer();
    controller.behind([](const bytes &, bytes answer) {
        answer[5] = 0x00;
        return std::vector<bytes>{answer};
    });
    EXPECT_EQ(bridge->execute(get_device_id).status, RUK_MSG_UNREACHABLE);
}

TEST_F(request_in_a_session, passes_over_garbage_before_the_answer)
{
    expect_the_answer();
    controller.behind([](const bytes &, const bytes &answer) {
        return std::vector<bytes>{bytes(1), bytes(1500, 0x06), bytes(answer.size(), 0xFF), answer};
    });
    expect_the_answer();
}

TEST_F(request_in_a_session, that_meets_silence_ends_in_time_and_the_next_opens_another)
{
    expect_the_answer();
    controller.restart();
    const auto took =
        time_of([&] { EXPECT_EQ(bridge->execute(get_device_id).status, RUK_MSG_UNREACHABLE); });
    EXPECT_GE(took.count(), 300);
    EXPECT_LT(took.count(), 1000);
    expect_the_answer();
}

TEST_F(request_in_a_session, is_given_up_in_time_however_much_noise_there_is)
{
    expect_the_answer();
    controller.behind([](const bytes &, const bytes &) { return std::vector<bytes>(100, {0x06}); });
    const auto took =
        time_of([&] { EXPECT_EQ(bridge->execute(get_device_id).status, RUK_MSG_UNREACHABLE); });
    EXPECT_LT(took.count(), 1000);
}

TEST_F(request_in_a_session, brings_back_refusals_and_long_answers_as_they_are)
{
    for (const bytes &content : {bytes{0xC1}, bytes(500, 0x5A)}) {
        controller.spoil([=](layer where, bytes &data) {
            if (where == layer::content && data == rmcpplus_controller::usual_answer)
                data = content;
        });
        EXPECT_EQ(bridge->execute(get_device_id).data, content);
    }
}

} // namespace
