// Blades that come and go while the daemon runs: it reads its file again when it is sent SIGHUP.

#include <atomic>
#include <chrono>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "platform/platform_info.h"
#include "platform/status.h"
#include "ring_reader.h"

namespace
{

using namespace tests;

std::string blade(int slot, const std::string &more = "")
{
    return "[[blade]]\nslot = " + std::to_string(slot) + "\n" + more + "\n";
}

// Whether a blade is there, as its status tells.
bool answers(uint8_t slot)
{
    ipmi_response response;
    const uint32_t rc = ask(slot, 0x0601, {}, response);
    EXPECT_TRUE(rc == 0 || rc == RUK_MSG_NO_BLADE) << rc;
    return rc == 0;
}

uint32_t log_entries(uint8_t slot)
{
    ipmi_response response;
    EXPECT_EQ(0u, ask(slot, 0x0A40, {}, response));
    return response.data[2];
}

TEST(Reload, InsertsABladeThatIsNew)
{
    in_own_process([] {
        chassis_daemon served(blade(1));
        EXPECT_FALSE(answers(2));
        served.reconfigure(blade(1) + blade(2));
        const ipmi_interrupt interrupt = ring_reader().next();
        EXPECT_EQ(1u, imc_event_set_NEXT_ASSERTED(0, &interrupt.ies));
        EXPECT_EQ(2, interrupt.location.slot_id);
        EXPECT_EQ(0u, interrupt.data_len);
        EXPECT_TRUE(answers(2));
    });
}

TEST(Reload, RemovesABladeThatIsNotThereAnyMore)
{
    in_own_process([] {
        chassis_daemon served(blade(1) + blade(2, "sub_slot = 3"));
        served.reconfigure(blade(1));
        const ipmi_interrupt interrupt = ring_reader().next();
        EXPECT_EQ(2u, imc_event_set_NEXT_ASSERTED(0, &interrupt.ies));
        EXPECT_EQ(2, interrupt.location.slot_id);
        EXPECT_EQ(3, interrupt.location.sub_slot_id);
        EXPECT_FALSE(answers(2));
    });
}

TEST(Reload, ReplacesABladeThatChangedAndLeavesTheOthersAsTheyAre)
{
    in_own_process([] {
        chassis_daemon served(blade(1, "sel_entries = 5") + blade(2, "sel_entries = 5"));
        reset(1);
        reset(2);
        served.reconfigure(blade(2, "sel_entries = 9") + blade(1, "sel_entries = 5"));
        const std::vector<told> expected = {{blade_event::reset, 1},
                                            {blade_event::reset, 2},
                                            {blade_event::removed, 2},
                                            {blade_event::inserted, 2}};
        EXPECT_EQ(expected, ring_reader().next(4));
        EXPECT_EQ(6u, log_entries(1)) << "with the reset's own";
        EXPECT_EQ(9u, log_entries(2)) << "a new blade";
    });
}

TEST(Reload, TellsTheNewNumberOfSlots)
{
    in_own_process([] {
        chassis_daemon served("[chassis]\nslots = 4\n" + blade(1));
        EXPECT_EQ(4u, _gPlatInfo()[PLAT_INFO_SLOTS]);
        served.reconfigure("[chassis]\nslots = 20\n" + blade(1));
        EXPECT_TRUE(eventually([] { return _gPlatInfo()[PLAT_INFO_SLOTS] == 20; }));
    });
}

// The statuses of requests to a blade that answers none of them, while `meanwhile` happens.
std::vector<uint32_t> statuses_of_the_waiting(uint8_t slot, const std::function<void()> &meanwhile)
{
    std::vector<uint32_t> statuses(3);
    std::vector<std::thread> waiting;
    for (uint32_t &status : statuses)
        waiting.emplace_back([slot, &status] {
            ipmi_response response;
            status = ask(slot, 0x0601, {}, response, 2000);
        });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    meanwhile();
    for (std::thread &each : waiting)
        each.join();
    return statuses;
}

TEST(Reload, AnswersAtOnceWhoeverWaitsForABladeThatIsRemoved)
{
    in_own_process([] {
        chassis_daemon served(blade(1) + blade(2, "faults = { delay_ms = 60000 }"));
        const auto begin = std::chrono::steady_clock::now();
        const auto statuses = statuses_of_the_waiting(2, [&] { served.reconfigure(blade(1)); });
        EXPECT_EQ(std::vector<uint32_t>(3, RUK_MSG_NO_BLADE), statuses);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    });
}

// A controller that never answers: a bridge spends its whole time-out on it.
class silent_controller
{
  public:
    silent_controller() : fd_(socket(AF_INET, SOCK_DGRAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(0, bind(fd_, reinterpret_cast<sockaddr *>(&address), size));
        EXPECT_EQ(0, getsockname(fd_, reinterpret_cast<sockaddr *>(&address), &size));
        port_ = ntohs(address.sin_port);
    }
    ~silent_controller() { close(fd_); }
    silent_controller(const silent_controller &) = delete;
    silent_controller &operator=(const silent_controller &) = delete;

    std::string bridge() const
    {
        return "kind = \"bridge\"\nhost = \"127.0.0.1\"\ntimeout_ms = 8000\nport = " +
               std::to_string(port_);
    }

  private:
    int fd_;
    uint16_t port_;
};

TEST(Reload, DoesNotWaitForABridgeThatIsBusy)
{
    in_own_process([] {
        const silent_controller silent;
        chassis_daemon served(blade(1) + blade(2, silent.bridge()));
        const auto begin = std::chrono::steady_clock::now();
        const auto statuses = statuses_of_the_waiting(2, [&] { served.reconfigure(blade(1)); });
        EXPECT_EQ(std::vector<uint32_t>(3, RUK_MSG_NO_BLADE), statuses);
        EXPECT_TRUE(answers(1));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    });
}

// Asks one blade until told to end; how often something came that should not have.
class load
{
  public:
    load(uint8_t slot, bool may_be_gone)
        : thread_([=] {
              for (uint32_t mark = 0; !ending_; ++mark) {
                  ipmi_request request = sel_entry_request(slot, 1, mark);
                  ipmi_response response = empty_response();
                  const uint32_t rc = get_ruk_ipmi_response(&request, &response, 1000);
                  if (rc == 0 ? !tests::answers(response, request)
                              : !may_be_gone || rc != RUK_MSG_NO_BLADE)
                      ++wrong_;
                  ++exchanges_;
              }
          })
    {
    }

    unsigned end()
    {
        ending_ = true;
        thread_.join();
        EXPECT_GT(exchanges_, 100u);
        return wrong_;
    }

  private:
    std::atomic<bool> ending_{false};
    std::atomic<unsigned> exchanges_{0};
    std::atomic<unsigned> wrong_{0};
    std::thread thread_;
};

TEST(Reload, UnderLoadDisturbsNoOtherBlade)
{
    in_own_process([] {
        chassis_daemon served(blade(1) + blade(2));
        load steady(1, false);
        load coming_and_going(3, true);
        ring_reader ring;
        for (int round = 0; round < 30; ++round) {
            served.reconfigure(blade(1) + blade(2) + blade(3));
            EXPECT_EQ((std::vector<told>{{blade_event::inserted, 3}}), ring.next(1));
            served.reconfigure(blade(1) + blade(2));
            EXPECT_EQ((std::vector<told>{{blade_event::removed, 3}}), ring.next(1));
        }
        EXPECT_EQ(0u, steady.end());
        EXPECT_EQ(0u, coming_and_going.end());
    });
}

} // namespace
