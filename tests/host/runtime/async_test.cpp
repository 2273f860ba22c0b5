// Asynchronous commands by the thousand.

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

#include "daemon.h"
#include "platform/message_service.h"
#include "runtime_processes.h"

namespace
{

using namespace tests;
using namespace std::chrono_literals;

// Blades 1 and 2 answer; 3 takes its time, 4 never answers, 5 refuses everything, 6 is not there.
constexpr char chassis[] = R"(
[[blade]]
slot = 1
[[blade]]
slot = 2
[[blade]]
slot = 3
faults = { delay_ms = 5 }
[[blade]]
slot = 4
faults = { drop_every = 1 }
[[blade]]
slot = 5
faults = { completion_code = 0xC0 }
)";

constexpr unsigned threads = 4;
constexpr uint32_t each_sends = 2500;
constexpr uint32_t most_outstanding = 48; // of a thread

uint8_t blade_for(uint32_t count)
{
    if (count % 100 == 3)
        return 3;
    if (count % 200 == 4)
        return 4;
    if (count % 10 == 5)
        return 5;
    return count % 50 == 6 ? 6 : 1 + count % 2;
}

struct command {
    ipmi_request request;
    std::atomic<uint32_t> answered{0};
    std::atomic<bool> rightly{false};
};

std::vector<command> commands(size_t{threads} * each_sends);
std::atomic<uint32_t> outstanding[threads];

bool right(const ipmi_response &response, const ipmi_request &request)
{
    switch (request.location.slot_id) {
    case 4:
        return response.comp_code == RUK_MSG_NOT_ANSWERED && response.data_len == 0 &&
               response.netfn_cmd == request.netfn_cmd;
    case 5:
        return response.comp_code == 0xC0 && response.data_len == 1;
    case 6:
        return response.comp_code == 0x5009 && response.data_len == 0;
    default:
        return answers(response, request);
    }
}

void on_answer(ipmi_response *response)
{
    const uint32_t which = response->reserved_0c;
    command &one = commands.at(which);
    one.rightly = right(*response, one.request);
    ++one.answered;
    --outstanding[which / each_sends];
}

int send_many(unsigned thread)
{
    for (uint32_t count = 0; count < each_sends; ++count) {
        while (outstanding[thread] >= most_outstanding)
            pause_for(100us);
        const uint32_t which = thread * each_sends + count;
        ipmi_request &request = commands[which].request;
        request = sel_entry_request(blade_for(count), 1, which);
        ++outstanding[thread];
        const uint32_t timeout = request.location.slot_id == 4 ? 2 : 1000;
        if (send_ruk_ipmi_command(&request, on_answer, timeout) != 0)
            return 1;
    }
    return 0;
}

int send_from_all_threads()
{
    if (ruk_ipmi_init() != 0)
        return 2;
    std::atomic<int> failed{0};
    std::vector<std::thread> senders;
    for (unsigned thread = 0; thread < threads; ++thread)
        senders.emplace_back([&failed, thread] { failed += send_many(thread); });
    for (std::thread &each : senders)
        each.join();
    if (failed != 0)
        return 3;
    for (const std::atomic<uint32_t> &each : outstanding)
        if (!eventually([&] { return each == 0; }))
            return 4;
    pause_for(100ms); // for what comes once too often
    for (const command &each : commands)
        if (each.answered != 1 || !each.rightly)
            return 5;
    return 0;
}

} // namespace

TEST(AsynchronousCommands, AreEachAnsweredOnceUnderLoad)
{
    const chassis_daemon served(chassis);
    EXPECT_EQ(in_child(send_from_all_threads), 0);
}

TEST(AsynchronousCommands, AreAnsweredAfterTheirSenderHasEnded)
{
    const chassis_daemon served(chassis);
    EXPECT_EQ(in_child([] {
                  if (ruk_ipmi_init() != 0)
                      return 2;
                  command &one = commands[0];
                  outstanding[0] = 1;
                  one.request = sel_entry_request(3, 1, 0);
                  uint32_t status = 1;
                  std::thread([&] {
                      status = send_ruk_ipmi_command(&one.request, on_answer, 1000);
                  }).join();
                  if (status != 0)
                      return 3;
                  return eventually([&] { return one.answered == 1; }) && one.rightly ? 0 : 4;
              }),
              0);
}

TEST(AsynchronousCommands, DoNotDisturbTheExchangesOfTheSameThread)
{
    const chassis_daemon served(chassis);
    EXPECT_EQ(in_child([] {
                  if (ruk_ipmi_init() != 0)
                      return 2;
                  for (uint32_t which = 0; which < 200; ++which) {
                      command &one = commands[which];
                      ++outstanding[0];
                      one.request = sel_entry_request(1, 1, which);
                      ipmi_request other = sel_entry_request(2, 1, 77);
                      ipmi_response response = empty_response();
                      if (send_ruk_ipmi_command(&one.request, on_answer, 1000) != 0 ||
                          get_ruk_ipmi_response(&other, &response, 500) != 0 ||
                          !answers(response, other))
                          return 3;
                  }
                  return eventually([] { return outstanding[0] == 0; }) ? 0 : 4;
              }),
              0);
}

TEST(AsynchronousCommands, FailWithoutACallbackWhenNobodyServes)
{
    chassis_daemon served(chassis);
    served.stop(SIGTERM);
    EXPECT_EQ(in_child([] {
                  if (ruk_ipmi_init() != 0)
                      return 2;
                  ipmi_request request = sel_entry_request(1, 1, 0);
                  return send_ruk_ipmi_command(&request, on_answer, 10) == 0x5001 ? 0 : 3;
              }),
              0);
}

TEST(AsynchronousCommands, CanBeSentAgainInAForkedChild)
{
    const chassis_daemon served(chassis);
    const auto send_one = [] {
        command &one = commands[0];
        one.answered = 0;
        outstanding[0] = 1;
        one.request = sel_entry_request(1, 1, 0);
        if (ruk_ipmi_init() != 0 || send_ruk_ipmi_command(&one.request, on_answer, 1000) != 0)
            return 2;
        return eventually([&] { return one.answered == 1; }) && one.rightly ? 0 : 3;
    };
    EXPECT_EQ(in_child([&] {
                  const int mine = send_one();
                  return mine != 0 ? mine : in_child(send_one) + 10;
              }),
              10);
}
