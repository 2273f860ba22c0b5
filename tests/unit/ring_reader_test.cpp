// The readers' side of the ring.

#include "ring_fixture.h"

using namespace ruk_ipmi_testing;

namespace
{

class ring_reader : public ring_test
{
  protected:
    // A ring whose numbers went back from 12 to 5.
    void set_back() { put_each({10, 11, 12, 5}); }

    // The number that the reader, who stands behind `number`, gets.
    uint32_t next_behind(uint32_t number, uint32_t continuing = 0)
    {
        EXPECT_EQ(get_behind(number, continuing), 0u);
        return *position;
    }

    // There was nothing to read, and nothing was said.
    bool nothing_new(uint32_t number, uint32_t continuing)
    {
        platform.forget();
        return next_behind(number, continuing) == number && out.untouched() &&
               platform.log().empty();
    }

    // It was looked for and not found.
    bool nothing_found(uint32_t number, uint32_t continuing)
    {
        platform.forget();
        return next_behind(number, continuing) == number && out.untouched() &&
               platform.log().size() == 1;
    }
};

} // namespace

TEST_F(ring_reader, refuses_a_missing_record_or_position)
{
    EXPECT_EQ(get_next_interrupt(position.get(), &holder, nullptr, 0), 0x5106u);
    EXPECT_EQ(get_next_interrupt(nullptr, &holder, out.get(), 0), 0x5106u);
    EXPECT_EQ(get_next_interrupt(nullptr, nullptr, nullptr, 0), 0x5106u);
    EXPECT_EQ(platform.journal(),
              events(3, error_line("Invalid parameter passed in get_next_interrupt \n")));
    EXPECT_EQ(*position, 0u);
    EXPECT_TRUE(out.untouched());
}

TEST_F(ring_reader, refuses_a_missing_holder)
{
    EXPECT_EQ(get_next_interrupt(position.get(), nullptr, out.get(), 0), 0xFFFFFFFFu);
    EXPECT_EQ(platform.journal(), (events{error_line("Error obtaining shared memory \n"),
                                          error_line("Error in getting the shm ptr ffffffff\n")}));
    EXPECT_EQ(*position, 0u);
    EXPECT_TRUE(out.untouched());
}

TEST_F(ring_reader, finds_nothing_new_in_a_ring_that_was_never_written)
{
    EXPECT_EQ(get(), 0u);
    EXPECT_EQ(*position, 0u);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(),
              (events{attached(), finds_region, creates_mutex, locks, unlocks}));
}

TEST_F(ring_reader, copies_the_whole_interrupt_and_writes_nowhere_else)
{
    put_each({1});
    const ipmi_shm before = region;
    EXPECT_EQ(get(), 0u);
    EXPECT_EQ(hex(out.content()), hex(bytes_of(before.ring[0])));
    EXPECT_TRUE(out.guards_hold());
    EXPECT_TRUE(position.guards_hold());
    EXPECT_TRUE(region == before);
}

TEST_F(ring_reader, tells_the_debug_log_the_number_and_the_events)
{
    ipmi_interrupt record = interrupt(1);
    record.ies = {{0x00, 0x01, 0x0A, 0x7F, 0x80, 0xA5, 0xFE, 0xFF}};
    put_next_interrupt(0x80000000, &holder, &record);
    region.ring[0].int_num = 0xFFFFFFFE;
    platform.forget();
    EXPECT_EQ(get(), 0u);
    EXPECT_EQ(platform.log(), (events{debug_line("get_next_interrupt(): new int -2 ies bytes: "
                                                 "00 01 0A 7F 80 A5 FE FF\n")}));
}

TEST_F(ring_reader, gets_one_interrupt_at_a_time_oldest_first)
{
    put_each({1, 2, 3});
    for (const uint32_t number : {1u, 2u, 3u}) {
        EXPECT_EQ(get(number != 1), 0u);
        EXPECT_EQ(*position, number);
        EXPECT_EQ(out->int_num, number);
    }
    EXPECT_EQ(get(1), 0u);
    EXPECT_EQ(*position, 3u);
    EXPECT_EQ(out->int_num, 3u);
}

TEST_F(ring_reader, stands_where_it_likes_and_disturbs_no_other)
{
    put_each({1, 2, 3});
    EXPECT_EQ(next_behind(2), 3u);
    EXPECT_EQ(next_behind(0), 1u);
    EXPECT_EQ(next_behind(1), 2u);
    EXPECT_EQ(next_behind(0), 1u);
}

TEST_F(ring_reader, passes_over_gaps_in_the_numbering)
{
    put_each({10, 20, 30});
    EXPECT_EQ(next_behind(9), 10u);
    EXPECT_EQ(next_behind(10), 20u);
    EXPECT_EQ(next_behind(15), 20u);
    EXPECT_EQ(next_behind(29), 30u);
}

TEST_F(ring_reader, takes_numbers_beyond_31_bits_for_large_ones)
{
    put_each({0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
    EXPECT_EQ(next_behind(0), 0x7FFFFFFFu);
    EXPECT_EQ(next_behind(0x7FFFFFFF), 0x80000000u);
    EXPECT_EQ(next_behind(0x80000000), 0xFFFFFFFFu);
}

TEST_F(ring_reader, that_was_overtaken_gets_the_oldest_that_is_still_there)
{
    put_from_to(1, 205);
    EXPECT_EQ(next_behind(0), 6u);
    EXPECT_EQ(next_behind(3), 6u);
    EXPECT_EQ(next_behind(6), 7u);
}

TEST_F(ring_reader, reads_a_full_ring_to_its_end)
{
    put_from_to(1, 305);
    for (uint32_t number = 106; number <= 305; ++number) {
        EXPECT_EQ(get(1), 0u);
        ASSERT_EQ(*position, number);
        ASSERT_EQ(out->int_num, number);
    }
    EXPECT_EQ(next_behind(305, 1), 305u);
}

TEST_F(ring_reader, begins_at_slot_0_while_the_next_write_would_wrap)
{
    put_from_to(1, 200);
    EXPECT_EQ(next_behind(0), 1u);
    EXPECT_EQ(next_behind(199), 200u);
}

TEST_F(ring_reader, goes_by_the_age_of_the_slots_and_not_by_their_numbers)
{
    region.last_int_num = 9;
    region.next_slot = 1;
    region.ring[0] = interrupt(9);
    region.ring[1] = interrupt(7);
    region.ring[199] = interrupt(8);
    EXPECT_EQ(next_behind(6), 7u);
    EXPECT_EQ(next_behind(7), 8u);
    EXPECT_EQ(next_behind(8), 9u);
    EXPECT_EQ(next_behind(0), 7u);
}

TEST_F(ring_reader, finds_nothing_new_behind_the_last_number)
{
    put_each({1, 2});
    EXPECT_TRUE(nothing_new(2, 0));
    EXPECT_TRUE(nothing_new(2, 1));
}

TEST_F(ring_reader, says_what_the_callers_record_held_when_the_interrupt_is_gone)
{
    put_each({1, 2});
    init_shm_ptr(&holder);
    EXPECT_TRUE(nothing_found(1, 0));
    EXPECT_TRUE(nothing_found(1, 1));
    EXPECT_EQ(platform.log(), (events{debug_line("get_next_interrupt(): new int 1 ies bytes: "
                                                 "A5 A5 A5 A5 A5 A5 A5 A5\n")}));
    EXPECT_EQ(platform.calls().back(), unlocks);
}

TEST_F(ring_reader, finds_its_place_by_the_old_numbers_once_the_ring_was_set_back)
{
    set_back();
    EXPECT_EQ(next_behind(12), 5u);
    EXPECT_EQ(out->prev_num, 13u);
    EXPECT_EQ(next_behind(11), 3u);
    EXPECT_EQ(out->prev_num, 12u);
}

TEST_F(ring_reader, goes_by_the_old_numbers_in_every_call_while_it_is_behind_the_last_one)
{
    set_back();
    for (const uint32_t continuing : {0u, 1u}) {
        EXPECT_EQ(next_behind(4, continuing), 1u);
        EXPECT_EQ(next_behind(0, continuing), 1u);
    }
}

TEST_F(ring_reader, goes_by_the_old_numbers_in_the_first_call_only_when_it_is_not_behind)
{
    set_back();
    EXPECT_EQ(next_behind(5, 0), 1u);
    EXPECT_EQ(next_behind(6, 0), 1u);
    blank_out();
    for (const uint32_t continuing : {1u, 2u, 0xFFFFFFFFu}) {
        EXPECT_TRUE(nothing_new(5, continuing));
        EXPECT_TRUE(nothing_new(6, continuing));
    }
}

TEST_F(ring_reader, that_is_ahead_of_everything_looks_once_and_finds_nothing)
{
    put_each({1, 2});
    EXPECT_TRUE(nothing_found(3, 0));
    EXPECT_TRUE(nothing_new(3, 1));
    set_back();
    EXPECT_TRUE(nothing_found(13, 0));
    EXPECT_TRUE(nothing_new(13, 1));
}

TEST_F(ring_reader, that_missed_a_setting_back_finds_its_place_while_the_old_numbers_are_there)
{
    set_back();
    put_each({6});
    EXPECT_EQ(next_behind(12, 0), 5u);
    EXPECT_EQ(next_behind(10, 0), 2u);
    EXPECT_EQ(next_behind(5, 0), 6u);
}
