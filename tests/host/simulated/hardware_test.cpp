// LEDs, CPLD and POST code of the blade.

#include "chassisd/simulated/power.h"
#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

using namespace std::chrono_literals;

// What is written to let a LED blink or stop it.
bytes led(uint8_t code, bool blinks)
{
    const uint8_t fill = code == 3 ? 0xFF : 0x00;
    return {code, 0x02, uint8_t(blinks ? 0xFF : 0x00), 250, 0, 250, 0, fill, fill, fill, fill, 0};
}

class hardware_blade : public parameter_blade
{
  public:
    bytes set_led(const bytes &fields) { return write(0x0E, fields); }
    bytes leds() { return fields(0x0E); }

    bytes cpld(uint8_t operation, size_t number, uint8_t value = 0, uint8_t mask = 0)
    {
        return manager(
            0xBC, joined(joined({operation}, le16_bytes(number)), {value, 0, 0, 0, mask, 0, 0}));
    }

    uint8_t cpld_register(size_t number) { return cpld(1, number).at(1); }

    bytes post_codes() { return manager(0x99, {}); }
    uint32_t post_code() { return long_at(1, manager(0xD4, {0, 0, 0, 0})); }
    void power(uint8_t action) { ask(0x00, 0x02, {action}); }
};

enum power_action : uint8_t { down, up, cycle, hard_reset };

TEST(simulated_leds, are_dark_at_the_start)
{
    EXPECT_EQ(hardware_blade().leds(), (bytes{0, 0}));
}

TEST(simulated_leds, blink_and_stop_one_without_the_other)
{
    hardware_blade blade;
    EXPECT_EQ(blade.set_led(led(1, true)), (bytes{0x00}));
    EXPECT_EQ(blade.leds(), (bytes{1, 0}));
    blade.set_led(led(3, true));
    EXPECT_EQ(blade.leds(), (bytes{1, 1}));
    blade.set_led(led(1, false));
    EXPECT_EQ(blade.leds(), (bytes{0, 1}));
}

TEST(simulated_leds, that_do_not_exist_are_refused_and_light_no_other)
{
    hardware_blade blade;
    for (const uint8_t code : bytes{0, 2, 4, 255})
        EXPECT_EQ(blade.set_led(led(code, true)), (bytes{0xCC}));
    bytes lit_otherwise = led(1, true);
    lit_otherwise[1] = 0x01;
    EXPECT_EQ(blade.set_led(lit_otherwise), (bytes{0xCC}));
    EXPECT_EQ(blade.leds(), (bytes{0, 0}));
}

TEST(simulated_cpld, tells_its_revision_in_its_first_register)
{
    EXPECT_EQ(hardware_blade().cpld(1, 0), (bytes{0x00, 0x12, 0x00, 0x00}));
}

TEST(simulated_cpld, keeps_what_is_written_to_a_register)
{
    hardware_blade blade;
    EXPECT_EQ(blade.cpld(2, 0xFF, 0x5A), (bytes{0x00, 0x5A, 0x00, 0x00}));
    EXPECT_EQ(blade.cpld_register(0xFF), 0x5A);
    EXPECT_EQ(blade.cpld_register(0xFE), 0x00);
}

TEST(simulated_cpld, leaves_the_bits_outside_the_mask_of_a_masked_write)
{
    hardware_blade blade;
    blade.cpld(2, 5, 0x5A);
    EXPECT_EQ(blade.cpld(3, 5, 0xF5, 0x0F), (bytes{0x00, 0x55, 0x00, 0x00}));
    EXPECT_EQ(blade.cpld_register(5), 0x55);
}

TEST(simulated_cpld, refuses_registers_values_and_operations_that_it_has_not)
{
    hardware_blade blade;
    for (const uint8_t operation : bytes{1, 2, 3})
        EXPECT_EQ(blade.cpld(operation, 256), (bytes{0xC9}));
    for (const uint8_t operation : bytes{0, 4, 255})
        EXPECT_EQ(blade.cpld(operation, 0), (bytes{0xCC}));
    EXPECT_EQ(blade.manager(0xBC, {2, 1, 0, 0x00, 0x01, 0, 0, 0, 0, 0}), (bytes{0xC9}));
    EXPECT_EQ(blade.cpld_register(1), 0x00);
}

TEST(simulated_post_code, comes_in_seventeen_bytes_and_tells_that_the_boot_is_over)
{
    const bytes answer = hardware_blade().manager(0xD4, {0xDE, 0xAD, 0xBE, 0xEF});
    EXPECT_EQ(answer, joined({0x00, 0xAA, 0, 0, 0}, bytes(12)));
}

TEST(simulated_post_code, is_zero_without_power)
{
    hardware_blade blade;
    blade.power(down);
    EXPECT_EQ(blade.post_code(), 0u);
    blade.let_pass(5s);
    EXPECT_EQ(blade.post_code(), 0u);
}

TEST(simulated_post_code, counts_up_for_a_second_after_power_on_reset_and_cycle)
{
    for (const uint8_t action : {up, cycle, hard_reset}) {
        hardware_blade blade;
        if (action == up)
            blade.power(down);
        blade.let_pass(1h);
        blade.power(action);
        if (action == cycle)
            blade.let_pass(off_between);
        EXPECT_EQ(blade.post_code(), 1u);
        blade.let_pass(500ms);
        EXPECT_EQ(blade.post_code(), 51u);
        blade.let_pass(499ms);
        EXPECT_EQ(blade.post_code(), 100u);
        blade.let_pass(1ms);
        EXPECT_EQ(blade.post_code(), 0xAAu);
    }
}

TEST(simulated_post_code, does_not_count_again_when_power_on_changes_nothing)
{
    hardware_blade blade;
    blade.power(up);
    EXPECT_EQ(blade.post_code(), 0xAAu);
}

TEST(simulated_post_codes, come_in_their_order_behind_their_number)
{
    hardware_blade blade;
    blade.power(hard_reset);
    EXPECT_EQ(blade.post_codes(), joined({0x00, 1, 1}, bytes(128)));
    blade.let_pass(25ms);
    EXPECT_EQ(blade.post_codes(), joined({0x00, 3, 1, 2, 3}, bytes(126)));
}

TEST(simulated_post_codes, are_all_there_when_the_boot_is_over)
{
    const bytes answer = hardware_blade().post_codes();
    ASSERT_EQ(answer.size(), 131u);
    EXPECT_EQ(answer[1], 101);
    EXPECT_EQ(part(100, 4, answer), (bytes{99, 100, 0xAA, 0}));
}

TEST(simulated_post_codes, are_none_without_power)
{
    hardware_blade blade;
    blade.power(down);
    EXPECT_EQ(blade.post_codes(), joined({0x00}, bytes(130)));
}

} // namespace

} // namespace chassisd::simulated
