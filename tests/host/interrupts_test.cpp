// What happens to the blades of a real daemon, as a process reads it from the interrupt ring.

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <map>
#include <regex>
#include <thread>

#include "ring_reader.h"

namespace
{

using namespace tests;

constexpr char two_blades[] = "[[blade]]\nslot = 1\n[[blade]]\nslot = 2\n";

TEST(Interrupts, TellTheBladeTheEventAndTheEntryOfItsLog)
{
    in_own_process([] {
        const chassis_daemon served(two_blades);
        command(2, 0x0430, {0x10, 0x01, 40});
        const ipmi_interrupt interrupt = ring_reader().next();
        EXPECT_EQ(1u, interrupt.int_num);
        EXPECT_EQ(2, interrupt.location.slot_id);
        EXPECT_EQ(0, interrupt.location.sub_slot_id);
        imc_event_set expected{};
        imc_event_set_SET(25, &expected);
        EXPECT_EQ(0, memcmp(&expected, &interrupt.ies, sizeof expected));
        EXPECT_EQ(0u, interrupt.producer_08);
        EXPECT_EQ(0u, interrupt.producer_10);
        ipmi_response entry;
        EXPECT_EQ(0u, ask(2, 0x0A43, {0, 0, 0xFF, 0xFF, 0, 0xFF}, entry));
        EXPECT_EQ(16u, interrupt.data_len);
        EXPECT_EQ(0, memcmp(entry.data + 3, interrupt.data, 16));
    });
}

TEST(Interrupts, ComeInTheOrderOfTheConditions)
{
    in_own_process([] {
        const chassis_daemon served(two_blades);
        command(1, 0x0002, {0x00});
        command(2, 0x0430, {0x10, 0x01, 42});
        command(1, 0x0002, {0x01});
        const std::vector<told> expected = {{blade_event::powered_off, 1},
                                            {blade_event::non_critical_crossed, 2},
                                            {blade_event::critical_crossed, 2},
                                            {blade_event::powered_on, 1}};
        EXPECT_EQ(expected, ring_reader().next(4));
    });
}

TEST(Interrupts, AreNotPostedForWhatIsThereAtTheStart)
{
    in_own_process([] {
        const chassis_daemon served("[[blade]]\nslot = 1\nsel_entries = 512\n");
        ring_reader ring;
        EXPECT_EQ(0u, ring.last_number());
        reset(1);
        EXPECT_EQ((std::vector<told>{{blade_event::reset, 1}}), ring.next(1));
    });
}

TEST(Interrupts, OutliveTheDaemonThatPostedThem)
{
    in_own_process([] {
        chassis_daemon served(two_blades);
        reset(1);
        reset(2);
        EXPECT_EQ(0, served.stop(SIGTERM));
        served.start();
        reset(1);
        const std::vector<told> expected = {
            {blade_event::reset, 1}, {blade_event::reset, 2}, {blade_event::reset, 1}};
        ring_reader ring;
        EXPECT_EQ(expected, ring.next(3));
        EXPECT_EQ(3u, ring.last_number());
    });
}

std::atomic<unsigned> heard{0};

int hear(uint32_t, imc_event_info *info)
{
    if (info->event == static_cast<uint32_t>(blade_event::reset) && info->location.slot_id == 2)
        ++heard;
    return 0;
}

TEST(Interrupts, WakeAProcessThatRegisteredForTheirEvent)
{
    in_own_process([] {
        const chassis_daemon served(two_blades);
        imc_event_set wanted;
        imc_event_set_init(&wanted);
        imc_event_set_SET(static_cast<uint32_t>(blade_event::reset), &wanted);
        EXPECT_EQ(0u, ruk_ipmi_init());
        EXPECT_EQ(0u, ruk_register_imc_event_set(&wanted, hear));
        EXPECT_TRUE(eventually([] { // the callback thread takes a moment to begin
            reset(2);
            return heard != 0;
        }));
    });
}

TEST(Interrupts, ComeWhenABladeChangesByItselfThoughNobodyAsksAgain)
{
    in_own_process([] {
        const chassis_daemon served(two_blades);
        ipmi_response response;
        EXPECT_EQ(0u, ask(1, 0x0001, {}, response)); // it has been asked before, and waits
        command(1, 0x0002, {0x05});                  // shut down, which takes a second
        EXPECT_EQ((std::vector<told>{{blade_event::powered_off, 1}}), ring_reader().next(1));
    });
}

TEST(Interrupts, ThatCannotBeDeliveredHoldUpNoBlade)
{
    in_own_process([] {
        using namespace std::chrono;
        const chassis_daemon served(two_blades);
        mutex_obj ring_lock{};
        ASSERT_EQ(0u, acquire_mutex("ruk_mutex_ipmi", &ring_lock, 0));
        const auto begin = steady_clock::now();
        for (int i = 0; i < 50; ++i)
            reset(static_cast<uint8_t>(1 + i % 2));
        EXPECT_LT(steady_clock::now() - begin, milliseconds(900));
        release_mutex(&ring_lock);
        ring_reader ring;
        EXPECT_EQ(50u, ring.next(50).size());
        EXPECT_EQ(50u, ring.last_number());
    });
}

TEST(Interrupts, GoOnAfterOneWasLost)
{
    in_own_process([] {
        const chassis_daemon served(two_blades);
        mutex_obj ring_lock{};
        ASSERT_EQ(0u, acquire_mutex("ruk_mutex_ipmi", &ring_lock, 0));
        reset(1);
        std::this_thread::sleep_for(std::chrono::milliseconds(1300)); // longer than anybody waits
        release_mutex(&ring_lock);
        reset(2);
        EXPECT_EQ((std::vector<told>{{blade_event::reset, 2}}), ring_reader().next(1));
    });
}

TEST(Interrupts, HaveTheNamesThatTheirDescriptionGives)
{
    std::map<uint32_t, std::string> described;
    std::ifstream table(RUK_EVENTS_TABLE);
    const std::regex row("\\| ([0-9]+) \\| ([^|]+) \\| [^|]+ \\| [^|]+ \\|");
    std::smatch found;
    for (std::string line; std::getline(table, line);)
        if (std::regex_match(line, found, row))
            described[static_cast<uint32_t>(std::stoul(found[1]))] = found[2];
    EXPECT_EQ(14u, described.size());
    for (uint32_t event = 0; event <= IMC_EVENTS + 1; ++event) {
        const char *name = ruk::host::blade_event_name(event);
        EXPECT_EQ(described.count(event) != 0 ? described[event] : "(none)",
                  name ? name : "(none)");
    }
}

} // namespace
