// The message service, by what a blade answers to Get Device ID.

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <set>
#include <thread>
#include <vector>

#include "check.h"
#include "platform/message_service.h"

namespace
{

using namespace tests;

ipmi_request device_id_request(uint32_t mark)
{
    ipmi_request request{};
    request.msg_type = 0x101;
    request.location.slot_id = *blade_to_ask();
    request.reserved_0c = mark;
    request.netfn_cmd = 0x0601;
    return request;
}

uint32_t send(const ipmi_request &request, uint32_t &index)
{
    return send_ruk_command(IPMI_COMPONENT, &request, offsetof(ipmi_request, data), 0, &index);
}

uint32_t receive(uint32_t index, uint32_t timeout, ipmi_response &response)
{
    uint32_t length = sizeof response;
    const uint32_t rc = receive_ruk_response(index, timeout, IPMI_COMPONENT, &response, &length);
    if (rc == 0) {
        EXPECT_EQ(offsetof(ipmi_response, data) + response.data_len, length);
    }
    return rc;
}

bool answers(const ipmi_response &response, uint32_t mark)
{
    const ipmi_request request = device_id_request(mark);
    return response.netfn_cmd == request.netfn_cmd && response.reserved_0c == mark &&
           memcmp(&response.location, &request.location, sizeof request.location) == 0 &&
           response.data_len > 0 && response.data[0] == response.comp_code;
}

// A message that is under way, while this thread is attached; the test fails when there is none.
uint32_t sent(uint32_t mark)
{
    uint32_t index = 0;
    EXPECT_EQ(0u, send(device_id_request(mark), index));
    return index;
}

bool is_answered(uint32_t index, uint32_t mark)
{
    ipmi_response response{};
    return receive(index, 500, response) == 0 && answers(response, mark);
}

class MessageService : public testing::Test
{
  protected:
    void SetUp() override
    {
        if (!blade_to_ask())
            GTEST_SKIP() << no_blade;
        ASSERT_EQ(0u, attach_ruk_shm());
        attached_ = true;
    }
    void TearDown() override
    {
        if (attached_)
            detach_ruk_shm();
    }

  private:
    bool attached_ = false;
};

TEST_F(MessageService, AnswersTheRequestThatWasSent)
{
    EXPECT_TRUE(is_answered(sent(7), 7));
}

TEST_F(MessageService, HasTakenTheRequestWhenTheCallReturns)
{
    uint32_t index = 0;
    ipmi_request request = device_id_request(8);
    ASSERT_EQ(0u, send(request, index));
    memset(&request, 0xFF, sizeof request);
    EXPECT_TRUE(is_answered(index, 8));
}

TEST_F(MessageService, CanBeAskedUntilTheAnswerIsThere)
{
    ipmi_response response{};
    uint32_t rc = RUK_MSG_NOT_ANSWERED;
    const uint32_t index = sent(9);
    EXPECT_TRUE(
        eventually([&] { return (rc = receive(index, 0, response)) != RUK_MSG_NOT_ANSWERED; }));
    EXPECT_EQ(0u, rc);
    EXPECT_TRUE(answers(response, 9));
}

TEST_F(MessageService, TellsOutstandingMessagesApart)
{
    std::vector<uint32_t> indices;
    for (uint32_t mark = 0; mark < 16; ++mark)
        indices.push_back(sent(mark));
    EXPECT_EQ(16u, std::set<uint32_t>(indices.begin(), indices.end()).size());
    for (uint32_t mark = 16; mark-- > 0;)
        EXPECT_TRUE(is_answered(indices[mark], mark));
}

TEST_F(MessageService, AnswersAnotherThreadThanTheSender)
{
    const uint32_t index = sent(10);
    EXPECT_TRUE(in_thread([=] { return is_answered(index, 10); }));
}

TEST_F(MessageService, AnswersWhenTheSendingThreadHasEnded)
{
    const uint32_t index = in_thread([] {
        attach_ruk_shm(); // for good, as for an asynchronous command
        return sent(11);
    });
    EXPECT_TRUE(is_answered(index, 11));
}

TEST_F(MessageService, ServesManyThreadsAtOnce)
{
    std::atomic<int> answered{0};
    std::vector<std::thread> threads;
    for (uint32_t thread = 0; thread < 8; ++thread)
        threads.emplace_back([&answered, thread] {
            for (uint32_t round = 0; round < 20; ++round) {
                const uint32_t mark = thread << 8 | round;
                attach_ruk_shm();
                answered += is_answered(sent(mark), mark);
                detach_ruk_shm();
            }
        });
    for (std::thread &each : threads)
        each.join();
    EXPECT_EQ(8 * 20, answered);
}

TEST_F(MessageService, NeverWritesPastTheCapacity)
{
    constexpr uint32_t header = offsetof(ipmi_response, data);
    for (const uint32_t capacity : {0u, 1u, header - 1, header, header + 1, 483u}) {
        uint8_t buffer[512];
        memset(buffer, 0xA5, sizeof buffer);
        uint32_t length = capacity;
        const uint32_t rc = receive_ruk_response(sent(11), 500, IPMI_COMPONENT, buffer, &length);
        EXPECT_EQ(capacity == 483, rc == 0) << "capacity " << capacity;
        const auto beyond = [](uint8_t byte) { return byte != 0xA5; };
        EXPECT_TRUE(std::none_of(buffer + capacity, std::end(buffer), beyond)) << capacity;
    }
}

TEST_F(MessageService, GivesBackTheAttachmentThatWasMadeLast)
{
    const uint32_t index = sent(12);
    attach_ruk_shm();
    detach_ruk_shm();
    EXPECT_TRUE(is_answered(index, 12));
}

TEST_F(MessageService, CountsAttachmentsBeyond16Bits)
{
    constexpr int many = 70000;
    int made = 0;
    while (made < many && attach_ruk_shm() == 0)
        ++made;
    EXPECT_EQ(many, made);
    EXPECT_TRUE(is_answered(sent(13), 13));
    for (; made > 0; --made)
        detach_ruk_shm();
    EXPECT_TRUE(is_answered(sent(14), 14));
}

const blade_location blade_3 = {3, 0, {0, 0}};
const blade_location blade_4_2 = {4, 2, {0, 0}};

TEST(BladeName, IsThereForNoBladeToo)
{
    EXPECT_NE(nullptr, ruk_blade_clt_to_str(nullptr));
}

TEST(BladeName, StaysAsItIsUntilTheSameThreadAsksAgain)
{
    const char *const name = ruk_blade_clt_to_str(&blade_3);
    const std::string as_it_was = name;
    in_thread([] { return *ruk_blade_clt_to_str(&blade_4_2); });
    EXPECT_EQ(as_it_was, name);
    EXPECT_NE(as_it_was, ruk_blade_clt_to_str(&blade_4_2));
}

} // namespace
