#include "blade_care.h"

#include <ruk_ipmi_testing_gtest.h>

using namespace ruk_ipmi_testing;

namespace
{

constexpr uint32_t chassis_control = 0x0002;
constexpr uint32_t get_sel_info = 0x0A40;
constexpr uint32_t get_sel_entry = 0x0A43;

// Answers, completion code first, numbers least significant byte first.

bytes a_log_of(uint8_t entries)
{
    return {0x00, 0x51, entries, 0x00, 0xFF, 0x0F, 0, 0, 0, 0, 0, 0, 0, 0, 0x02};
}

bytes an_entry(uint8_t sensor_type, uint16_t next_record)
{
    const auto low = static_cast<uint8_t>(next_record);
    const auto high = static_cast<uint8_t>(next_record >> 8);
    return {0x00, low,  high, 0x01,        0x00, 0x02, 0,    0,    0,   0,
            0x20, 0x00, 0x04, sensor_type, 0x31, 0x6F, 0x01, 0xFF, 0xFF};
}

constexpr uint8_t memory = 0x0C;
constexpr uint8_t power_supply = 0x08;

class blade_care : public scripted_platform_test
{
  protected:
    int count() { return count_memory_errors(at, errors); }

    const blade_location at = blade(5);
    unsigned errors = 77;
};

class inserted_blade : public scripted_platform_test
{
  protected:
    void SetUp() override { ASSERT_EQ(care_for_inserted_blades(), 0u); }

    const blade_location at = blade(3);
};

} // namespace

TEST_F(blade_care, counts_the_memory_errors_in_a_log)
{
    platform.expects(at, get_sel_info).answers(a_log_of(3));
    platform.expects(at, get_sel_entry, {0, 0, 0x00, 0x00, 0, 0xFF}).answers(an_entry(memory, 2));
    platform.expects(at, get_sel_entry, {0, 0, 0x02, 0x00, 0, 0xFF})
        .answers(an_entry(power_supply, 3));
    platform.expects(at, get_sel_entry, {0, 0, 0x03, 0x00, 0, 0xFF}).answers(an_entry(memory, 4));
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(errors, 2u);
}

TEST_F(blade_care, asks_an_empty_log_for_no_entries)
{
    platform.expects(at, get_sel_info).answers(a_log_of(0));
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(errors, 0u);
}

TEST_F(blade_care, stops_at_the_last_entry_of_a_log_that_was_longer_a_moment_ago)
{
    platform.expects(at, get_sel_info).answers(a_log_of(2));
    platform.expects(at, get_sel_entry, {0, 0, 0x00, 0x00, 0, 0xFF})
        .answers(an_entry(memory, 0xFFFF));
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(errors, 1u);
}

TEST_F(blade_care, counts_nothing_when_an_entry_is_refused)
{
    platform.expects(at, get_sel_info).answers(a_log_of(2));
    platform.expects(at, get_sel_entry, {0, 0, 0x00, 0x00, 0, 0xFF}).refuses(0xCB);
    EXPECT_EQ(count(), 0xCB);
    EXPECT_EQ(errors, 77u);
}

TEST_F(blade_care, says_when_a_blade_does_not_answer)
{
    platform.expects(at, get_sel_info).keeps_waiting();
    EXPECT_EQ(count(), 0x5007);
}

TEST_F(blade_care, says_when_the_message_service_is_away)
{
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(count(), 0x5001);
    EXPECT_FALSE(platform.log_lines(log_level::error).empty());
}

TEST_F(inserted_blade, is_powered_on)
{
    platform.expects(at, get_sel_info).answers(a_log_of(0));
    platform.expects(at, chassis_control, {CHASSIS_POWER_UP});
    platform.posts_interrupt(at, {1});
}

TEST_F(inserted_blade, is_asked_again_while_it_is_busy)
{
    platform.expects(at, get_sel_info).answers(a_log_of(0));
    platform.expects(at, chassis_control, {CHASSIS_POWER_UP}).refuses(0xC0);
    platform.expects(at, chassis_control, {CHASSIS_POWER_UP});
    platform.posts_interrupt(at, {1});
}

TEST_F(inserted_blade, stays_off_when_it_has_memory_errors)
{
    platform.expects(at, get_sel_info).answers(a_log_of(1));
    platform.expects(at, get_sel_entry, {0, 0, 0x00, 0x00, 0, 0xFF})
        .answers(an_entry(memory, 0xFFFF));
    platform.posts_interrupt(at, {1});
}

TEST_F(inserted_blade, is_all_that_anybody_cares_for)
{
    platform.posts_interrupt(at, {2, 9});
}
