// The clock of the System Event Log.

#include "sel_blade.h"

namespace chassisd::simulated
{

namespace
{

using std::chrono::seconds;

TEST(simulated_sel_clock, starts_with_the_hosts_time_and_runs)
{
    sel_blade blade;
    EXPECT_EQ(long_at(1, blade.storage(0x48)), start_time);
    blade.let_pass(seconds(3600));
    EXPECT_EQ(long_at(1, blade.storage(0x48)), start_time + 3600);
}

TEST(simulated_sel_clock, runs_on_from_the_time_it_was_set_to)
{
    sel_blade blade;
    EXPECT_EQ(blade.storage(0x49, {0x00, 0xCA, 0x9A, 0x3B}), (bytes{0x00})); // 1,000,000,000
    EXPECT_EQ(long_at(1, blade.storage(0x48)), 1000000000u);
    blade.let_pass(seconds(5));
    EXPECT_EQ(long_at(1, blade.storage(0x48)), 1000000005u);
}

TEST(simulated_sel_clock, can_be_set_to_any_time)
{
    sel_blade blade;
    for (const bytes &time : {bytes{0, 0, 0, 0}, bytes{0xFE, 0xFF, 0xFF, 0xFF}}) {
        blade.storage(0x49, time);
        EXPECT_EQ(from(1, blade.storage(0x48)), time);
    }
}

TEST(simulated_sel_clock, stamps_the_entries_that_follow_its_setting)
{
    sel_blade blade;
    blade.storage(0x49, {0x00, 0xCA, 0x9A, 0x3B});
    blade.add(record_of_type(0x02));
    EXPECT_EQ(long_at(3, blade.record(0xFFFF)), 1000000000u);
    EXPECT_EQ(long_at(6, blade.info()), 1000000000u);
}

TEST(simulated_sel_clock, leaves_the_sdr_repositorys_time_alone)
{
    sel_blade blade;
    blade.storage(0x49, {0, 0, 0, 0});
    EXPECT_EQ(long_at(1, blade.storage(0x28)), start_time);
}

TEST(simulated_sel_clock, has_no_utc_offset_at_first)
{
    EXPECT_EQ(sel_blade().storage(0x5C), (bytes{0x00, 0xFF, 0x07}));
}

TEST(simulated_sel_clock, keeps_a_utc_offset_of_up_to_a_day_either_way)
{
    sel_blade blade;
    for (const int minutes : {-1440, -60, 0, 330, 1440, 0x07FF}) {
        const bytes offset = le16_bytes(static_cast<uint16_t>(minutes));
        EXPECT_EQ(blade.storage(0x5D, offset), (bytes{0x00}));
        EXPECT_EQ(blade.storage(0x5C), joined({0x00}, offset));
    }
}

TEST(simulated_sel_clock, refuses_a_utc_offset_of_more_than_a_day)
{
    sel_blade blade;
    for (const int minutes : {-1441, 1441, 0x07FE, 0x0800, 0x7FFF, -32768})
        EXPECT_EQ(blade.storage(0x5D, le16_bytes(static_cast<uint16_t>(minutes))), (bytes{0xC9}));
    EXPECT_EQ(blade.storage(0x5C), (bytes{0x00, 0xFF, 0x07}));
}

} // namespace

} // namespace chassisd::simulated
