// What the blade draws and has drawn. Its input is set, so that the numbers are known.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

using namespace std::chrono_literals;

class metered_blade : public parameter_blade
{
  public:
    // Two watts a count.
    void let_draw(uint8_t counts) { ask(0x04, 0x30, {0x38, 0x01, counts}); }
    void power(uint8_t action) { ask(0x00, 0x02, {action}); }
    bytes record() { return manager(0x9C, {0, 0}); }
    bytes reset_record() { return manager(0x9D, {0, 0, 0}); }
    uint8_t times_turned_on() { return manager(0x9B, {}).at(1); }
};

enum action : uint8_t { down, up, cycle, hard_reset };

TEST(simulated_power_meter, tells_present_minimum_maximum_average_and_energy)
{
    metered_blade blade;
    blade.let_draw(100);
    blade.reset_record();
    blade.let_pass(10min);
    blade.let_draw(200);
    blade.let_pass(10min);
    blade.let_draw(50);
    const bytes record = blade.record();
    ASSERT_EQ(record.size(), 25u);
    EXPECT_EQ(long_at(1, record), 100u) << "present";
    EXPECT_EQ(long_at(5, record), 100u) << "minimum";
    EXPECT_EQ(long_at(9, record), 400u) << "maximum";
    EXPECT_EQ(long_at(13, record), 300u) << "average";
    EXPECT_EQ(word_at(17, record), 400u) << "allocated";
    EXPECT_EQ(long_at(19, record), 360u) << "kilojoules";
    EXPECT_EQ(word_at(23, record), 20u) << "minutes";
}

TEST(simulated_power_meter, loses_nothing_of_the_time_between_requests_that_come_fast)
{
    metered_blade blade;
    blade.let_draw(100);
    blade.reset_record();
    for (int request = 0; request < 2000; ++request) {
        blade.let_pass(600us);
        blade.power(up);
    }
    EXPECT_EQ(long_at(13, blade.record()), 200u) << "average";
}

TEST(simulated_power_meter, counts_what_was_drawn_until_the_power_went_off)
{
    metered_blade blade;
    const uint32_t running = long_at(1, blade.record());
    blade.reset_record();
    blade.let_pass(10min);
    blade.power(down);
    blade.let_pass(10min);
    EXPECT_EQ(long_at(13, blade.record()), (running + 24) / 2) << "average";
}

TEST(simulated_power_meter, begins_anew_when_it_is_reset)
{
    metered_blade blade;
    blade.let_draw(200);
    blade.let_pass(1h);
    blade.let_draw(100);
    EXPECT_EQ(blade.reset_record(), (bytes{0x00}));
    const bytes record = blade.record();
    for (const size_t place : {1, 5, 9, 13})
        EXPECT_EQ(long_at(place, record), 200u);
    EXPECT_EQ(from(19, record), bytes(6));
}

TEST(simulated_power_meter, shows_that_the_draw_moves_with_time)
{
    metered_blade blade;
    const uint32_t before = long_at(1, blade.record());
    blade.let_pass(10s);
    EXPECT_NE(long_at(1, blade.record()), before);
    EXPECT_LT(long_at(5, blade.record()), long_at(9, blade.record()));
}

TEST(simulated_power_meter, shows_the_controllers_own_draw_alone_without_power)
{
    metered_blade blade;
    blade.power(down);
    EXPECT_EQ(long_at(1, blade.record()), 24u);
    EXPECT_EQ(blade.ask(0x04, 0x2D, {0x38}).at(1), 12) << "the sensor's reading";
    blade.power(up);
    EXPECT_GT(long_at(1, blade.record()), 200u);
}

TEST(simulated_power_meter, counts_its_own_draw_in_and_says_how_much_it_is)
{
    metered_blade blade;
    blade.let_draw(100);
    blade.reset_record();
    const bytes power = blade.manager(0x8F, {});
    EXPECT_EQ(power, (bytes{0x00, 0x90, 1, 220, 0, 200, 0, 0, 220, 0, 220, 0, 20, 1}));
    blade.power(down);
    EXPECT_EQ(blade.manager(0x8F, {}).at(13), 0);
}

TEST(simulated_power_cycles, count_how_often_the_power_came_on)
{
    metered_blade blade;
    EXPECT_EQ(blade.manager(0x9B, {}), (bytes{0x00, 1}));
    blade.power(down);
    blade.power(up);
    EXPECT_EQ(blade.times_turned_on(), 2);
    blade.power(hard_reset);
    EXPECT_EQ(blade.times_turned_on(), 2);
    blade.power(cycle);
    EXPECT_EQ(blade.times_turned_on(), 2);
    blade.let_pass(1s);
    EXPECT_EQ(blade.times_turned_on(), 3);
}

TEST(simulated_power_cycles, stop_counting_where_a_byte_ends)
{
    metered_blade blade;
    for (int i = 0; i < 300; ++i) {
        blade.power(down);
        blade.power(up);
    }
    EXPECT_EQ(blade.times_turned_on(), 255);
}

} // namespace

} // namespace chassisd::simulated
