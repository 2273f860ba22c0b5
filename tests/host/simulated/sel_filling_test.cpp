// What the log tells while it fills: that it is nearly full, from 384 entries on, and that it is
// full, with 512.

#include "chassisd/simulated/sel.h"
#include "sel_blade.h"

namespace chassisd::simulated
{

namespace
{

using events = std::vector<blade_event>;

const events nearly_full{blade_event::log_nearly_full};
const events full{blade_event::log_full};

class filling_blade : public sel_blade
{
  public:
    using sel_blade::sel_blade;

    void add_many(int count)
    {
        for (int i = 0; i < count; i++)
            add(record_of_type(0x02));
    }

    void erase()
    {
        clear(reserve(), initiate);
        let_pass(erase_duration);
    }
};

TEST(simulated_sel_filling, is_told_when_the_log_is_nearly_full_and_when_it_is_full)
{
    filling_blade blade(383);
    EXPECT_EQ(blade.events(), events{});
    blade.add_many(1);
    EXPECT_EQ(blade.events(), nearly_full);
    blade.add_many(127);
    EXPECT_EQ(blade.events(), events{});
    blade.add_many(1);
    EXPECT_EQ(blade.events(), full);
}

TEST(simulated_sel_filling, is_not_told_of_what_does_not_fit_any_more)
{
    filling_blade blade(511);
    blade.add_many(5);
    EXPECT_EQ(blade.events(), full);
}

TEST(simulated_sel_filling, that_was_so_from_the_start_is_not_told)
{
    EXPECT_EQ(filling_blade(512).events(), events{});
    filling_blade blade(384);
    blade.add_many(1);
    EXPECT_EQ(blade.events(), events{});
}

TEST(simulated_sel_filling, is_told_again_after_the_log_was_erased)
{
    filling_blade blade(512);
    blade.erase();
    blade.add_many(383);
    EXPECT_EQ(blade.events(), events{});
    blade.add_many(129);
    EXPECT_EQ(blade.events(), (events{blade_event::log_nearly_full, blade_event::log_full}));
}

TEST(simulated_sel_filling, is_not_told_again_when_single_entries_go_and_come)
{
    filling_blade blade(383);
    blade.add_many(1);
    blade.events();
    for (int i = 0; i < 3; i++) {
        blade.remove(0xFFFF, blade.reserve());
        blade.add_many(1);
    }
    EXPECT_EQ(blade.events(), events{});
}

TEST(simulated_sel_filling, is_told_again_after_every_entry_was_deleted)
{
    filling_blade blade(384);
    while (blade.count() > 0)
        blade.remove(0x0000, blade.reserve());
    blade.add_many(384);
    EXPECT_EQ(blade.events(), nearly_full);
}

TEST(simulated_sel_filling, is_also_told_when_the_blades_own_events_fill_the_log)
{
    filling_blade blade(383);
    blade.ask(0x00, 0x02, {0x03});
    EXPECT_EQ(blade.events(), (events{blade_event::reset, blade_event::log_nearly_full}));
}

TEST(simulated_sel_filling, is_told_by_a_record_that_the_log_does_not_keep)
{
    filling_blade blade(383);
    blade.add_many(129);
    const std::vector<alert> alerts = blade.alerts();
    ASSERT_EQ(alerts.size(), 2u);
    EXPECT_EQ(word_at(0, alerts[0].record), 0);
    EXPECT_EQ(long_at(3, alerts[0].record), start_time);
    EXPECT_EQ(from(10, alerts[0].record), (bytes{0x10, 0x58, 0x6F, 0x35, 0xFF, 75}));
    EXPECT_EQ(from(10, alerts[1].record), (bytes{0x10, 0x58, 0x6F, 0x04, 0xFF, 0xFF}));
}

TEST(simulated_sel_filling, keeps_events_that_happen_during_an_erasure)
{
    filling_blade blade;
    blade.clear(blade.reserve(), initiate);
    blade.ask(0x00, 0x02, {0x03});
    blade.let_pass(erase_duration);
    EXPECT_EQ(blade.count(), 1);
    EXPECT_EQ(blade.alerts().at(0).record, blade.last_entry());
}

} // namespace

} // namespace chassisd::simulated
