#include "cli/targets.h"

#include <gtest/gtest.h>

#include "cli/failure.h"

using namespace cli;

namespace
{

std::string names(const std::string &typed)
{
    std::string all;
    for (const blade_location &each : parse_targets(typed))
        all += (all.empty() ? "" : " ") + target_name(each);
    return all;
}

std::string complaint(const std::string &typed)
{
    try {
        parse_targets(typed);
    } catch (const failure &wrong) {
        EXPECT_EQ(wrong.kind, exit_usage);
        return wrong.what();
    }
    return "none";
}

} // namespace

TEST(targets, are_slots_ranges_and_sub_slots)
{
    EXPECT_EQ(names("7"), "7");
    EXPECT_EQ(names("3.2"), "3.2");
    EXPECT_EQ(names("1-3,10,3.2"), "1 2 3 10 3.2");
    EXPECT_EQ(names("255"), "255");
}

TEST(targets, keep_the_order_in_which_they_were_typed)
{
    EXPECT_EQ(names("9,1-2"), "9 1 2");
}

TEST(targets, named_twice_are_asked_once)
{
    EXPECT_EQ(names("2,1-3,2"), "2 1 3");
    EXPECT_EQ(names("4,4.0,4.1"), "4 4.1");
}

TEST(targets, leave_the_reserved_bytes_of_a_location_0)
{
    const blade_location blade = parse_targets("3.2").front();
    EXPECT_EQ(blade.slot_id, 3);
    EXPECT_EQ(blade.sub_slot_id, 2);
    EXPECT_EQ(blade.reserved[0], 0);
    EXPECT_EQ(blade.reserved[1], 0);
}

TEST(targets, that_cannot_be_read_are_named)
{
    EXPECT_NE(complaint("1,2x,3").find("blade \"2x\": "), std::string::npos);
    EXPECT_NE(complaint("5-3").find("runs backwards"), std::string::npos);
    EXPECT_NE(complaint("256").find("256 is not from 1 to 255"), std::string::npos);
}

TEST(targets, of_any_other_form_are_refused)
{
    for (const char *text : {"", ",", "1,", ",1", "0", "1-", "-1", "1-2-3", "1.", ".1", "1.2.3",
                             "1.256", "1.1-2", "all", "1 2"})
        EXPECT_NE(complaint(text), "none") << '"' << text << '"';
}
