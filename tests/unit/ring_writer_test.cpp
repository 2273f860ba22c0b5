// The producer's side of the ring.

#include <cstddef>
#include <thread>

#include "ring_fixture.h"

using namespace ruk_ipmi_testing;

namespace
{

using ring_writer = ring_test;

// A word of the region, by its offset.
uint32_t word_at(const ipmi_shm &region, size_t offset)
{
    uint32_t word;
    memcpy(&word, reinterpret_cast<const uint8_t *>(&region) + offset, sizeof word);
    return word;
}

} // namespace

TEST_F(ring_writer, refuses_a_missing_record)
{
    EXPECT_EQ(put_next_interrupt(1, &holder, nullptr), 0x5106u);
    EXPECT_EQ(put_next_interrupt(1, nullptr, nullptr), 0x5106u);
    EXPECT_EQ(platform.journal(),
              (events{error_line("Invalid parameter passed in put_next_interrupt \n"),
                      error_line("Invalid parameter passed in put_next_interrupt \n")}));
}

TEST_F(ring_writer, refuses_a_missing_holder)
{
    ipmi_interrupt record = interrupt(1);
    EXPECT_EQ(put_next_interrupt(1, nullptr, &record), 0xFFFFFFFFu);
    EXPECT_EQ(platform.journal(), (events{error_line("Error obtaining shared memory \n"),
                                          error_line("Error in getting the shm ptr ffffffff\n")}));
    EXPECT_EQ(bytes_of(record), bytes_of(interrupt(1)));
}

TEST_F(ring_writer, copies_the_whole_record_into_the_next_slot_and_nothing_elsewhere)
{
    memset(static_cast<void *>(&region), 0xEE, sizeof region);
    region.last_int_num = 41;
    region.next_slot = 17;
    ipmi_shm expected = region;
    EXPECT_EQ(put(42), 0u);

    expected.last_int_num = 42;
    expected.renumbered = 0;
    expected.next_slot = 18;
    expected.ring[17] = interrupt(42);
    expected.ring[17].prev_num = 42;
    EXPECT_TRUE(region == expected);
}

TEST_F(ring_writer, keeps_the_places_that_other_processes_know)
{
    put_each({41, 42});
    EXPECT_EQ(word_at(region, 0x0), 42u);
    EXPECT_EQ(word_at(region, 0x8), 2u);
    EXPECT_EQ(word_at(region, 0xC), 41u);
    EXPECT_EQ(word_at(region, 0xC + 212), 42u);
    EXPECT_EQ(bytes_at(reinterpret_cast<uint8_t *>(&region) + 0xC + 212 + 0x30, 164),
              bytes_at(interrupt(42).data, 164));
    put(1);
    EXPECT_EQ(word_at(region, 0x4), 1u);
    EXPECT_EQ(word_at(region, 0xC + 4), 41u);
}

TEST_F(ring_writer, stores_the_old_number_in_the_callers_record_and_touches_nothing_else_of_it)
{
    *out = interrupt(1);
    EXPECT_EQ(put_next_interrupt(1, &holder, out.get()), 0u);
    ipmi_interrupt expected = interrupt(1);
    expected.prev_num = 1;
    EXPECT_EQ(hex(out.content()), hex(bytes_of(expected)));
    EXPECT_TRUE(out.guards_hold());
}

TEST_F(ring_writer, announces_the_number_it_is_given_whatever_the_record_says)
{
    ipmi_interrupt record = interrupt(5);
    EXPECT_EQ(put_next_interrupt(9, &holder, &record), 0u);
    EXPECT_EQ(region.last_int_num, 9u);
    EXPECT_EQ(numbers(1), words{5});
    EXPECT_EQ(old_numbers(1), words{5});
}

TEST_F(ring_writer, goes_on_past_the_last_slot_only_at_the_next_interrupt)
{
    put_from_to(1, 200);
    EXPECT_EQ(region.next_slot, 200u);
    EXPECT_EQ(region.ring[199].int_num, 200u);
    EXPECT_EQ(put(201), 0u);
    EXPECT_EQ(region.next_slot, 1u);
    EXPECT_EQ(numbers(2), (words{201, 2}));
}

TEST_F(ring_writer, overwrites_the_oldest_when_the_ring_is_full)
{
    put_from_to(1, 205);
    EXPECT_EQ(numbers(7), (words{201, 202, 203, 204, 205, 6, 7}));
    EXPECT_EQ(region.ring[199].int_num, 200u);
    EXPECT_EQ(region.next_slot, 5u);
}

TEST_F(ring_writer, takes_the_same_number_again_and_gaps_for_no_step_back)
{
    put_each({7, 7, 100, 0xFFFFFFFF, 0xFFFFFFFF});
    EXPECT_EQ(numbers(5), (words{7, 7, 100, 0xFFFFFFFF, 0xFFFFFFFF}));
    EXPECT_EQ(old_numbers(5), numbers(5));
    EXPECT_EQ(region.renumbered, 0u);
}

TEST_F(ring_writer, takes_numbers_beyond_31_bits_for_large_ones)
{
    put_each({0x7FFFFFFF, 0x80000000});
    EXPECT_EQ(region.renumbered, 0u);
    EXPECT_EQ(put(0x7FFFFFFF), 0u);
    EXPECT_EQ(region.renumbered, 1u);
}

TEST_F(ring_writer, renumbers_the_ring_from_1_on_when_the_number_steps_back)
{
    put_each({10, 11, 12, 5});
    EXPECT_EQ(region.renumbered, 1u);
    EXPECT_EQ(region.last_int_num, 5u);
    EXPECT_EQ(numbers(5), (words{1, 2, 3, 5, 0}));
    EXPECT_EQ(old_numbers(5), (words{10, 11, 12, 13, 0}));
}

TEST_F(ring_writer, renumbers_nothing_but_the_numbers)
{
    put_each({10, 11});
    ipmi_shm expected = region;
    EXPECT_EQ(put(5), 0u);

    expected.last_int_num = 5;
    expected.renumbered = 1;
    expected.next_slot = 3;
    expected.ring[0].int_num = 1;
    expected.ring[1].int_num = 2;
    expected.ring[2] = interrupt(5);
    expected.ring[2].prev_num = 12;
    EXPECT_TRUE(region == expected);
}

TEST_F(ring_writer, renumbers_from_the_oldest_on_across_the_end_of_the_ring)
{
    put_from_to(1001, 1202);
    EXPECT_EQ(put(3), 0u);
    EXPECT_EQ(numbers(4), (words{199, 200, 3, 2}));
    EXPECT_EQ(old_numbers(4), (words{1201, 1202, 1203, 1004}));
    EXPECT_EQ(region.ring[199].int_num, 198u);
    EXPECT_EQ(region.ring[199].prev_num, 1200u);
}

TEST_F(ring_writer, renumbers_a_ring_that_has_just_become_full)
{
    put_from_to(1001, 1200);
    EXPECT_EQ(put(3), 0u);
    EXPECT_EQ(numbers(3), (words{3, 2, 3}));
    EXPECT_EQ(old_numbers(3), (words{1201, 1002, 1003}));
    EXPECT_EQ(region.ring[199].int_num, 200u);
}

TEST_F(ring_writer, leaves_slots_without_a_number_out_of_the_count)
{
    put_each({10, 11, 12});
    region.ring[1].int_num = 0;
    EXPECT_EQ(put(5), 0u);
    EXPECT_EQ(numbers(4), (words{1, 0, 2, 5}));
    EXPECT_EQ(old_numbers(4), (words{10, 0, 12, 13}));
}

TEST_F(ring_writer, forgets_the_old_numbers_at_the_second_step_back)
{
    put_each({10, 11, 5, 4});
    EXPECT_EQ(numbers(4), (words{1, 2, 3, 4}));
    EXPECT_EQ(old_numbers(4), (words{1, 2, 5, 6}));
    EXPECT_EQ(region.renumbered, 1u);
}

TEST_F(ring_writer, says_so_of_the_last_interrupt_only)
{
    put_each({10, 11, 5, 6});
    EXPECT_EQ(region.renumbered, 0u);
    EXPECT_EQ(numbers(4), (words{1, 2, 5, 6}));
    EXPECT_EQ(old_numbers(4), (words{10, 11, 12, 6}));
}

TEST_F(ring_writer, counts_the_old_numbering_on_beyond_its_end)
{
    put_each({0xFFFFFFFF, 0});
    EXPECT_EQ(numbers(2), (words{1, 0}));
    EXPECT_EQ(old_numbers(2), (words{0xFFFFFFFF, 0}));
    EXPECT_EQ(region.renumbered, 1u);
}

TEST_F(ring_writer, renumbers_nothing_while_slot_0_is_the_next)
{
    region.last_int_num = 10;
    region.ring[0] = interrupt(9);
    region.ring[1] = interrupt(8);
    EXPECT_EQ(put(5), 0u);
    EXPECT_EQ(region.renumbered, 1u);
    EXPECT_EQ(numbers(3), (words{5, 8, 0}));
    EXPECT_EQ(old_numbers(3), (words{11, 0xDEADDEAD, 0}));
}

TEST_F(ring_writer, leaves_the_counters_of_time_outs_alone)
{
    memset(region.timeouts, 0x77, sizeof region.timeouts);
    put_from_to(1001, 1201);
    EXPECT_EQ(put(1), 0u);
    EXPECT_EQ(bytes_of(region.timeouts), bytes(256, 0x77));
}

TEST_F(ring_writer, may_be_in_many_threads_at_once)
{
    const auto put_fifty = [] {
        void *own_holder = nullptr;
        for (int left = 50, tries = 0; left != 0 && tries < 100000; ++tries) {
            ipmi_interrupt record = interrupt(1);
            left -= put_next_interrupt(1, &own_holder, &record) == 0;
            std::this_thread::yield();
        }
    };
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i)
        writers.emplace_back(put_fifty);
    for (std::thread &writer : writers)
        writer.join();
    EXPECT_EQ(region.next_slot, 200u);
    EXPECT_EQ(numbers(200), words(200, 1));
}
