// The commands of the system event log.

#include "ruk_ipmi/sel.h"

#include "command_shape.h"

namespace
{

std::vector<command_row> sel_rows()
{
    return {
        row<uint8_t>(
            "set_sel_time",
            [](auto at, auto out) { return ipmi_location_set_sel_time(at, 0x12345678, out); },
            0x0A49, {0x78, 0x56, 0x34, 0x12}, {0x00}, 0x00)
            .by_number<uint8_t>(
                [](int blade, auto out) { return ipmi_set_sel_time(blade, 0x12345678, out); })
            .logs(),
        row<uint8_t>(
            "set_sel_time_offset",
            [](auto at, auto out) { return ipmi_location_set_sel_time_offset(at, 330, out); },
            0x0A5D, {0x4A, 0x01}, {0x00}, 0x00)
            .logs(),
        row<sel_reservation>("reserve_sel", ipmi_location_reserve_sel, 0x0A42, {},
                             {0x00, 0x34, 0x12}, {0x00, 0x1234}),
        row<sel_info>("get_sel_info", ipmi_location_get_sel_info, 0x0A40, {},
                      {0x00, 0x51, 0x34, 0x12, 0x78, 0x56, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07,
                       0x08, 0x8F},
                      {0x00, 0x51, 0x1234, 0x5678, {1, 2, 3, 4}, {5, 6, 7, 8}, 0x8F}),
        row<sel_entry>(
            "get_sel_entry",
            [](auto at, auto out) { return ipmi_location_get_sel_entry(at, 0x1234, out); }, 0x0A43,
            {0x00, 0x00, 0x34, 0x12, 0x00, 0xFF},
            {0x00, 0x35, 0x12, 0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA,
             0xFB, 0xFC, 0xFD, 0xFE, 0xFF},
            {0x00,
             0x1235,
             {0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD,
              0xFE, 0xFF}})
            .leaves_location_unchecked(),
        row<sel_clear_status>(
            "clear_sel",
            [](auto at, auto out) { return ipmi_location_clear_sel(at, 0x1234, 0xAA, out); },
            0x0A47, {0x34, 0x12, 'C', 'L', 'R', 0xAA}, {0x00, 0x01}, {0x00, 0x01}),
    };
}

INSTANTIATE_COMMAND_SHAPE(sel, sel_rows());

class sel : public scripted_test
{
  protected:
    // The lines of the log, each with its channel, of which the last one names what was done.
    events after_setting_time(uint32_t time)
    {
        uint8_t out;
        result = ipmi_location_set_sel_time(&at, time, &out);
        return platform.journal();
    }

    events after_setting_offset(int offset)
    {
        uint8_t out;
        result = ipmi_location_set_sel_time_offset(&at, offset, &out);
        return platform.log();
    }

    const blade_location at = blade(5, 2);
    int result = -1;
};

} // namespace

TEST_F(sel, setting_the_time_is_told_to_the_debug_log)
{
    platform.expects(at, 0x0A49, {0x78, 0x56, 0x34, 0x12});
    EXPECT_EQ(after_setting_time(0x12345678).back(),
              debug_line("ipmi_location_set_sel_time(): blade=blade 5.2 IPMI_SET_SEL_TIME "
                         "succeeded: time=305419896 secs\n"));
    EXPECT_EQ(platform.log().size(), 1u);
}

TEST_F(sel, a_time_beyond_31_bits_is_logged_as_a_negative_number)
{
    platform.expects(at, 0x0A49, {0xFF, 0xFF, 0xFF, 0xFF});
    EXPECT_EQ(after_setting_time(0xFFFFFFFF).back(),
              debug_line("ipmi_location_set_sel_time(): blade=blade 5.2 IPMI_SET_SEL_TIME "
                         "succeeded: time=-1 secs\n"));
}

TEST_F(sel, a_refused_time_is_told_to_the_error_log)
{
    platform.expects(at, 0x0A49, {0x78, 0x56, 0x34, 0x12}).answers({0xD5});
    EXPECT_EQ(after_setting_time(0x12345678).back(),
              error_line("ipmi_location_set_sel_time(): blade=blade 5.2 IPMI_SET_SEL_TIME "
                         "failed: rc=0x00D5\n"));
    EXPECT_EQ(platform.log().size(), 1u);
    EXPECT_EQ(result, 0xD5);
}

TEST_F(sel, a_time_that_never_arrived_is_told_as_succeeded_behind_the_transports_lines)
{
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(after_setting_time(60),
              (events{attached(), error_line("attach_ruk_shm returned 20481 (0x00005001)\n"),
                      debug_line("ipmi_location_set_sel_time(): blade=blade 5.2 "
                                 "IPMI_SET_SEL_TIME succeeded: time=60 secs\n")}));
    EXPECT_EQ(result, 0x5001);
}

TEST_F(sel, a_completion_code_left_by_a_failed_receive_does_not_count_as_a_refusal_of_the_time)
{
    platform.expects(at, 0x0A49, {60, 0, 0, 0}).answers({0xD5}).fails_to_receive(0x5007);
    EXPECT_EQ(after_setting_time(60).back().on, channel::debug);
    EXPECT_EQ(result, 0x5007);
}

TEST_F(sel, an_offset_is_told_to_the_debug_log_before_it_is_sent)
{
    platform.expects(at, 0x0A5D, {0x4A, 0x01});
    uint8_t out;
    ipmi_location_set_sel_time_offset(&at, 330, &out);
    EXPECT_EQ(platform.journal(),
              (events{debug_line("ipmi_location_set_sel_time_offset(): blade=blade 5.2 offset=330 "
                                 "compOffset=0x014A\n"),
                      attached(), sent(0x1A), received(whole_platform::first_index, 500, 483),
                      detached()}));
}

TEST_F(sel, an_offset_west_of_utc_travels_in_twos_complement)
{
    platform.expects(at, 0x0A5D, {0xFF, 0xFF});
    EXPECT_EQ(after_setting_offset(-1).back(),
              debug_line("ipmi_location_set_sel_time_offset(): blade=blade 5.2 offset=-1 "
                         "compOffset=0xFFFF\n"));
    platform.expects(at, 0x0A5D, {0xC4, 0xFF});
    EXPECT_EQ(after_setting_offset(-60).back(),
              debug_line("ipmi_location_set_sel_time_offset(): blade=blade 5.2 offset=-60 "
                         "compOffset=0xFFC4\n"));
}

TEST_F(sel, an_offset_is_sent_whatever_its_range)
{
    platform.expects(at, 0x0A5D, {0xFF, 0x07});
    EXPECT_EQ(after_setting_offset(2047).size(), 1u);
    platform.expects(at, 0x0A5D, {0x45, 0x23});
    EXPECT_EQ(after_setting_offset(0x12345).back(),
              debug_line("ipmi_location_set_sel_time_offset(): blade=blade 5.2 offset=74565 "
                         "compOffset=0x2345\n"));
    EXPECT_EQ(result, 0);
}

TEST_F(sel, a_refused_offset_is_told_to_the_error_log_with_a_dump_of_the_request)
{
    platform.expects(at, 0x0A5D, {0xC4, 0xFF}).answers({0xD5});
    EXPECT_EQ(after_setting_offset(-60),
              (events{debug_line("ipmi_location_set_sel_time_offset(): blade=blade 5.2 offset=-60 "
                                 "compOffset=0xFFC4\n"),
                      error_line("ipmi_location_set_sel_time_offset(): blade=blade 5.2 "
                                 "IPMI_SET_SEL_TIME_UTC_OFFSET failed: rc=0x00D5\n"),
                      dump_line("IPMI Request Buffer ", {0xC4, 0xFF}, 1)}));
    EXPECT_EQ(result, 0xD5);
}

TEST_F(sel, an_offset_that_never_arrived_is_told_by_the_transport_alone)
{
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(after_setting_offset(60),
              (events{debug_line("ipmi_location_set_sel_time_offset(): blade=blade 5.2 offset=60 "
                                 "compOffset=0x003C\n"),
                      error_line("attach_ruk_shm returned 20481 (0x00005001)\n")}));
    EXPECT_EQ(result, 0x5001);
}

TEST_F(sel, the_last_entry_says_that_there_is_no_next_one)
{
    platform.expects(at, 0x0A43, {0, 0, 0xFF, 0xFF, 0, 0xFF}).answers({0x00, 0xFF, 0xFF});
    sel_entry out;
    EXPECT_EQ(ipmi_location_get_sel_entry(&at, 0xFFFF, &out), 0);
    EXPECT_EQ(out.next_record_id, 0xFFFF);
}

TEST_F(sel, erasing_begins_and_is_followed_with_the_two_known_actions)
{
    sel_clear_status out;
    platform.expects(at, 0x0A47, {0x34, 0x12, 0x43, 0x4C, 0x52, 0xAA}).answers({0x00, 0x00});
    EXPECT_EQ(ipmi_location_clear_sel(&at, 0x1234, SEL_CLEAR_INITIATE, &out), 0);
    platform.expects(at, 0x0A47, {0x34, 0x12, 0x43, 0x4C, 0x52, 0x00}).answers({0x00, 0xF1});
    EXPECT_EQ(ipmi_location_clear_sel(&at, 0x1234, SEL_CLEAR_GET_STATUS, &out), 0);
    EXPECT_EQ(out.progress, 0xF1);
}

TEST_F(sel, erasing_refuses_every_other_action)
{
    for (int action = 0x01; action <= 0xFF; ++action) {
        guarded<sel_clear_status> out;
        if (action != 0xAA) {
            EXPECT_EQ(ipmi_location_clear_sel(&at, 1, static_cast<uint8_t>(action), out.get()),
                      0x510a);
            EXPECT_TRUE(out.untouched());
        }
    }
    EXPECT_EQ(platform.journal(), events(254, error_line("Invalid parameter to IPMI interface\n")));
}
