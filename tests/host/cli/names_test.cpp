#include "cli/names.h"

#include <gtest/gtest.h>

using namespace cli;

namespace
{

const name_table fruit = {{1, "apple"}, {5, "pear"}};

} // namespace

TEST(names, are_given_to_numbers_that_have_one)
{
    EXPECT_EQ(name_of(fruit, 5), "pear");
    EXPECT_EQ(name_of(fruit, 10), "0x0A");
}

TEST(names, are_read_back)
{
    EXPECT_EQ(number_named(fruit, "apple"), 1);
    EXPECT_THROW(number_named(fruit, "Apple"), failure);
    EXPECT_THROW(number_named(fruit, "1"), failure);
}

TEST(names, may_be_left_out_for_the_number)
{
    EXPECT_EQ(number_or_named(fruit, "pear"), 5);
    EXPECT_EQ(number_or_named(fruit, "0x0A"), 10);
    EXPECT_THROW(number_or_named(fruit, "256"), failure);
    EXPECT_THROW(number_or_named(fruit, ""), failure);
}

TEST(names, of_bits_are_those_of_the_bits_that_are_set)
{
    EXPECT_EQ(names_of_bits(0xFD, {"a", "b", nullptr, "d"}), json({"a", "d"}));
    EXPECT_EQ(names_of_bits(0, {"a"}), json::array());
}
