// Many processes and threads at one daemon: every answer belongs to its request, and whoever dies
// takes nobody along.

#include <atomic>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "daemon.h"
#include "os_processes.h"
#include "platform/status.h"

namespace
{

using namespace tests;

constexpr char full_blades[] = "[[blade]]\nslot = 1\nsel_entries = 512\n"
                               "[[blade]]\nslot = 2\nsel_entries = 512\n"
                               "[[blade]]\nslot = 3\nsel_entries = 512\n"
                               "[[blade]]\nslot = 4\nfaults = { delay_ms = 1000 }\n";

// Exchanges with blades 1 to 3 in turn; the number of answers that were not the request's own.
unsigned mismatches(uint32_t first_mark, unsigned count)
{
    unsigned wrong = 0;
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t mark = first_mark + i;
        ipmi_request request = sel_entry_request(static_cast<uint8_t>(1 + mark % 3),
                                                 static_cast<uint16_t>(1 + mark % 512), mark);
        ipmi_response response = empty_response();
        if (get_ruk_ipmi_response(&request, &response, 3000) != 0 || !answers(response, request))
            ++wrong;
    }
    return wrong;
}

unsigned mismatches_of_threads(uint32_t first_mark, unsigned threads, unsigned count)
{
    std::vector<unsigned> wrong(threads, 0);
    std::vector<std::thread> running;
    for (unsigned i = 0; i < threads; ++i)
        running.emplace_back([&, i] { wrong[i] = mismatches(first_mark + i * count, count); });
    unsigned sum = 0;
    for (unsigned i = 0; i < threads; ++i) {
        running[i].join();
        sum += wrong[i];
    }
    return sum;
}

std::vector<pid_t> start_processes(unsigned processes, const std::function<int(unsigned)> &work)
{
    std::vector<pid_t> started;
    for (unsigned i = 0; i < processes; ++i) {
        const pid_t pid = fork();
        if (pid == 0)
            _exit(work(i));
        started.push_back(pid);
    }
    return started;
}

void expect_success(const std::vector<pid_t> &processes)
{
    for (const pid_t pid : processes) {
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_EQ(0, status) << "a process saw wrong answers, or none";
    }
}

TEST(Concurrency, EveryAnswerBelongsToItsRequestInManyProcessesAndThreads)
{
    const chassis_daemon served(full_blades);
    expect_success(start_processes(
        12, [](unsigned i) { return mismatches_of_threads(i << 20, 8, 250) == 0 ? 0 : 1; }));
}

TEST(Concurrency, ASlowBladeCostsTheOthersNothing)
{
    const chassis_daemon served(full_blades);
    const auto at_the_slow_one = start_processes(4, [](unsigned i) {
        ipmi_request request = sel_entry_request(4, 1, i);
        ipmi_response response = empty_response();
        return get_ruk_ipmi_response(&request, &response, 500) == 0 ? 0 : 1;
    });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(0u, mismatches(0, 300));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(900));
    expect_success(at_the_slow_one);
}

TEST(Concurrency, ClientsKilledInTheMiddleHurtNobody)
{
    const chassis_daemon served(full_blades);
    ASSERT_EQ(0u, mismatches(0, 10));
    const unsigned before = served.descriptors();
    for (int round = 0; round < 10; ++round) {
        const auto victims = start_processes(6, [](unsigned i) {
            for (;;)
                mismatches_of_threads(i << 20, 4, 1000);
            return 0;
        });
        EXPECT_EQ(0u, mismatches(7, 100));
        for (const pid_t pid : victims)
            kill(pid, SIGKILL);
        for (const pid_t pid : victims)
            waitpid(pid, nullptr, 0);
    }
    EXPECT_EQ(0u, mismatches(9, 300));
    EXPECT_TRUE(eventually([&] { return served.descriptors() == before; }))
        << served.descriptors() << " descriptors, " << before << " before";
}

TEST(Concurrency, ADaemonKilledUnderLoadGivesStatusesAndThenServesAgain)
{
    chassis_daemon served(full_blades);
    const shared<std::atomic<bool>> serves_for_good;
    const auto clients = start_processes(6, [&](unsigned i) {
        // Every exchange ends, with its own answer or with a status that tells why not.
        for (uint32_t mark = i << 20; !*serves_for_good; ++mark) {
            ipmi_request request = sel_entry_request(1, 1, mark);
            ipmi_response response = empty_response();
            const uint32_t rc = get_ruk_ipmi_response(&request, &response, 100);
            if (rc == 0 ? !answers(response, request)
                        : rc != RUK_MSG_NO_SERVICE && rc != RUK_MSG_SERVICE_GONE)
                return 1;
        }
        return mismatches(i << 20, 100) == 0 ? 0 : 2;
    });
    for (int round = 0; round < 5; ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        served.stop(SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        served.start();
    }
    *serves_for_good = true;
    expect_success(clients);
}

} // namespace
