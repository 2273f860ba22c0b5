#include "cli/event_sets.h"

#include <gtest/gtest.h>

using namespace cli;

namespace
{

std::string numbers(const std::string &typed)
{
    return event_numbers(parse_events(typed)).dump();
}

std::string complaint(const std::string &typed)
{
    try {
        parse_events(typed);
    } catch (const failure &wrong) {
        EXPECT_EQ(wrong.kind, exit_usage);
        return wrong.what();
    }
    return "none";
}

} // namespace

TEST(event_sets, are_numbers_and_ranges)
{
    EXPECT_EQ(numbers("40"), "[40]");
    EXPECT_EQ(numbers("1-8,40"), "[1,2,3,4,5,6,7,8,40]");
    EXPECT_EQ(numbers("64,0x10,1"), "[1,16,64]");
}

TEST(event_sets, hold_every_event_when_all_are_wanted)
{
    EXPECT_EQ(event_numbers(all_events()).size(), 64u);
}

TEST(event_sets, that_cannot_be_read_name_what_is_wrong)
{
    EXPECT_EQ(complaint("3,65"),
              "event \"65\": 65 is not from 1 to 64; events are numbered like 1-8,40");
    EXPECT_NE(complaint("8-1").find("event \"8-1\": the range runs backwards"), std::string::npos);
}

TEST(event_sets, of_any_other_form_are_refused)
{
    for (const char *text : {"", ",", "1,", "0", "-1", "1-", "1-2-3", "3.1", "all", "1 2", "1-65"})
        EXPECT_NE(complaint(text), "none") << '"' << text << '"';
}

TEST(event_sets, name_the_events_that_are_known)
{
    EXPECT_EQ(event_name(10), "power off");
    EXPECT_EQ(event_name(64), nullptr);
}
