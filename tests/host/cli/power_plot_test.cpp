#include "cli/power_plot.h"

#include <gtest/gtest.h>

#include "cli/terminal.h"

using namespace cli;

namespace
{

constexpr canvas letters = {60, false, false};
constexpr canvas unicode = {60, false, true};

std::vector<std::string> plot(const std::vector<power_history> &blades, const canvas &on)
{
    return power_plot(blades, "Power", "noon", on);
}

} // namespace

TEST(power_plot, spans_its_scale_from_the_lowest_sample_to_the_highest)
{
    const auto lines = plot({{"1", {100, 170, 135}}}, unicode);
    EXPECT_EQ(lines[0].find("Power, 100 ▁ to 170 █"), 0U);
    EXPECT_NE(lines[2].find("▁█▄     135     100     170"), std::string::npos);
}

TEST(power_plot, has_one_scale_for_all_blades)
{
    const auto lines = plot({{"1", {0, 0}}, {"2", {70, 70}}}, letters);
    EXPECT_NE(lines[2].find(" .. "), std::string::npos);
    EXPECT_NE(lines[3].find(" ## "), std::string::npos);
}

TEST(power_plot, draws_what_never_changes_in_the_middle)
{
    EXPECT_NE(plot({{"1", {5, 5, 5}}}, letters)[2].find(" +++ "), std::string::npos);
}

TEST(power_plot, leaves_a_gap_where_a_sample_was_missed)
{
    const auto lines = plot({{"1", {0, {}, 7}}}, letters);
    EXPECT_NE(lines[2].find(". #       7"), std::string::npos);
}

TEST(power_plot, shows_no_present_number_when_the_latest_sample_was_missed)
{
    EXPECT_NE(plot({{"1", {7, {}}, "slow"}}, letters)[2].find("-       7       7"),
              std::string::npos);
}

TEST(power_plot, says_why_there_is_no_sample_at_all)
{
    const auto lines = plot({{"12", {{}}, "no such blade"}}, letters);
    EXPECT_EQ(lines[0].find("Power  "), 0U);
    EXPECT_EQ(lines[2].find("12     no such blade"), 0U);
}

TEST(power_plot, shows_the_latest_samples_where_not_all_fit)
{
    power_history long_one{"1"};
    for (int each = 0; each < 1000; ++each)
        long_one.samples.emplace_back(static_cast<uint16_t>(each < 990 ? 7 : 0));
    const auto lines = plot({long_one}, letters);
    EXPECT_EQ(columns_of(lines[2]), 60U);
    EXPECT_NE(lines[2].find("#..........       0       0       7"), std::string::npos);
}

TEST(power_plot, is_never_wider_than_the_terminal)
{
    for (const size_t width : {31U, 40U, 80U, 500U})
        for (const std::string &line : plot({{"1", {1, 9}}, {"2"}}, {width, false, true}))
            EXPECT_LE(columns_of(line), width) << line;
}

TEST(power_plot, takes_the_largest_numbers)
{
    const auto lines = plot({{"1", {0, 0xFFFF}}}, letters);
    EXPECT_NE(lines[2].find(".#   65535"), std::string::npos);
}

TEST(power_plot, shows_nothing_of_no_blades)
{
    EXPECT_EQ(plot({}, letters).size(), 2U);
}
