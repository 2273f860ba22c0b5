// The chassis manager's parameter command itself: its head, its refusals, values that come in
// parts.

#include <numeric>

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint8_t lcd = 0x02, links = 0x0D, autothrottle = 0x1A, lldp = 0x24;

bytes counted_up(size_t size)
{
    bytes numbers(size);
    std::iota(numbers.begin(), numbers.end(), uint8_t{1});
    return numbers;
}

// A value with its length, and the part of it from one place to another.
const bytes long_value = joined(le16_bytes(300), counted_up(298));

bytes stretch_of(size_t from, size_t to)
{
    return part(from, to - from, long_value);
}

TEST(simulated_parameter, is_answered_behind_the_head_that_asked_for_it)
{
    parameter_blade blade;
    blade.write(autothrottle, {0x00, 0x01, 0x59});
    EXPECT_EQ(blade.read(autothrottle, 5),
              (bytes{0x00, autothrottle, 5, 0, 0, 0, 5, 0, 0x00, 0x01, 0x59}));
    EXPECT_EQ(blade.read(autothrottle, 2, {}, 3),
              (bytes{0x00, autothrottle, 2, 0, 3, 0, 0x01, 0x59}));
}

TEST(simulated_parameter, is_answered_as_far_as_it_goes)
{
    parameter_blade blade;
    EXPECT_EQ(blade.read(autothrottle, 400), blade.read(autothrottle, 5));
    EXPECT_EQ(blade.read(autothrottle, 400, {}, 4), blade.read(autothrottle, 1, {}, 4));
    EXPECT_EQ(blade.read(autothrottle, 1, {}, 5), (bytes{0xC9}));
}

TEST(simulated_parameter, is_answered_in_parts_when_it_is_too_long_for_one_answer)
{
    parameter_blade blade;
    const bytes value = joined(le16_bytes(482), bytes(480, 0xA5));
    EXPECT_EQ(blade.write_part(lldp, 0, value), (bytes{0x00}));
    EXPECT_EQ(blade.read(lldp, 482), (bytes{0xCA}));
    EXPECT_EQ(blade.read(lldp, 478), (bytes{0xCA}));
    EXPECT_EQ(from(6, blade.read(lldp, 477)), part(0, 477, value));
    EXPECT_EQ(from(6, blade.read(lldp, 477, {}, 477)), from(477, value));
}

TEST(simulated_parameter, takes_a_whole_head_and_no_more_than_a_request_holds)
{
    parameter_blade blade;
    for (const uint8_t command : bytes{0xD0, 0xCE, 0xCB})
        for (const size_t size : {0, 5, 489})
            EXPECT_EQ(blade.manager(command, bytes(size)), (bytes{0xC7})) << +command << size;
}

TEST(simulated_parameter, that_does_not_exist_is_refused)
{
    parameter_blade blade;
    for (const uint8_t parameter : bytes{0x00, 0x01, 0x0F, 0x23, 0xFF}) {
        EXPECT_EQ(blade.read(parameter, 4), (bytes{0xCC}));
        EXPECT_EQ(blade.write(parameter, {1}), (bytes{0xCC}));
    }
}

TEST(simulated_parameter, is_written_and_read_and_nothing_else)
{
    parameter_blade blade;
    for (const uint8_t operation : bytes{0x02, 0x80, 0xFF})
        EXPECT_EQ(blade.access(head(operation, lcd, 5, 0)), (bytes{0xCC}));
}

TEST(simulated_parameter, that_the_blade_alone_knows_is_not_written)
{
    parameter_blade blade;
    EXPECT_EQ(blade.write(links, {1, 1}), (bytes{0xCC}));
    EXPECT_EQ(blade.fields(links), (bytes{0, 0}));
}

TEST(simulated_parameter, is_not_written_with_more_or_fewer_bytes_than_the_request_counts)
{
    parameter_blade blade;
    for (const size_t count : {0, 2, 4, 0x0103})
        EXPECT_EQ(blade.access(joined(head(0x00, lcd, count, 0), {3, 0, 1})), (bytes{0xC7}));
    EXPECT_EQ(blade.fields(lcd).at(0), 0);
}

TEST(simulated_parameter, is_not_written_with_a_length_that_it_cannot_have)
{
    parameter_blade blade;
    for (const uint8_t length : bytes{0, 1, 2, 4, 5, 255})
        EXPECT_EQ(blade.write_part(lcd, 0, {length, 0, 1}), (bytes{0xC7})) << +length;
    EXPECT_EQ(blade.write_part(lcd, 0, {3, 1, 1}), (bytes{0xC7})) << "259";
    EXPECT_EQ(blade.write_part(lcd, 0, {3}), (bytes{0xC7})) << "half a length";
    EXPECT_EQ(blade.write_part(lcd, 0, {}), (bytes{0xC7})) << "no length";
    EXPECT_EQ(blade.fields(lcd).at(0), 0);
}

TEST(simulated_parameter, is_not_read_with_bytes_that_select_nothing)
{
    parameter_blade blade;
    EXPECT_EQ(blade.read(lcd, 5, {1}), (bytes{0xC7}));
    EXPECT_EQ(blade.read(0x11, 11), (bytes{0xC7})) << "the item is missing";
    EXPECT_EQ(blade.read(0x11, 11, {1, 1}), (bytes{0xC7}));
}

TEST(simulated_parameter, that_comes_in_parts_is_set_by_the_last_one)
{
    parameter_blade blade;
    blade.write(lldp, {1, 2, 3});
    EXPECT_EQ(blade.write_part(lldp, 0, stretch_of(0, 130)), (bytes{0x00}));
    EXPECT_EQ(blade.write_part(lldp, 130, stretch_of(130, 258)), (bytes{0x00}));
    EXPECT_EQ(blade.fields(lldp), (bytes{1, 2, 3}));
    EXPECT_EQ(blade.write_part(lldp, 258, stretch_of(258, 300)), (bytes{0x00}));
    EXPECT_EQ(from(6, blade.read(lldp, 300)), long_value);
}

TEST(simulated_parameter, whose_parts_leave_a_hole_is_refused_and_can_be_completed)
{
    parameter_blade blade;
    EXPECT_EQ(blade.write_part(lldp, 130, stretch_of(130, 258)), (bytes{0xC9}));
    blade.write_part(lldp, 0, stretch_of(0, 130));
    EXPECT_EQ(blade.write_part(lldp, 131, stretch_of(131, 300)), (bytes{0xC9}));
    EXPECT_EQ(blade.write_part(lldp, 258, stretch_of(258, 300)), (bytes{0xC9}));
    EXPECT_EQ(blade.fields(lldp), bytes{});
    blade.write_part(lldp, 130, stretch_of(130, 300));
    EXPECT_EQ(from(6, blade.read(lldp, 300)), long_value);
}

TEST(simulated_parameter, whose_parts_overlap_has_what_came_last)
{
    parameter_blade blade;
    blade.write_part(lldp, 0, stretch_of(0, 130));
    EXPECT_EQ(blade.write_part(lldp, 100, bytes(30, 0xEE)), (bytes{0x00}));
    EXPECT_EQ(blade.write_part(lldp, 120, stretch_of(120, 300)), (bytes{0x00}));
    const bytes expected =
        joined(joined(stretch_of(0, 100), bytes(20, 0xEE)), stretch_of(120, 300));
    EXPECT_EQ(from(6, blade.read(lldp, 300)), expected);
}

TEST(simulated_parameter, whose_last_part_comes_twice_is_the_same)
{
    parameter_blade blade;
    blade.write_part(lldp, 0, stretch_of(0, 200));
    for (int time = 0; time < 2; time++)
        EXPECT_EQ(blade.write_part(lldp, 200, stretch_of(200, 300)), (bytes{0x00}));
    EXPECT_EQ(from(6, blade.read(lldp, 300)), long_value);
}

TEST(simulated_parameter, is_not_written_past_its_end)
{
    parameter_blade blade;
    blade.write_part(lldp, 0, stretch_of(0, 200));
    EXPECT_EQ(blade.write_part(lldp, 200, counted_up(101)), (bytes{0xC7}));
    EXPECT_EQ(blade.fields(lldp), bytes{});
    EXPECT_EQ(blade.write_part(lldp, 200, stretch_of(200, 300)), (bytes{0x00}));
    EXPECT_EQ(from(6, blade.read(lldp, 300)), long_value);
}

TEST(simulated_parameter, begins_anew_with_its_first_byte)
{
    parameter_blade blade;
    blade.write_part(lldp, 0, stretch_of(0, 130));
    EXPECT_EQ(blade.write(lldp, {7, 8}), (bytes{0x00}));
    EXPECT_EQ(blade.write_part(lldp, 130, stretch_of(130, 300)), (bytes{0xC9}));
    EXPECT_EQ(blade.fields(lldp), (bytes{7, 8}));
}

TEST(simulated_parameter, may_have_no_fields_or_as_many_as_its_length_can_count)
{
    parameter_blade blade;
    EXPECT_EQ(blade.write(lldp, {1}), (bytes{0x00}));
    EXPECT_EQ(blade.write(lldp, {}), (bytes{0x00}));
    EXPECT_EQ(blade.fields(lldp), bytes{});

    const bytes longest = joined(le16_bytes(0xFFFF), bytes(0xFFFD, 0x5A));
    for (size_t offset = 0; offset < longest.size(); offset += 255)
        ASSERT_EQ(blade.write_part(lldp, offset, part(offset, 255, longest)), (bytes{0x00}));
    EXPECT_EQ(from(6, blade.read(lldp, 100, {}, 0xFFFF - 3)), (bytes{0x5A, 0x5A, 0x5A}));
}

} // namespace

} // namespace chassisd::simulated
