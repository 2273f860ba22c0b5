// The identify LED: how long it is lit, and who tells it.

#include "blade_under_test.h"

namespace chassisd::simulated
{

namespace
{

using namespace std::chrono_literals;

enum light : uint8_t { dark, for_a_while, for_good };

class identified_blade : public blade_under_test
{
  public:
    bytes identify(const bytes &request) { return ask(0x00, 0x04, request); }

    // As the LED's own status and the chassis status have it.
    uint8_t light()
    {
        const uint8_t status = ask(0x30, 0x32).at(1);
        EXPECT_EQ(status, ask(0x00, 0x01).at(3) >> 4 & 0x03);
        return status;
    }
};

TEST(simulated_identify_led, is_dark_at_the_start)
{
    identified_blade blade;
    EXPECT_EQ(blade.light(), dark);
    EXPECT_EQ(blade.ask(0x30, 0x32).size(), 2u);
}

TEST(simulated_identify_led, is_lit_for_the_interval)
{
    identified_blade blade;
    EXPECT_EQ(blade.identify({20}), (bytes{0x00}));
    blade.let_pass(19999ms);
    EXPECT_EQ(blade.light(), for_a_while);
    blade.let_pass(1ms);
    EXPECT_EQ(blade.light(), dark);
}

TEST(simulated_identify_led, is_lit_for_fifteen_seconds_when_nobody_says_how_long)
{
    identified_blade blade;
    blade.identify({});
    blade.let_pass(14999ms);
    EXPECT_EQ(blade.light(), for_a_while);
    blade.let_pass(1ms);
    EXPECT_EQ(blade.light(), dark);
}

TEST(simulated_identify_led, that_is_forced_is_lit_until_it_is_turned_off)
{
    identified_blade blade;
    EXPECT_EQ(blade.identify({15, 1}), (bytes{0x00}));
    blade.let_pass(24h);
    EXPECT_EQ(blade.light(), for_good);
    blade.identify({0});
    EXPECT_EQ(blade.light(), dark);
}

TEST(simulated_identify_led, is_left_as_it_is_by_a_request_that_is_refused)
{
    identified_blade blade;
    blade.identify({20, 0});
    EXPECT_EQ(blade.identify({0, 2}), (bytes{0xCC}));
    EXPECT_EQ(blade.identify({0, 0, 0}), (bytes{0xC7}));
    EXPECT_EQ(blade.light(), for_a_while);
}

} // namespace

} // namespace chassisd::simulated
