// The commands of chassis control.

#include "ruk_ipmi/chassis.h"

#include <csignal>

#include "command_shape.h"

namespace
{

const uint8_t boot_flags[] = {0x80, 0x08, 0x00};

std::vector<command_row> chassis_rows()
{
    return {
        row<1>("chassis_control_command",
               [](auto at, auto out) {
                   return ipmi_location_chassis_control_command(at, CHASSIS_POWER_CYCLE, out);
               },
               0x0002, {0x02}, {0x00, 0x01})
            .by_number<1>([](int blade, auto out) {
                return ipmi_chassis_control_command(blade, CHASSIS_POWER_CYCLE, out);
            }),
        row<1>("chassis_identify_command",
               [](auto at, auto out) {
                   return ipmi_location_chassis_identify_command(at, 15, 0, out);
               },
               0x0004, {0x0F}, {0x00, 0x01})
            .by_number<1>([](int blade, auto out) {
                return ipmi_chassis_identify_command(blade, 15, 0, out);
            })
            .logs(),
        row<boot_options_data>(
            "get_boot_options",
            [](auto at, auto out) { return ipmi_location_get_boot_options(at, 5, 0x81, 7, out); },
            0x0009, {0x05, 0x81, 0x00}, {0x00, 0x01, 0x85, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6},
            {0x00, 0x01, 0x85, {0xB1, 0xB2, 0xB3, 0xB4, 0xB5}}),
        row<1>("set_boot_options",
               [](auto at, auto out) {
                   return ipmi_location_set_boot_options(at, 0x05, boot_flags, 3, out);
               },
               0x0008, {0x05, 0x80, 0x08, 0x00}, {0x00, 0x01}),
        row<1>("reset_to_defaults",
               [](auto at, auto out) { return ipmi_location_reset_to_defaults(at, 0x81, out); },
               0x3021, {0x81}, {0x00, 0x01}),
    };
}

INSTANTIATE_COMMAND_SHAPE(chassis, chassis_rows());

class chassis : public scripted_test
{
  protected:
    int identify(uint8_t interval, uint8_t force)
    {
        uint8_t out;
        litter_the_stack();
        return ipmi_location_chassis_identify_command(&at, interval, force, &out);
    }

    int set_boot_options(const uint8_t *data, uint32_t length)
    {
        uint8_t out;
        return ipmi_location_set_boot_options(&at, 0x85, data, length, &out);
    }

    const blade_location at = blade(5);
};

using identification = chassis;
using boot_options = chassis;
using boot_options_death = chassis;

} // namespace

TEST_F(chassis, control_names_its_actions_as_they_are_sent)
{
    const std::vector<uint8_t> actions = {CHASSIS_POWER_DOWN,           CHASSIS_POWER_UP,
                                          CHASSIS_POWER_CYCLE,          CHASSIS_HARD_RESET,
                                          CHASSIS_DIAGNOSTIC_INTERRUPT, CHASSIS_SOFT_SHUTDOWN};
    EXPECT_EQ(actions, (bytes{0, 1, 2, 3, 4, 5}));
}

TEST_F(chassis, control_is_sent_whatever_the_action)
{
    for (const uint8_t action : bytes{0x00, 0x05, 0x06, 0xFF}) {
        uint8_t out;
        platform.expects(at, 0x0002, {action});
        EXPECT_EQ(ipmi_location_chassis_control_command(&at, action, &out), 0);
    }
}

TEST_F(identification, for_some_time_is_told_to_the_debug_log_before_it_is_sent)
{
    platform.expects(at, 0x0004, {0x0F});
    EXPECT_EQ(identify(15, 0), 0);
    EXPECT_EQ(platform.journal(),
              (events{debug_line("time f flag 0 len 1 "), attached(), sent(0x18 + 1),
                      received(whole_platform::first_index, 500, 483), detached()}));
}

TEST_F(identification, without_end_sends_a_second_byte_of_1_which_the_log_does_not_count)
{
    platform.expects(at, 0x0004, {0x0F, 0x01});
    EXPECT_EQ(identify(15, 1), 0);
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 2));
    EXPECT_EQ(platform.log(), events{debug_line("time f flag 1 len 1 ")});
}

TEST_F(identification, without_end_is_asked_for_with_any_number_but_0)
{
    for (const uint8_t force : bytes{0x02, 0x80, 0xFF}) {
        platform.expects(at, 0x0004, {0x00, 0x01});
        EXPECT_EQ(identify(0, force), 0);
    }
    EXPECT_EQ(platform.log().back(), debug_line("time 0 flag ff len 1 "));
}

TEST_F(identification, is_told_the_same_when_it_fails)
{
    platform.expects(at, 0x0004, {0x0F}).answers({0xC1});
    EXPECT_EQ(identify(15, 0), 0xC1);
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(identify(15, 0), 0x5001);
    const event told = debug_line("time f flag 0 len 1 ");
    EXPECT_EQ(platform.log(),
              (events{told, told, error_line("attach_ruk_shm returned 20481 (0x00005001)\n")}));
}

TEST_F(boot_options, are_asked_for_in_block_0_whatever_the_caller_says)
{
    for (const uint8_t block : bytes{0x00, 0x07, 0xFF}) {
        boot_options_data out;
        platform.expects(at, 0x0009, {0x05, 0x00, 0x00});
        EXPECT_EQ(ipmi_location_get_boot_options(&at, 5, 0, block, &out), 0);
    }
}

TEST_F(boot_options, come_with_zeros_behind_a_short_parameter)
{
    platform.expects(at, 0x0009, {0x00, 0x00, 0x00}).answers({0x00, 0x01, 0x00, 0x02});
    guarded<boot_options_data> out;
    litter_the_stack();
    EXPECT_EQ(ipmi_location_get_boot_options(&at, 0, 0, 0, out.get()), 0);
    EXPECT_EQ(hex(out.content()), hex({0x00, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x00}));
}

TEST_F(boot_options, are_marked_without_any_data)
{
    platform.expects(at, 0x0008, {0x85});
    EXPECT_EQ(set_boot_options(nullptr, 0), 0);
}

TEST_F(boot_options, take_487_bytes_at_once)
{
    const bytes data = counting(487);
    platform.expects(at, 0x0008, joined({0x85}, data));
    EXPECT_EQ(set_boot_options(data.data(), 487), 0);
    EXPECT_EQ(platform.calls().at(1), sent(512));
}

TEST_F(boot_options_death, longer_than_their_room_end_the_process)
{
    const bytes data = counting(488);
    platform.echo_log();
    for (const uint32_t length : {488u, 0xFFFFFFFFu})
        EXPECT_EXIT(set_boot_options(data.data(), length), ::testing::KilledBySignal(SIGABRT),
                    formatted("^error: %u bytes do not fit", length));
}
