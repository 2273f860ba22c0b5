#include "cli/times.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

#include "cli/failure.h"

using namespace cli;

namespace
{

constexpr uint32_t march_2026 = 1772360430; // 2026-03-01T10:20:30Z

void live_in(const char *zone)
{
    setenv("TZ", zone, true);
    tzset();
}

} // namespace

TEST(times, are_shown_with_their_zone)
{
    live_in("XXX-5:30");
    EXPECT_EQ(format_time(march_2026, false), "2026-03-01T15:50:30+05:30");
    live_in("XXX+3");
    EXPECT_EQ(format_time(march_2026, false), "2026-03-01T07:20:30-03:00");
    EXPECT_EQ(format_time(march_2026, true), "2026-03-01T10:20:30Z");
}

TEST(times, after_2038_are_shown_right)
{
    EXPECT_EQ(format_time(0xFFFFFFFE, true), "2106-02-07T06:28:14Z");
}

TEST(times, that_are_none_say_what_they_are)
{
    EXPECT_EQ(format_time(0xFFFFFFFF, true), "unspecified");
    EXPECT_EQ(format_time(42, true), "42 s since start");
    EXPECT_EQ(format_time(0x20000000, true), "536870912 s since start");
    EXPECT_EQ(format_time(0x20000001, true), "1987-01-05T18:48:33Z");
}

TEST(times, are_read_as_they_are_shown)
{
    for (const char *zone : {"XXX-5:30", "XXX+3", "UTC"}) {
        live_in(zone);
        EXPECT_EQ(parse_time(format_time(march_2026, false)), march_2026);
        EXPECT_EQ(parse_time(format_time(march_2026, true)), march_2026);
    }
}

TEST(times, are_read_in_the_usual_variants)
{
    EXPECT_EQ(parse_time("1772360430"), march_2026);
    EXPECT_EQ(parse_time("2026-03-01 10:20:30Z"), march_2026);
    EXPECT_EQ(parse_time("2026-03-01T11:20:30+0100"), march_2026);
    EXPECT_EQ(parse_time("2026-03-01T10:20Z"), march_2026 - 30);
    EXPECT_EQ(parse_time("2024-02-29T00:00:00Z"), 1709164800u);
}

TEST(times, that_do_not_exist_are_refused)
{
    for (const char *text : {"2026-02-29T00:00:00Z", "2026-13-01T00:00:00Z", "2026-00-01T00:00:00Z",
                             "2026-01-32T00:00:00Z", "2026-01-01T24:00:00Z", "2026-01-01T00:60:00Z",
                             "2026-01-01T00:00:61Z", "2026-01-01T00:00:00+25:00"})
        EXPECT_THROW(parse_time(text), failure) << text;
}

TEST(times, without_a_zone_or_in_another_form_are_refused)
{
    for (const char *text : {"", "noon", "2026-03-01", "2026-03-01T10:20:30", "10:20:30Z", "-5",
                             "2026-03-01T10:20:30Zulu", "20260301T102030Z"})
        EXPECT_THROW(parse_time(text), failure) << text;
}

TEST(times, that_a_controller_would_misunderstand_are_refused)
{
    for (const char *text : {"0", "536870912", "4294967295", "99999999999", "1970-01-01T00:00:00Z",
                             "2200-01-01T00:00:00Z"})
        EXPECT_THROW(parse_time(text), failure) << text;
    EXPECT_EQ(parse_time("536870913"), 0x20000001u);
}
