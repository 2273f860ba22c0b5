// The ring after some process wrote nonsense into it: all may be lost but the reader and writer.

#include <sys/mman.h>
#include <unistd.h>

#include "ring_fixture.h"

using namespace ruk_ipmi_testing;

namespace
{

enum class fence { before, behind };

// A region with a fence at one of its ends: whoever reads or writes across it is killed.
class fenced_region
{
  public:
    explicit fenced_region(fence fence)
    {
        const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        const size_t room = (sizeof(ipmi_shm) + page - 1) / page * page;
        length = page + room + page;
        memory = mmap(nullptr, length, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        uint8_t *inside = static_cast<uint8_t *>(memory) + page;
        if (memory == MAP_FAILED || mprotect(inside, room, PROT_READ | PROT_WRITE) != 0)
            throw std::bad_alloc();
        const size_t start = fence == fence::before ? 0 : room - sizeof(ipmi_shm);
        region = new (inside + start) ipmi_shm{};
    }

    fenced_region(const fenced_region &) = delete;
    fenced_region &operator=(const fenced_region &) = delete;
    ~fenced_region() { munmap(memory, length); }

    ipmi_shm *get() { return region; }

  private:
    size_t length;
    void *memory;
    ipmi_shm *region;
};

class damaged_ring : public ring_test, public ::testing::WithParamInterface<fence>
{
  protected:
    damaged_ring() { holder = &region; }

    // 200 interrupts numbered from 1001 on, and counters that look like interrupts.
    void fill()
    {
        for (uint32_t i = 0; i < IPMI_RING_SLOTS; ++i) {
            region.ring[i] = interrupt(1001 + i);
            region.ring[i].prev_num = 1001 + i;
        }
        region.last_int_num = 1200;
        region.renumbered = 0;
        memset(region.timeouts, 0x77, sizeof region.timeouts);
    }

    void fill_with(uint32_t number, uint32_t old_number)
    {
        for (ipmi_interrupt &slot : region.ring) {
            slot.int_num = number;
            slot.prev_num = old_number;
        }
    }

    // How many of `calls` calls in a row give an interrupt.
    int delivered(int calls, uint32_t continuing)
    {
        int count = 0;
        for (int i = 0; i < calls; ++i) {
            blank_out();
            EXPECT_EQ(get(continuing), 0u);
            count += !out.untouched();
        }
        return count;
    }

    fenced_region fenced{GetParam()};
    ipmi_shm &region = *fenced.get();
};

INSTANTIATE_TEST_SUITE_P(with_a_fence, damaged_ring,
                         ::testing::Values(fence::before, fence::behind), [](const auto &one) {
                             return one.param == fence::before ? "before" : "behind";
                         });

constexpr uint32_t no_slots[] = {200, 201, 231, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 20260520};

} // namespace

TEST_P(damaged_ring, is_written_at_slot_0_when_the_next_slot_is_none)
{
    for (const uint32_t no_slot : no_slots) {
        fill();
        ipmi_shm expected = region;
        region.next_slot = no_slot;
        EXPECT_EQ(put(2001), 0u);

        expected.last_int_num = 2001;
        expected.next_slot = 1;
        expected.ring[0] = interrupt(2001);
        expected.ring[0].prev_num = 2001;
        EXPECT_TRUE(region == expected) << no_slot;
    }
}

TEST_P(damaged_ring, is_read_from_slot_0_on_when_the_next_slot_is_none)
{
    for (const uint32_t no_slot : no_slots) {
        fill();
        region.next_slot = no_slot;
        EXPECT_EQ(get_behind(0), 0u);
        EXPECT_EQ(*position, 1001u);
        EXPECT_EQ(get_behind(1199), 0u);
        EXPECT_EQ(*position, 1200u);
    }
}

TEST_P(damaged_ring, is_read_no_further_than_its_slots)
{
    for (const uint32_t start : {0u, 1u, 199u, 200u, 201u, 0xFFFFFFFFu}) {
        fill();
        region.last_int_num = 0x80000000;
        region.next_slot = start;
        EXPECT_EQ(get_behind(1200), 0u);
        EXPECT_EQ(*position, 1200u) << start;
        EXPECT_TRUE(out.untouched());
    }
}

TEST_P(damaged_ring, is_renumbered_from_slot_0_on_when_the_next_slot_is_none)
{
    for (const uint32_t no_slot : no_slots) {
        fill();
        region.next_slot = no_slot;
        EXPECT_EQ(put(7), 0u);
        EXPECT_EQ(region.ring[0].int_num, 7u);
        for (uint32_t i = 1; i < IPMI_RING_SLOTS; ++i) {
            ASSERT_EQ(region.ring[i].int_num, 1 + i) << no_slot;
            ASSERT_EQ(region.ring[i].prev_num, 1001 + i) << no_slot;
        }
        EXPECT_EQ(bytes_of(region.timeouts), bytes(256, 0x77));
    }
}

TEST_P(damaged_ring, counts_as_renumbered_whatever_the_flag_is_but_0)
{
    for (const uint32_t flag : {1u, 2u, 0x100u, 0x80000000u, 0xFFFFFFFFu}) {
        fill();
        region.ring[0].prev_num = 5;
        region.renumbered = flag;
        EXPECT_EQ(get_behind(10), 0u);
        EXPECT_EQ(*position, 1002u) << flag;
        EXPECT_EQ(get_behind(1200, 1), 0u);
        EXPECT_EQ(*position, 1200u);
    }
}

TEST_P(damaged_ring, has_its_flag_mended_by_the_next_write)
{
    region.renumbered = 0xFFFFFFFF;
    EXPECT_EQ(put(1), 0u);
    EXPECT_EQ(region.renumbered, 0u);
    EXPECT_EQ(region.ring[0].prev_num, 1u);
    region.renumbered = 0xFFFFFFFF;
    EXPECT_EQ(put(0), 0u);
    EXPECT_EQ(region.renumbered, 1u);
}

TEST_P(damaged_ring, with_one_number_in_all_slots_is_read_once)
{
    fill_with(7, 7);
    region.last_int_num = 9;
    EXPECT_EQ(delivered(5, 1), 1);
    EXPECT_EQ(*position, 7u);
}

TEST_P(damaged_ring, with_the_highest_number_in_all_slots_has_nothing_behind_it)
{
    memset(static_cast<void *>(&region), 0xFF, sizeof region);
    EXPECT_EQ(delivered(5, 1), 1);
    EXPECT_EQ(*position, 0xFFFFFFFFu);
    EXPECT_EQ(delivered(5, 0), 0);
}

TEST_P(damaged_ring, whose_old_numbers_lead_back_to_where_they_began_ends_every_call)
{
    fill_with(1, 100);
    region.last_int_num = 50;
    region.renumbered = 1;
    EXPECT_EQ(delivered(5, 1), 5);
    EXPECT_EQ(*position, 1u);
}

TEST_P(damaged_ring, is_renumbered_when_all_its_numbers_are_the_highest)
{
    memset(static_cast<void *>(&region), 0xFF, sizeof region);
    EXPECT_EQ(put(0xFFFFFFFE), 0u);
    EXPECT_EQ(region.next_slot, 1u);
    EXPECT_EQ(region.ring[0].int_num, 0xFFFFFFFEu);
    EXPECT_EQ(region.ring[0].prev_num, 0u);
    EXPECT_EQ(region.ring[199].int_num, 200u);
    EXPECT_EQ(region.ring[199].prev_num, 0xFFFFFFFFu);
}

TEST_P(damaged_ring, hands_over_a_length_that_no_data_has_as_it_is)
{
    region.ring[0] = interrupt(1);
    region.ring[0].data_len = 0xFFFFFFFF;
    region.last_int_num = 1;
    EXPECT_EQ(get(), 0u);
    EXPECT_EQ(hex(out.content()), hex(bytes_of(region.ring[0])));
    EXPECT_TRUE(out.guards_hold());
}
