#include "cli/numbers.h"

#include <gtest/gtest.h>

#include "cli/failure.h"

using namespace cli;

TEST(numbers, are_decimal_or_hexadecimal)
{
    EXPECT_EQ(number<uint8_t>("10"), 10);
    EXPECT_EQ(number<uint8_t>("0x10"), 16);
    EXPECT_EQ(number<uint16_t>("0XfFfF"), 0xFFFF);
}

TEST(numbers, with_leading_zeros_are_not_octal)
{
    EXPECT_EQ(number<uint8_t>("010"), 10);
    EXPECT_EQ(number<uint8_t>("09"), 9);
}

TEST(numbers, may_be_negative_where_the_range_allows_it)
{
    EXPECT_EQ(parse_number("-60", -1440, 1440), -60);
    EXPECT_THROW(number<uint8_t>("-1"), failure);
}

TEST(numbers, outside_of_the_range_are_refused)
{
    EXPECT_THROW(number<uint8_t>("256"), failure);
    EXPECT_THROW(number<uint32_t>("4294967296"), failure);
    EXPECT_THROW(number<uint32_t>("99999999999999999999"), failure);
    EXPECT_EQ(number<uint32_t>("0xFFFFFFFF"), 0xFFFFFFFF);
}

TEST(numbers, that_are_not_all_number_are_refused)
{
    for (const char *text : {"", "-", "0x", "x", "1x", " 1", "1 ", "--1", "0x-1", "1.5", "+1"})
        EXPECT_THROW(number<uint8_t>(text), failure) << '"' << text << '"';
}

TEST(hex, has_as_many_digits_as_the_type)
{
    EXPECT_EQ(hex(uint8_t{0x0A}), "0x0A");
    EXPECT_EQ(hex(uint16_t{1}), "0x0001");
    EXPECT_EQ(hex(uint32_t{0xABCDEF}), "0x00ABCDEF");
}

TEST(hex, of_bytes_keeps_their_order)
{
    EXPECT_EQ(hex(bytes{0x01, 0xFE, 0x00}), "01 fe 00");
    EXPECT_EQ(hex(bytes{}), "");
}

TEST(hex, that_is_printed_can_be_typed_back)
{
    const bytes data = {0x01, 0xFE, 0x00};
    EXPECT_EQ(parse_hex(hex(data)), data);
    EXPECT_EQ(parse_hex("01FE00"), data);
    EXPECT_EQ(parse_hex(""), bytes{});
}

TEST(hex, that_is_not_whole_bytes_is_refused)
{
    for (const char *text :
         {"1", "012", "0x01", "gg", " 01", "01 ", "01  02", "0 1", "-1", "01,02"})
        EXPECT_THROW(parse_hex(text), failure) << '"' << text << '"';
}
