#include "cli/output.h"

#include <gtest/gtest.h>

#include "help/wrapped.h"

using namespace cli;

namespace
{

std::string written(format chosen, bool headed, const std::vector<report> &reports)
{
    testing::internal::CaptureStdout();
    output out(chosen, headed);
    for (size_t at = 0; at < reports.size(); ++at)
        out.blade(std::to_string(at + 1), reports[at]);
    out.finish();
    return testing::internal::GetCapturedStdout();
}

std::string for_people(const json &fields)
{
    return written(format::for_people, false, {tell(fields)});
}

} // namespace

TEST(output, lines_up_the_names_of_fields)
{
    EXPECT_EQ(for_people({{"id", "0x01"}, {"free_bytes", 7}, {"full", false}, {"seen", nullptr}}),
              "id:         0x01\nfree bytes: 7\nfull:       no\nseen:       -\n");
}

TEST(output, shows_a_list_of_objects_as_a_table)
{
    EXPECT_EQ(for_people({{"rows", {{{"a", "long one"}, {"b", 1}}, {{"a", "x"}, {"b", 22}}}}}),
              "A         B\nlong one  1\nx         22\n");
}

TEST(output, shows_an_empty_list_as_none)
{
    EXPECT_EQ(for_people({{"entries", json::array()}}), "entries: none\n");
}

TEST(output, heads_each_of_several_blades)
{
    const report one = tell({{"a", 1}});
    EXPECT_EQ(written(format::for_people, true, {one, one}), "blade 1\na: 1\n\nblade 2\na: 1\n");
}

TEST(output, is_valid_json_whatever_bytes_a_text_holds)
{
    const json told = json::parse(written(format::as_json, false, {tell({{"a", "\xFF\x01\""}})}));
    EXPECT_EQ(told[0]["blade"], "1");
    EXPECT_TRUE(told[0]["a"].is_string());
}

TEST(output, is_valid_json_when_there_is_nothing)
{
    EXPECT_EQ(json::parse(written(format::as_json, false, {})), json::array());
}

TEST(output, writes_only_the_bytes_in_binary)
{
    EXPECT_EQ(written(format::as_bytes, false, {tell({{"a", 1}}, {'x', 0, 'y'})}),
              std::string("x\0y", 3));
}

TEST(output, breaks_long_values_at_blanks)
{
    EXPECT_EQ(help::wrapped("aa bb cc dd", 5, 2), "aa bb\n  cc dd");
    EXPECT_EQ(help::wrapped("aaaaaaaa bb", 5, 0), "aaaaaaaa\nbb");
    EXPECT_EQ(help::wrapped("", 5, 0), "");
}

TEST(output, makes_the_text_of_a_blade_harmless)
{
    EXPECT_EQ(printable("Fan\x1b[2J\xC3  "), "Fan?[2J?");
    EXPECT_EQ(printable("   "), "");
}
