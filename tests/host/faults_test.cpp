// Blades that misbehave on purpose, as their configuration says.

#include <gtest/gtest.h>
#include <string>

#include "daemon.h"
#include "platform/message_service.h"

namespace
{

using namespace tests;

std::string blade_with(const std::string &faults)
{
    return "[[blade]]\nslot = 1\nfaults = { " + faults + " }\n";
}

uint32_t exchange(ipmi_response &response, uint32_t timeout = 500)
{
    ipmi_request request = sel_entry_request(1, 1, 0);
    response = empty_response();
    return get_ruk_ipmi_response(&request, &response, timeout);
}

TEST(Faults, EveryNthRequestIsLeftWithoutAnAnswer)
{
    const chassis_daemon served(blade_with("drop_every = 3"));
    ipmi_response response;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(0u, exchange(response));
        EXPECT_EQ(0u, exchange(response));
        EXPECT_EQ(RUK_MSG_NOT_ANSWERED, exchange(response, 10));
    }
}

// What comes back from a blade with these faults.
ipmi_response answer_with(const std::string &faults)
{
    const chassis_daemon served(blade_with(faults));
    ipmi_response response;
    EXPECT_EQ(0u, exchange(response));
    return response;
}

TEST(Faults, EveryRequestIsRefused)
{
    const ipmi_response response = answer_with("completion_code = 0xC0");
    EXPECT_EQ(0xC0u, response.comp_code);
    EXPECT_EQ(1u, response.data_len);
    EXPECT_EQ(0xC0, response.data[0]);
}

TEST(Faults, AnswersAreCutShort)
{
    const ipmi_response response = answer_with("truncate_to = 5");
    EXPECT_EQ(0u, response.comp_code);
    EXPECT_EQ(5u, response.data_len);
}

TEST(Faults, AnAnswerOfNothingDoesNotLookLikeSuccess)
{
    const ipmi_response response = answer_with("truncate_to = 0");
    EXPECT_EQ(0xFFu, response.comp_code);
    EXPECT_EQ(0u, response.data_len);
}

TEST(Faults, AnswersAreLongerThanTheyShouldBe)
{
    const ipmi_response response = answer_with("oversize_to = 100");
    EXPECT_EQ(0u, response.comp_code);
    EXPECT_EQ(100u, response.data_len);
}

} // namespace
