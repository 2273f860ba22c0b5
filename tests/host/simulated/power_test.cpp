// The blade's power: what Chassis Control does to it, whom it tells, and who may press its buttons.

#include <thread>

#include "sdr_blade.h"

namespace chassisd::simulated
{

namespace
{

using namespace std::chrono_literals;

enum action : uint8_t { down, up, cycle, hard_reset, diagnostic_interrupt, soft_shutdown };

class power_blade : public sdr_blade
{
  public:
    using sdr_blade::sdr_blade;

    bytes control(uint8_t action) { return ask(0x00, 0x02, {action}); }
    bytes status() { return ask(0x00, 0x01); }
    bytes lock_buttons(uint8_t buttons) { return ask(0x00, 0x0A, {buttons}); }
    bool is_on() { return status().at(1) & 0x01; }
    uint16_t power_unit() { return word_at(3, ask(0x04, 0x2D, {0x39})); }
};

using events = std::vector<blade_event>;

TEST(simulated_power, is_on_at_the_start_and_would_come_back_on)
{
    power_blade blade;
    EXPECT_EQ(blade.status(), (bytes{0x00, 0x41, 0x00, 0x40, 0xF0}));
    EXPECT_EQ(blade.events(), events{});
}

TEST(simulated_power, goes_off_and_on_by_command)
{
    power_blade blade;
    EXPECT_EQ(blade.control(down), (bytes{0x00}));
    EXPECT_FALSE(blade.is_on());
    EXPECT_EQ(blade.control(up), (bytes{0x00}));
    EXPECT_TRUE(blade.is_on());
    EXPECT_EQ(blade.status().at(2), 0x10) << "the last power event was a command";
    EXPECT_EQ(blade.events(), (events{blade_event::powered_off, blade_event::powered_on}));
}

TEST(simulated_power, goes_off_a_second_after_the_system_is_asked_to_shut_down)
{
    power_blade blade;
    EXPECT_EQ(blade.control(soft_shutdown), (bytes{0x00}));
    blade.let_pass(999ms);
    EXPECT_TRUE(blade.is_on());
    EXPECT_EQ(blade.events(), events{});
    blade.let_pass(1ms);
    EXPECT_FALSE(blade.is_on());
    EXPECT_EQ(blade.events(), (events{blade_event::powered_off}));
}

TEST(simulated_power, that_was_asked_twice_to_shut_down_is_off_when_the_first_would_have_it)
{
    power_blade blade;
    blade.control(soft_shutdown);
    blade.let_pass(600ms);
    EXPECT_EQ(blade.control(soft_shutdown), (bytes{0x00}));
    blade.let_pass(400ms);
    EXPECT_FALSE(blade.is_on());
    blade.let_pass(1h);
    EXPECT_FALSE(blade.is_on());
}

TEST(simulated_power, forgets_a_shutdown_when_the_system_is_reset_under_it)
{
    power_blade blade;
    blade.control(soft_shutdown);
    blade.control(hard_reset);
    blade.let_pass(1h);
    EXPECT_TRUE(blade.is_on());
}

TEST(simulated_power, that_is_as_it_should_be_already_is_no_event)
{
    power_blade blade;
    EXPECT_EQ(blade.control(up), (bytes{0x00}));
    EXPECT_EQ(blade.events(), events{});
    blade.control(down);
    blade.events();
    EXPECT_EQ(blade.control(down), (bytes{0x00}));
    EXPECT_EQ(blade.events(), events{});
}

TEST(simulated_power, is_off_for_a_second_in_a_cycle)
{
    power_blade blade;
    EXPECT_EQ(blade.control(cycle), (bytes{0x00}));
    blade.let_pass(999ms);
    EXPECT_FALSE(blade.is_on());
    EXPECT_EQ(blade.control(cycle), (bytes{0xD5}));
    blade.let_pass(1ms);
    EXPECT_TRUE(blade.is_on());
    EXPECT_EQ(blade.events(), (events{blade_event::power_cycled}));
}

TEST(simulated_power, stays_off_when_a_cycle_is_broken_off)
{
    power_blade blade;
    blade.control(cycle);
    blade.control(down);
    blade.let_pass(1h);
    EXPECT_FALSE(blade.is_on());
    EXPECT_EQ(blade.events(), (events{blade_event::power_cycled}));
}

TEST(simulated_power, stays_on_through_a_reset)
{
    power_blade blade;
    EXPECT_EQ(blade.control(hard_reset), (bytes{0x00}));
    EXPECT_TRUE(blade.is_on());
    EXPECT_EQ(blade.events(), (events{blade_event::reset}));
}

TEST(simulated_power, changes_by_itself_when_nobody_asks_anything)
{
    std::vector<blade_event> told;
    const auto blade = make_simulated_blade(
        {}, 1, 0, [&](blade_event event, const bytes &) { told.push_back(event); });
    EXPECT_EQ(blade->idle_period(), 0ms);
    blade->execute({0x00, 0, 0x02, {soft_shutdown}});
    EXPECT_GT(blade->idle_period(), 0ms);
    EXPECT_LE(blade->idle_period(), 1s);
    std::this_thread::sleep_for(blade->idle_period());
    blade->idle();
    EXPECT_EQ(told, (events{blade_event::powered_off}));
    EXPECT_EQ(blade->idle_period(), 0ms);
}

TEST(simulated_power, cannot_be_cycled_reset_or_shut_down_when_it_is_off)
{
    power_blade blade;
    blade.control(down);
    blade.events();
    for (const uint8_t action : bytes{cycle, hard_reset, soft_shutdown})
        EXPECT_EQ(blade.control(action), (bytes{0xD5}));
    EXPECT_FALSE(blade.is_on());
    EXPECT_EQ(blade.events(), events{});
}

TEST(simulated_power, refuses_what_it_does_not_know)
{
    power_blade blade;
    for (const uint8_t action : bytes{diagnostic_interrupt, 0x06, 0x0F, 0x11, 0xFF})
        EXPECT_EQ(blade.control(action), (bytes{0xCC}));
    EXPECT_TRUE(blade.is_on());
    EXPECT_EQ(blade.events(), events{});
}

TEST(simulated_power, shows_in_the_sensor_of_the_power_unit)
{
    power_blade blade;
    EXPECT_EQ(blade.power_unit(), 0x8000);
    blade.control(down);
    EXPECT_EQ(blade.power_unit(), 0x8001) << "state 0: off";
    blade.control(up);
    EXPECT_EQ(blade.power_unit(), 0x8000);
}

struct change {
    std::vector<uint8_t> actions;
    bytes event; // sensor type, sensor, event type, data
};

TEST(simulated_power, leaves_an_entry_in_the_log_and_alerts_the_chassis_with_it)
{
    const change changes[] = {
        {{down}, {0x09, 0x39, 0x6F, 0x00, 0xFF, 0xFF}},
        {{down, up}, {0x09, 0x39, 0xEF, 0x00, 0xFF, 0xFF}},
        {{cycle}, {0x09, 0x39, 0x6F, 0x01, 0xFF, 0xFF}},
        {{hard_reset}, {0x1D, 0x5B, 0x6F, 0x01, 0xFF, 0xFF}},
    };
    for (const change &change : changes) {
        power_blade blade;
        for (const uint8_t action : change.actions)
            blade.control(action);
        EXPECT_EQ(from(10, blade.last_entry()), change.event);
        EXPECT_EQ(blade.alerts().back().record, blade.last_entry());
    }
}

TEST(simulated_power_button, can_be_locked_and_unlocked)
{
    power_blade blade;
    EXPECT_EQ(blade.lock_buttons(0x01), (bytes{0x00}));
    EXPECT_EQ(from(3, blade.status()), (bytes{0x40, 0xF1}));
    EXPECT_EQ(blade.lock_buttons(0x00), (bytes{0x00}));
    EXPECT_EQ(from(3, blade.status()), (bytes{0x40, 0xF0}));
}

TEST(simulated_power_button, locked_with_the_reset_button_locks_the_panel)
{
    power_blade blade;
    blade.lock_buttons(0x02);
    EXPECT_EQ(from(3, blade.status()), (bytes{0x40, 0xF2}));
    blade.lock_buttons(0x0F);
    EXPECT_EQ(from(3, blade.status()), (bytes{0x42, 0xFF}));
}

TEST(simulated_power_button, stays_locked_through_a_power_cycle_and_does_not_hinder_commands)
{
    power_blade blade;
    blade.lock_buttons(0x01);
    for (const uint8_t action : bytes{down, up, cycle})
        EXPECT_EQ(blade.control(action), (bytes{0x00}));
    EXPECT_EQ(from(3, blade.status()), (bytes{0x40, 0xF1}));
}

TEST(simulated_power_button, is_one_of_four)
{
    power_blade blade;
    blade.lock_buttons(0x01);
    EXPECT_EQ(blade.lock_buttons(0x10), (bytes{0xCC}));
    EXPECT_EQ(blade.lock_buttons(0x80), (bytes{0xCC}));
    EXPECT_EQ(blade.status().at(4), 0xF1);
}

TEST(simulated_power, names_sensors_that_its_records_describe)
{
    power_blade blade;
    std::vector<uint8_t> described;
    for (const bytes &record : blade.records_of_type(0x02))
        described.push_back(parsed_sdr(record).sensor_number());
    for (const uint8_t sensor : bytes{0x39, 0x5B})
        EXPECT_EQ(std::count(described.begin(), described.end(), sensor), 1);
}

} // namespace

} // namespace chassisd::simulated
