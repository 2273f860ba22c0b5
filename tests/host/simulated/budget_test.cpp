// The power and the cooling that the chassis grants the blade.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

class budget_blade : public parameter_blade
{
  public:
    bytes set_efficiency(const bytes &head) { return manager(0xC0, joined(head, bytes(12))); }
    bytes power() { return manager(0x8F, {}); }

    uint16_t allocated() { return word_at(1, power()); }
    uint16_t drawn() { return static_cast<uint16_t>(word_at(3, power()) - power().at(12)); }
    uint16_t drawn_from_supplies() { return word_at(5, power()); }
    bool is_throttled() { return power().at(7) != 0; }

    bytes fan_speed() { return manager(0x8C, {}); }
    void let_inlet_have(uint8_t celsius) { ask(0x04, 0x30, {0x10, 0x01, celsius}); }
};

TEST(simulated_efficiency, makes_the_blade_draw_more_from_the_supplies)
{
    budget_blade blade;
    EXPECT_EQ(blade.drawn_from_supplies(), blade.drawn());
    EXPECT_EQ(blade.set_efficiency({0, 0, 0x88, 0x13}), (bytes{0x00})) << "one half";
    EXPECT_EQ(blade.drawn_from_supplies(), 2 * blade.drawn());
    EXPECT_EQ(blade.set_efficiency({1, 0, 0, 0}), (bytes{0x00}));
    EXPECT_EQ(blade.drawn_from_supplies(), blade.drawn());
}

TEST(simulated_efficiency, of_nothing_or_more_than_all_is_refused)
{
    budget_blade blade;
    EXPECT_EQ(blade.set_efficiency({0, 0, 0, 0}), (bytes{0xC9}));
    EXPECT_EQ(blade.set_efficiency({1, 0, 1, 0}), (bytes{0xC9}));
    EXPECT_EQ(blade.set_efficiency({2, 0, 0, 0}), (bytes{0xC9}));
    EXPECT_EQ(blade.set_efficiency({0, 0, 0x10, 0x27}), (bytes{0xC9}));
    EXPECT_EQ(blade.drawn_from_supplies(), blade.drawn());
}

TEST(simulated_allocation, is_what_the_chassis_grants)
{
    budget_blade blade;
    EXPECT_EQ(blade.allocated(), 400);
    EXPECT_EQ(blade.manager(0x87, {0, 0, 0x2C, 0x01, 0}), (bytes{0x00, 0x00}));
    EXPECT_EQ(blade.allocated(), 300);
    EXPECT_EQ(blade.manager(0x87, {0, 0, 0xF4, 0x01, 0, 0}), (bytes{0x00, 0x00}));
    EXPECT_EQ(blade.allocated(), 500);
    EXPECT_EQ(blade.manager(0x87, {2, 1, 0xF4, 0x01, 0, 3}), (bytes{0x00, 0x02}));
    EXPECT_EQ(blade.allocated(), 0) << "refused";
}

TEST(simulated_throttling, of_processors_tells_what_it_is_and_was)
{
    budget_blade blade;
    EXPECT_EQ(blade.manager(0x8B, {30, 0, 0}), (bytes{0x00, 30, 0}));
    EXPECT_TRUE(blade.is_throttled());
    EXPECT_EQ(blade.manager(0x8B, {101, 0, 0}), (bytes{0xC9}));
    EXPECT_EQ(blade.manager(0x8B, {0, 0, 0}), (bytes{0x00, 0, 30}));
    EXPECT_FALSE(blade.is_throttled());
}

TEST(simulated_throttling, of_memory_shows_in_the_power)
{
    budget_blade blade;
    EXPECT_EQ(blade.manager(0x9A, {100, 0, 0}), (bytes{0x00}));
    EXPECT_TRUE(blade.is_throttled());
    EXPECT_EQ(blade.manager(0x9A, {101, 0, 0}), (bytes{0xC9}));
    EXPECT_TRUE(blade.is_throttled());
}

TEST(simulated_fan_speed, that_is_asked_for_goes_with_the_air_that_comes_in)
{
    budget_blade blade;
    const std::pair<uint8_t, uint8_t> speeds[] = {
        {10, 20}, {15, 20}, {25, 60}, {35, 100}, {60, 100}};
    for (const auto &[celsius, percent] : speeds) {
        blade.let_inlet_have(celsius);
        EXPECT_EQ(blade.fan_speed(), (bytes{0x00, percent, 0}));
    }
}

TEST(simulated_fan_speed, that_is_asked_for_is_none_without_power)
{
    budget_blade blade;
    blade.ask(0x00, 0x02, {0x00});
    EXPECT_EQ(blade.fan_speed(), (bytes{0x00, 0, 0}));
}

TEST(simulated_fan_status, of_the_chassis_is_kept)
{
    budget_blade blade;
    EXPECT_EQ(blade.manager(0x95, {0x5A, 0, 0}), (bytes{0x00, 0x5A}));
    EXPECT_EQ(blade.fan_speed().at(2), 0x5A);
}

} // namespace

} // namespace chassisd::simulated
