// The message service as a client process sees it: the platform's functions against a real daemon.

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "daemon.h"
#include "platform/message_service.h"
#include "platform/os.h"
#include "platform/platform_info.h"
#include "platform/status.h"

namespace
{

using namespace tests;

constexpr char one_blade[] = "[[blade]]\nslot = 1\n";
constexpr char slow_blade[] = "[[blade]]\nslot = 1\nfaults = { delay_ms = 800 }\n";

// Sends a request for a SEL entry and returns the message's index.
uint32_t send_request(const ipmi_request &request)
{
    uint32_t index = 0;
    EXPECT_EQ(0u, send_ruk_command(4, &request, request.data_len + 0x18, 0, &index));
    EXPECT_NE(0u, index);
    return index;
}

uint32_t exchange(uint32_t mark = 7, uint32_t timeout = 500)
{
    ipmi_request request = sel_entry_request(1, 1, mark);
    ipmi_response response = empty_response();
    const uint32_t rc = get_ruk_ipmi_response(&request, &response, timeout);
    if (rc == 0) {
        EXPECT_TRUE(answers(response, request));
    }
    return rc;
}

uint32_t receive(uint32_t index, uint32_t timeout, ipmi_response &response)
{
    uint32_t length = sizeof response;
    return receive_ruk_response(index, timeout, 4, &response, &length);
}

TEST(MessageService, AnswersTheRequestThatWasSent)
{
    const chassis_daemon served(one_blade);
    EXPECT_EQ(0u, exchange());
}

TEST(MessageService, SaysSoWhenNobodyServes)
{
    chassis_daemon served(one_blade);
    served.stop(SIGTERM);
    EXPECT_EQ(RUK_MSG_NO_SERVICE, exchange());
}

TEST(MessageService, KnowsOneComponentOnly)
{
    uint32_t index = 0;
    uint32_t length = 512;
    void *region = nullptr;
    ipmi_request request = sel_entry_request(1, 1, 0);
    ipmi_response response{};
    EXPECT_EQ(RUK_MSG_UNKNOWN_COMPONENT, send_ruk_command(5, &request, 0x1E, 0, &index));
    EXPECT_EQ(RUK_MSG_UNKNOWN_COMPONENT, receive_ruk_response(1, 1, 5, &response, &length));
    EXPECT_EQ(RUK_MSG_UNKNOWN_COMPONENT, find_component_shm(5, &region));
    EXPECT_EQ(nullptr, region);
}

TEST(MessageService, RefusesRecordsThatAreTooShortOrTooLong)
{
    uint32_t index = 0;
    const uint8_t record[600] = {};
    EXPECT_EQ(RUK_MSG_BAD_LENGTH, send_ruk_command(4, record, 0x17, 0, &index));
    EXPECT_EQ(RUK_MSG_BAD_LENGTH, send_ruk_command(4, record, 513, 0, &index));
}

TEST(MessageService, RefusesAnIndexThatIsNotOutstanding)
{
    const chassis_daemon served(one_blade);
    ipmi_response response{};
    EXPECT_EQ(RUK_MSG_UNKNOWN_INDEX, receive(0, 1, response));
    const uint32_t index = send_request(sel_entry_request(1, 1, 0));
    EXPECT_EQ(0u, receive(index, 500, response));
    EXPECT_EQ(RUK_MSG_UNKNOWN_INDEX, receive(index, 1, response));
}

TEST(MessageService, NamesABladeThatIsNotThere)
{
    const chassis_daemon served(one_blade);
    ipmi_response response{};
    EXPECT_EQ(RUK_MSG_NO_BLADE, receive(send_request(sel_entry_request(9, 1, 0)), 500, response));
}

TEST(MessageService, WaitsAsLongAsAskedAndCanBeAskedAgain)
{
    const chassis_daemon served(slow_blade);
    ipmi_response response{};
    const auto begin = std::chrono::steady_clock::now();
    const uint32_t index = send_request(sel_entry_request(1, 1, 3));
    EXPECT_EQ(RUK_MSG_NOT_ANSWERED, receive(index, 0, response));
    EXPECT_EQ(RUK_MSG_NOT_ANSWERED, receive(index, 5, response));
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited, std::chrono::milliseconds(50));
    EXPECT_LT(waited, std::chrono::milliseconds(700));
    EXPECT_EQ(0u, receive(index, OS_WAIT_FOREVER, response));
    EXPECT_EQ(3u, response.reserved_0c);
}

TEST(MessageService, AWaitIsNotCutShortNorStretchedBySignals)
{
    const chassis_daemon served(slow_blade);
    struct sigaction action {
    };
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, nullptr);
    ipmi_response response{};
    const uint32_t index = send_request(sel_entry_request(1, 1, 3));
    std::atomic<bool> over{false};
    const pthread_t waiting = pthread_self();
    std::thread pestering([&] {
        while (!over) {
            pthread_kill(waiting, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
        }
    });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(RUK_MSG_NOT_ANSWERED, receive(index, 10, response));
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(0u, receive(index, 500, response));
    over = true;
    pestering.join();
    EXPECT_GE(waited, std::chrono::milliseconds(95));
    EXPECT_LT(waited, std::chrono::milliseconds(700));
}

TEST(MessageService, ForgetsWhatWasUnansweredWhenItsSenderDetaches)
{
    const chassis_daemon served(slow_blade);
    ipmi_response response{};
    attach_ruk_shm();
    const uint32_t kept = send_request(sel_entry_request(1, 1, 1));
    attach_ruk_shm();
    const uint32_t dropped = send_request(sel_entry_request(1, 2, 2));
    detach_ruk_shm();
    EXPECT_EQ(RUK_MSG_UNKNOWN_INDEX, receive(dropped, 100, response));
    EXPECT_EQ(0u, receive(kept, 500, response));
    EXPECT_EQ(1u, response.reserved_0c);
    detach_ruk_shm();
}

TEST(MessageService, AnAnswerThatComesTooLateReachesNobody)
{
    const chassis_daemon served(slow_blade);
    EXPECT_EQ(RUK_MSG_NOT_ANSWERED, exchange(1, 1));
    EXPECT_EQ(RUK_MSG_NOT_ANSWERED, exchange(2, 1));
    EXPECT_EQ(0u, exchange(3, 500));
}

TEST(MessageService, NeverWritesPastTheCapacity)
{
    const chassis_daemon served(one_blade);
    constexpr uint32_t exact = 0x1C + 19;
    uint8_t buffer[512];
    for (const uint32_t capacity : {0u, 1u, 0x1Cu, exact - 1, exact}) {
        memset(buffer, 0xA5, sizeof buffer);
        uint32_t length = capacity;
        const uint32_t index = send_request(sel_entry_request(1, 1, 0));
        const uint32_t rc = receive_ruk_response(index, 500, 4, buffer, &length);
        EXPECT_EQ(capacity < exact ? uint32_t{RUK_MSG_ANSWER_TOO_LONG} : 0u, rc);
        EXPECT_EQ(capacity, length);
        for (uint32_t at = rc == 0 ? capacity : 0; at < sizeof buffer; ++at)
            ASSERT_EQ(0xA5, buffer[at]) << "capacity " << capacity << ", byte " << at;
    }
}

TEST(MessageService, AnAnswerLongerThanARecordIsDropped)
{
    const chassis_daemon served("[[blade]]\nslot = 1\nfaults = { oversize_to = 900 }\n");
    EXPECT_EQ(RUK_MSG_ANSWER_TOO_LONG, exchange());
}

TEST(MessageService, ALimitedNumberOfMessagesIsOutstandingAtOnce)
{
    const chassis_daemon served(slow_blade);
    attach_ruk_shm();
    const ipmi_request request = sel_entry_request(1, 1, 0);
    uint32_t index = 0;
    uint32_t sent = 0;
    uint32_t rc = 0;
    while (sent < 1000 && (rc = send_ruk_command(4, &request, 0x1E, 0, &index)) == 0)
        ++sent;
    EXPECT_EQ(RUK_MSG_TOO_MANY, rc);
    EXPECT_EQ(256u, sent);
    detach_ruk_shm();
    attach_ruk_shm();
    EXPECT_EQ(0u, send_ruk_command(4, &request, 0x1E, 0, &index));
    detach_ruk_shm();
}

TEST(MessageService, AMessageThatNobodyAsksForAnyMoreGivesWayWhenThereIsNoRoom)
{
    const chassis_daemon served(slow_blade);
    attach_ruk_shm();
    const ipmi_request request = sel_entry_request(1, 1, 7);
    std::vector<uint32_t> sent(256);
    for (uint32_t &each : sent)
        each = send_request(request);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    ipmi_response response = empty_response();
    EXPECT_EQ(0u, receive(sent[0], 0, response)); // answered meanwhile

    const uint32_t free_slot = send_request(request);
    const uint32_t in_place_of_another = send_request(request);
    EXPECT_EQ(RUK_MSG_UNKNOWN_INDEX, receive(sent[1], 0, response));
    EXPECT_EQ(RUK_MSG_NOT_ANSWERED, receive(free_slot, 0, response));
    EXPECT_EQ(RUK_MSG_NOT_ANSWERED, receive(in_place_of_another, 0, response));
    detach_ruk_shm();
}

TEST(MessageService, AProcessThatForksHasConnectionsOfItsOwn)
{
    const chassis_daemon served(slow_blade);
    attach_ruk_shm();
    const uint32_t index = send_request(sel_entry_request(1, 1, 11));
    EXPECT_EQ(0, in_child([&] {
                  ipmi_response response{};
                  if (receive(index, 1, response) != RUK_MSG_UNKNOWN_INDEX)
                      return 1;
                  return exchange(12) == 0 ? 0 : 2;
              }));
    ipmi_response response{};
    EXPECT_EQ(0u, receive(index, 500, response));
    EXPECT_EQ(11u, response.reserved_0c);
    detach_ruk_shm();
}

TEST(MessageService, ADaemonThatDiesInAnExchangeIsNoticedAtOnce)
{
    chassis_daemon served(slow_blade);
    std::thread killer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        served.stop(SIGKILL);
    });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(RUK_MSG_SERVICE_GONE, exchange());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    killer.join();
}

TEST(MessageService, TheNextCallWorksWhenTheDaemonIsBack)
{
    chassis_daemon served(one_blade);
    EXPECT_EQ(0u, exchange());
    for (const int signal : {SIGKILL, SIGTERM}) {
        served.stop(signal);
        EXPECT_EQ(RUK_MSG_NO_SERVICE, exchange());
        served.start();
        EXPECT_EQ(0u, exchange());
    }
}

TEST(MessageService, ExchangesReuseTheirConnection)
{
    const chassis_daemon served(one_blade);
    exchange();
    const unsigned before = served.descriptors();
    for (uint32_t i = 0; i < 500; ++i)
        ASSERT_EQ(0u, exchange(i));
    EXPECT_EQ(before, served.descriptors());
}

TEST(MessageService, TheSharedRegionOutlivesTheDaemon)
{
    chassis_daemon served("[chassis]\nslots = 20\nplatform_type = 0x21\n[[blade]]\nslot = 1\n");
    EXPECT_EQ(0, in_child([&] {
                  void *region = nullptr;
                  if (find_component_shm(4, &region) != 0 || !region)
                      return 1;
                  const uint32_t *info = _gPlatInfo();
                  if (info[PLAT_INFO_TYPE] != 0x21 || info[PLAT_INFO_SLOTS] != 20)
                      return 2;
                  memcpy(region, "kept", 4);
                  return 0;
              }));
    served.stop(SIGKILL);
    served.start();
    EXPECT_EQ(0, in_child([] {
                  void *region = nullptr;
                  find_component_shm(4, &region);
                  return region && memcmp(region, "kept", 4) == 0 ? 0 : 1;
              }));
}

TEST(MessageService, BladesAreNamedBySlotAndSubSlot)
{
    const blade_location whole = {3, 0, {0, 0}};
    const blade_location part = {3, 2, {0, 0}};
    EXPECT_STREQ("3", ruk_blade_clt_to_str(&whole));
    EXPECT_STREQ("3.2", ruk_blade_clt_to_str(&part));
    EXPECT_STREQ("(none)", ruk_blade_clt_to_str(nullptr));
}

TEST(MessageService, EveryStatusOfItsOwnHasAText)
{
    for (uint32_t status = RUK_MSG_NO_SERVICE; status <= RUK_MSG_ACCESS; ++status)
        EXPECT_NE(nullptr, ruk_msg_status_text(status)) << std::hex << status;
    EXPECT_EQ(nullptr, ruk_msg_status_text(0));
    EXPECT_EQ(nullptr, ruk_msg_status_text(IPMI_ERR_INVALID_PARAM));
}

} // namespace
