// How the shared region is locked, what is said when that fails, and how the region is emptied.

#include <functional>

#include "ring_fixture.h"

using namespace ruk_ipmi_testing;

namespace
{

using ring_init = ring_test;

// A function that finds the region, locks it and works on it.
struct access {
    std::string name;
    std::function<uint32_t(void **holder, uint32_t *position, ipmi_interrupt *record)> call;
    events last_words; // what it says when all went well
};

void PrintTo(const access &access, std::ostream *out)
{
    *out << access.name;
}

class ring_access : public ring_test, public ::testing::WithParamInterface<access>
{
  protected:
    ring_access() { begin(); }

    // Begins with something in the region, and with something to read, write and clear.
    void begin()
    {
        region.last_int_num = 7;
        region.next_slot = 1;
        region.ring[0] = interrupt(7);
        region.timeouts[3] = {5, 6};
        stand_behind(6);
        *out = interrupt(8);
        before = region;
    }

    uint32_t call() { return GetParam().call(&holder, position.get(), out.get()); }

    // What it was called with is as it was.
    void expect_nothing_changed()
    {
        EXPECT_TRUE(region == before);
        EXPECT_EQ(*position, 6u);
        EXPECT_EQ(hex(out.content()), hex(bytes_of(interrupt(8))));
    }

    ipmi_shm before;
};

INSTANTIATE_TEST_SUITE_P(
    each, ring_access,
    ::testing::Values(
        access{"init", [](auto holder, auto, auto) { return init_shm_ptr(holder); }, {}},
        access{"put",
               [](auto holder, auto, auto record) { return put_next_interrupt(8, holder, record); },
               {debug_line("After copying data \n")}},
        access{"get",
               [](auto holder, auto position, auto record) {
                   return get_next_interrupt(position, holder, record, 0);
               },
               {debug_line("get_next_interrupt(): new int 7 ies bytes: "
                           "93 9A A1 A8 AF B6 BD C4\n")}}),
    [](const auto &one) { return one.param.name; });

events operator+(events head, const events &tail)
{
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

} // namespace

// What init, put and get have in common.

TEST_P(ring_access, finds_the_region_makes_the_mutex_locks_works_and_unlocks)
{
    EXPECT_EQ(call(), 0u);
    EXPECT_EQ(holder, &region);
    EXPECT_EQ(platform.journal(),
              (events{attached(), finds_region, creates_mutex, locks, unlocks}) +
                  GetParam().last_words);
}

TEST_P(ring_access, attaches_to_the_mutex_that_is_there_already)
{
    holder = &region;
    platform.os.let_go("ruk_mutex_ipmi");
    EXPECT_EQ(call(), 0u);
    EXPECT_EQ(platform.journal(),
              (events{creates_mutex, identifies_mutex, locks, unlocks}) + GetParam().last_words);
}

TEST_P(ring_access, looks_the_mutex_up_anew_each_time)
{
    EXPECT_EQ(init_shm_ptr(&holder), 0u);
    begin();
    platform.forget();
    EXPECT_EQ(call(), 0u);
    EXPECT_EQ(platform.journal(),
              (events{creates_mutex, identifies_mutex, locks, unlocks}) + GetParam().last_words);
}

TEST_P(ring_access, tells_and_returns_why_it_could_not_attach)
{
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(call(), 0x5001u);
    EXPECT_EQ(platform.journal(),
              (events{attached(), error_line("Error obtaining shared memory 5001\n"),
                      error_line("Error in getting the shm ptr 5001\n")}));
    EXPECT_EQ(holder, nullptr);
    expect_nothing_changed();
}

TEST_P(ring_access, tells_and_returns_why_there_is_no_region)
{
    platform.os.fails("find_component_shm", 0xABCDEF01);
    EXPECT_EQ(call(), 0xABCDEF01u);
    EXPECT_EQ(
        platform.journal(),
        (events{attached(), finds_region, error_line("Error obtaining shared memory abcdef01 \n"),
                detached(), error_line("Error in getting the shm ptr abcdef01\n")}));
    EXPECT_EQ(holder, nullptr);
    expect_nothing_changed();
}

TEST_P(ring_access, tells_and_returns_why_the_mutex_was_not_to_be_had)
{
    platform.os.fails("os_mutex_create", 0x5201);
    platform.os.fails("os_mutex_ident", 0x5202);
    EXPECT_EQ(call(), 0x5202u);
    EXPECT_EQ(platform.journal(),
              (events{attached(), finds_region, creates_mutex, identifies_mutex,
                      debug_line("Error in acqiuiring the mutex 5202\n"),
                      error_line("Error in acquiring the mutex the shm ptr 5202\n")}));
    expect_nothing_changed();
}

TEST_P(ring_access, tells_and_returns_why_the_lock_was_not_to_be_had)
{
    platform.os.fails("os_mutex_get", 0xABCDEF01);
    EXPECT_EQ(call(), 0xABCDEF01u);
    EXPECT_EQ(platform.journal(),
              (events{attached(), finds_region, creates_mutex, locks,
                      debug_line("Error in acqiuiring the mutex abcdef01\n"),
                      error_line("Error in acquiring the mutex the shm ptr abcdef01\n")}));
    expect_nothing_changed();
}

TEST_P(ring_access, changes_nothing_and_unlocks_nothing_while_another_holds_the_mutex)
{
    platform.os.hold("ruk_mutex_ipmi");
    EXPECT_EQ(call(), scripted_os::busy);
    expect_nothing_changed();
    EXPECT_EQ(platform.calls().back(), locks);
    platform.os.let_go("ruk_mutex_ipmi");
    EXPECT_EQ(call(), 0u);
}

TEST_P(ring_access, stays_attached_when_it_could_not_lock)
{
    platform.os.fails("os_mutex_get", 0x5203);
    EXPECT_EQ(call(), 0x5203u);
    EXPECT_EQ(call(), 0u);
    EXPECT_EQ(holder, &region);
    EXPECT_EQ(platform.attached_times(), 1u);
}

TEST_P(ring_access, does_not_care_how_the_unlocking_went)
{
    platform.os.fails("os_mutex_put", 0x5208);
    EXPECT_EQ(call(), 0u);
    EXPECT_EQ(platform.log(), GetParam().last_words);
}

TEST_P(ring_access, works_on_whatever_the_holder_points_at)
{
    guarded<ipmi_shm> other;
    *other = before;
    holder = other.get();
    EXPECT_EQ(call(), 0u);
    EXPECT_TRUE(region == before);
    EXPECT_TRUE(other.guards_hold());
    EXPECT_EQ(platform.attached_times(), 0u);
}

// init_shm_ptr.

TEST_F(ring_init, refuses_a_missing_holder)
{
    EXPECT_EQ(init_shm_ptr(nullptr), 0x5106u);
    EXPECT_EQ(platform.journal(),
              (events{error_line("Invalid parameter passed in init_shm_ptr \n")}));
}

TEST_F(ring_init, empties_slots_and_counters_and_keeps_the_numbering)
{
    memset(static_cast<void *>(&region), 0xEE, sizeof region);
    EXPECT_EQ(init_shm_ptr(&holder), 0u);
    ipmi_shm empty{};
    empty.last_int_num = 0xEEEEEEEE;
    empty.renumbered = 0xEEEEEEEE;
    EXPECT_TRUE(region == empty);
}

TEST_F(ring_init, leaves_a_ring_that_is_filled_from_slot_0)
{
    put_each({1, 2, 3});
    EXPECT_EQ(init_shm_ptr(&holder), 0u);
    EXPECT_EQ(put(4), 0u);
    EXPECT_EQ(numbers(3), (words{4, 0, 0}));
    EXPECT_EQ(region.next_slot, 1u);
}
