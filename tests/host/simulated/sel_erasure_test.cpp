// Deleting one entry of the System Event Log, and erasing them all.

#include "sel_blade.h"

namespace chassisd::simulated
{

namespace
{

using std::chrono::milliseconds;

constexpr milliseconds erasing_takes{500};

// A log that is being erased at the moment.
class erasing_sel_blade : public sel_blade
{
  public:
    erasing_sel_blade() : reservation(reserve()) { clear(reservation, initiate); }

    const uint16_t reservation;
};

TEST(simulated_sel_deletion, takes_one_entry_out_and_tells_which)
{
    sel_blade blade;
    const uint16_t second = word_at(1, blade.entry(0x0000));
    EXPECT_EQ(blade.remove(second, blade.reserve()), joined({0x00}, le16_bytes(second)));
    EXPECT_EQ(blade.entry(second), (bytes{0xCB}));
    EXPECT_EQ(blade.count(), 11);
    EXPECT_EQ(blade.walk().size(), 11u);
}

TEST(simulated_sel_deletion, finds_the_first_and_the_last_entry)
{
    sel_blade blade;
    for (const uint16_t end : std::vector<uint16_t>{0x0000, 0xFFFF}) {
        const uint16_t id = word_at(0, blade.record(end));
        EXPECT_EQ(blade.remove(end, blade.reserve()), joined({0x00}, le16_bytes(id)));
        EXPECT_EQ(blade.entry(id), (bytes{0xCB}));
    }
}

TEST(simulated_sel_deletion, is_dated_like_an_erasure)
{
    sel_blade blade;
    blade.let_pass(std::chrono::seconds(30));
    blade.remove(0x0000, blade.reserve());
    EXPECT_EQ(long_at(10, blade.info()), start_time + 30);
}

TEST(simulated_sel_deletion, needs_a_valid_reservation)
{
    sel_blade blade;
    EXPECT_EQ(blade.remove(0x0000, 0), (bytes{0xC5}));
    EXPECT_EQ(blade.count(), 12);
}

TEST(simulated_sel_deletion, uses_its_reservation_up)
{
    sel_blade blade;
    const uint16_t reservation = blade.reserve();
    blade.remove(0x0000, reservation);
    EXPECT_EQ(blade.remove(0x0000, reservation), (bytes{0xC5}));
    EXPECT_EQ(blade.count(), 11);
}

TEST(simulated_sel_deletion, refuses_an_entry_that_is_not_there)
{
    sel_blade blade;
    EXPECT_EQ(blade.remove(0x1234, blade.reserve()), (bytes{0xCB}));
}

TEST(simulated_sel_erasure, is_in_progress_at_first_and_completed_after_a_while)
{
    sel_blade blade;
    const uint16_t reservation = blade.reserve();
    EXPECT_EQ(blade.clear(reservation, initiate), (bytes{0x00, 0x00}));
    blade.let_pass(erasing_takes - milliseconds(1));
    EXPECT_EQ(blade.clear(reservation, get_status), (bytes{0x00, 0x00}));
    blade.let_pass(milliseconds(1));
    EXPECT_EQ(blade.clear(reservation, get_status), (bytes{0x00, 0x01}));
}

TEST(simulated_sel_erasure, leaves_an_empty_log_and_its_date)
{
    erasing_sel_blade blade;
    blade.let_pass(erasing_takes);
    EXPECT_EQ(blade.count(), 0);
    EXPECT_EQ(word_at(4, blade.info()), 512 * 16);
    EXPECT_EQ(long_at(10, blade.info()), start_time);
    EXPECT_EQ(blade.entry(0x0000), (bytes{0xCB}));
}

TEST(simulated_sel_erasure, makes_room_and_forgets_the_overflow)
{
    sel_blade blade(512);
    blade.add(record_of_type(0x02));
    blade.clear(blade.reserve(), initiate);
    blade.let_pass(erasing_takes);
    EXPECT_EQ(blade.info()[14], 0x0B);
    EXPECT_EQ(blade.add(record_of_type(0x02))[0], 0x00);
}

TEST(simulated_sel_erasure, is_over_before_it_was_ever_asked_for)
{
    sel_blade blade;
    EXPECT_EQ(blade.clear(blade.reserve(), get_status), (bytes{0x00, 0x01}));
    EXPECT_EQ(blade.count(), 12);
}

TEST(simulated_sel_erasure, is_not_started_again_while_it_goes_on)
{
    erasing_sel_blade blade;
    blade.let_pass(erasing_takes - milliseconds(1));
    EXPECT_EQ(blade.clear(blade.reservation, initiate), (bytes{0x00, 0x00}));
    blade.let_pass(milliseconds(1));
    EXPECT_EQ(blade.clear(blade.reservation, get_status), (bytes{0x00, 0x01}));
}

TEST(simulated_sel_erasure, needs_a_valid_reservation_to_start)
{
    sel_blade blade;
    EXPECT_EQ(blade.clear(0, initiate), (bytes{0xC5}));
    const uint16_t older = blade.reserve();
    blade.reserve();
    EXPECT_EQ(blade.clear(older, initiate), (bytes{0xC5}));
    EXPECT_EQ(blade.count(), 12);
}

TEST(simulated_sel_erasure, needs_a_valid_reservation_to_tell_its_status)
{
    erasing_sel_blade blade;
    EXPECT_EQ(blade.clear(static_cast<uint16_t>(blade.reservation + 1), get_status), (bytes{0xC5}));
}

TEST(simulated_sel_erasure, spares_an_entry_that_came_after_the_reservation)
{
    sel_blade blade;
    const uint16_t reservation = blade.reserve();
    blade.add(record_of_type(0x02));
    EXPECT_EQ(blade.clear(reservation, initiate), (bytes{0xC5}));
    EXPECT_EQ(blade.count(), 13);
}

TEST(simulated_sel_erasure, is_refused_without_the_letters_clr)
{
    sel_blade blade;
    const bytes reservation = le16_bytes(blade.reserve());
    for (const bytes &letters : {bytes{'c', 'L', 'R'}, bytes{'C', 'L', 'L'}, bytes{'C', 0, 'R'}})
        EXPECT_EQ(blade.storage(0x47, joined(joined(reservation, letters), {initiate})),
                  (bytes{0xCC}));
    EXPECT_EQ(blade.count(), 12);
}

TEST(simulated_sel_erasure, is_refused_for_an_action_that_does_not_exist)
{
    sel_blade blade;
    const uint16_t reservation = blade.reserve();
    EXPECT_EQ(blade.clear(reservation, 0x01), (bytes{0xCC}));
    EXPECT_EQ(blade.clear(reservation, 0xAB), (bytes{0xCC}));
    EXPECT_EQ(blade.count(), 12);
}

TEST(simulated_sel_erasure, keeps_others_from_the_log_while_it_goes_on)
{
    erasing_sel_blade blade;
    EXPECT_EQ(blade.info(), (bytes{0x81}));
    EXPECT_EQ(blade.storage(0x42), (bytes{0x81})) << "reserve";
    EXPECT_EQ(blade.entry(0x0000), (bytes{0x81}));
    EXPECT_EQ(blade.add(record_of_type(0x02)), (bytes{0x81}));
    EXPECT_EQ(blade.remove(0x0000, blade.reservation), (bytes{0x81}));
}

TEST(simulated_sel_erasure, keeps_nobody_from_the_clock)
{
    erasing_sel_blade blade;
    EXPECT_EQ(blade.storage(0x48)[0], 0x00);
    EXPECT_EQ(blade.storage(0x49, {0, 0, 0, 0}), (bytes{0x00}));
}

TEST(simulated_sel_erasure, is_not_prolonged_when_the_log_clock_is_set_back)
{
    erasing_sel_blade blade;
    blade.storage(0x49, {0, 0, 0, 0});
    blade.let_pass(erasing_takes);
    EXPECT_EQ(blade.count(), 0);
}

} // namespace

} // namespace chassisd::simulated
