// The counters of time-outs.

#include "ruk_ipmi/timeouts.h"

#include <cstring>

#include "support/guarded.h"
#include "support/scripted_test.h"

using namespace ruk_ipmi_testing;

namespace
{

class timeout_counters : public scripted_test
{
  protected:
    timeout_counters()
    {
        platform.os.platform_info.fill(0xEEEEEEEE);
        chassis_has(16);
        *shm = {};
    }

    void chassis_has(uint32_t slots) { platform.os.platform_info[35] = slots; }

    uint32_t count(const blade_location &at, uint32_t retries = 0)
    {
        return SetTimeout(shm.get(), &at, retries, "tester", 99);
    }

    uint32_t read(const blade_location &at)
    {
        return GetTimeouts(shm.get(), &at, bumps.get(), sessions.get());
    }

    uint32_t clear(const blade_location &at) { return ClearTimeouts(shm.get(), &at); }

    // The entry that a location selects: the one that is counted in.
    int entry_of(const blade_location &at)
    {
        *shm = {};
        EXPECT_EQ(count(at), 0u);
        for (int i = 0; i < IPMI_TIMEOUT_ENTRIES; ++i)
            if (shm->timeouts[i].timeout_bumps == 1)
                return i;
        return -1;
    }

    guarded<ipmi_shm> shm;
    guarded<uint32_t> bumps, sessions;
};

// Locations that no entry of a chassis of 16 slots belongs to.
const blade_location strangers[] = {blade(0),     blade(33),   blade(255),
                                    blade(17, 2), blade(1, 3), blade(0, 1)};

} // namespace

// Which entry.

TEST_F(timeout_counters, of_a_whole_blade_are_those_of_its_slot)
{
    EXPECT_EQ(entry_of(blade(1)), 0);
    EXPECT_EQ(entry_of(blade(16)), 15);
    EXPECT_EQ(entry_of(blade(32)), 31);
}

TEST_F(timeout_counters, of_the_sub_slots_lie_a_chassis_apart)
{
    EXPECT_EQ(entry_of(blade(3, 1)), 2);
    EXPECT_EQ(entry_of(blade(3, 2)), 18);
    EXPECT_EQ(entry_of(blade(16, 2)), 31);
    chassis_has(10);
    EXPECT_EQ(entry_of(blade(3, 2)), 12);
    EXPECT_EQ(entry_of(blade(3, 3)), 22);
}

TEST_F(timeout_counters, of_a_whole_blade_do_not_depend_on_the_chassis)
{
    for (const uint32_t slots : {0u, 1u, 14u, 0xFFFFFFFFu}) {
        chassis_has(slots);
        EXPECT_EQ(entry_of(blade(3)), 2);
    }
}

TEST_F(timeout_counters, do_not_depend_on_the_reserved_bytes_of_a_location)
{
    EXPECT_EQ(entry_of({3, 2, {0xFF, 0xFF}}), 18);
}

TEST_F(timeout_counters, are_counted_off_in_8_bits)
{
    chassis_has(257);
    EXPECT_EQ(entry_of(blade(3, 3)), 4);
    chassis_has(0xFFFFFFFF);
    EXPECT_EQ(entry_of(blade(3, 2)), 1);
    chassis_has(0x80000000);
    EXPECT_EQ(entry_of(blade(3, 255)), 2);
    chassis_has(1);
    EXPECT_EQ(entry_of(blade(0, 2)), 0);
    chassis_has(128);
    EXPECT_EQ(entry_of(blade(3, 3)), 2);
}

TEST_F(timeout_counters, lie_where_other_processes_look_for_them)
{
    EXPECT_EQ(count(blade(3, 2), 4), 0u);
    uint32_t entry[2];
    memcpy(entry, reinterpret_cast<uint8_t *>(shm.get()) + 0xA5AC + size_t{8} * 18, sizeof entry);
    EXPECT_EQ(entry[0], 1u);
    EXPECT_EQ(entry[1], 1u);
}

// What is refused.

TEST_F(timeout_counters, of_a_blade_outside_the_chassis_are_refused)
{
    memset(static_cast<void *>(shm.get()), guarded<ipmi_shm>::fill, sizeof(ipmi_shm));
    for (const blade_location &at : strangers) {
        EXPECT_EQ(count(at, 4), 0x510au);
        EXPECT_EQ(read(at), 0x510au);
        EXPECT_EQ(clear(at), 0x510au);
    }
    EXPECT_TRUE(shm.untouched());
    EXPECT_TRUE(bumps.untouched() && sessions.untouched());
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(timeout_counters, are_refused_without_a_region)
{
    const blade_location at = blade(3);
    EXPECT_EQ(SetTimeout(nullptr, &at, 4, "tester", 99), 0x510au);
    EXPECT_EQ(GetTimeouts(nullptr, &at, bumps.get(), sessions.get()), 0x510au);
    EXPECT_EQ(ClearTimeouts(nullptr, &at), 0x510au);
    EXPECT_TRUE(bumps.untouched() && sessions.untouched());
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(timeout_counters, are_refused_without_a_location)
{
    memset(static_cast<void *>(shm.get()), guarded<ipmi_shm>::fill, sizeof(ipmi_shm));
    EXPECT_EQ(SetTimeout(shm.get(), nullptr, 4, "tester", 99), 0x510au);
    EXPECT_EQ(GetTimeouts(shm.get(), nullptr, bumps.get(), sessions.get()), 0x510au);
    EXPECT_EQ(ClearTimeouts(shm.get(), nullptr), 0x510au);
    EXPECT_TRUE(shm.untouched());
    EXPECT_TRUE(bumps.untouched() && sessions.untouched());
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(timeout_counters, are_read_both_or_not_at_all)
{
    const blade_location at = blade(3);
    EXPECT_EQ(GetTimeouts(shm.get(), &at, nullptr, sessions.get()), 0x510au);
    EXPECT_EQ(GetTimeouts(shm.get(), &at, bumps.get(), nullptr), 0x510au);
    EXPECT_TRUE(bumps.untouched() && sessions.untouched());
}

// Counting.

TEST_F(timeout_counters, count_a_raised_time_out_and_tell_the_debug_log)
{
    const blade_location at = blade(3, 2);
    EXPECT_EQ(SetTimeout(shm.get(), &at, 2, "retry", 321), 0u);
    EXPECT_EQ(SetTimeout(shm.get(), &at, 3, "retry", 322), 0u);
    EXPECT_EQ(platform.journal(),
              (events{debug_line("SetTimeout(): called from retry() line 321 retries 2 "
                                 "bumped [3,2] to 1\n"),
                      debug_line("SetTimeout(): called from retry() line 322 retries 3 "
                                 "bumped [3,2] to 2\n")}));
    EXPECT_EQ(shm->timeouts[18].new_sessions, 0u);
}

TEST_F(timeout_counters, count_a_new_session_after_more_than_3_retries)
{
    const blade_location at = blade(3, 2);
    shm->timeouts[18] = {10, 20};
    EXPECT_EQ(SetTimeout(shm.get(), &at, 4, "retry", 321), 0u);
    EXPECT_EQ(platform.journal(),
              (events{debug_line("SetTimeout(): called from retry() line 321 retries 4 "
                                 "bumped [3,2] to 11\n"),
                      debug_line("SetTimeout(): Starting new session for [3,2]!! "
                                 "New sessions: 21\n")}));
    EXPECT_EQ(shm->timeouts[18].timeout_bumps, 11u);
    EXPECT_EQ(shm->timeouts[18].new_sessions, 21u);
}

TEST_F(timeout_counters, count_no_session_for_a_negative_number_of_retries)
{
    EXPECT_EQ(count(blade(3), 0x80000000), 0u);
    EXPECT_EQ(count(blade(3), 0xFFFFFFFF), 0u);
    EXPECT_EQ(count(blade(3), 0x7FFFFFFF), 0u);
    EXPECT_EQ(shm->timeouts[2].timeout_bumps, 3u);
    EXPECT_EQ(shm->timeouts[2].new_sessions, 1u);
    EXPECT_EQ(platform.log().at(1), debug_line("SetTimeout(): called from tester() line 99 "
                                               "retries -1 bumped [3,0] to 2\n"));
}

TEST_F(timeout_counters, tell_sums_and_lines_beyond_31_bits_as_negative_numbers)
{
    const blade_location at = blade(3);
    shm->timeouts[2] = {0x7FFFFFFF, 0xFFFFFFFD};
    EXPECT_EQ(SetTimeout(shm.get(), &at, 4, "retry", 0xFFFFFFFF), 0u);
    EXPECT_EQ(platform.log(),
              (events{debug_line("SetTimeout(): called from retry() line -1 retries 4 "
                                 "bumped [3,0] to -2147483648\n"),
                      debug_line("SetTimeout(): Starting new session for [3,0]!! "
                                 "New sessions: -2\n")}));
}

TEST_F(timeout_counters, begin_anew_beyond_their_end)
{
    shm->timeouts[2] = {0xFFFFFFFF, 0xFFFFFFFF};
    EXPECT_EQ(count(blade(3), 4), 0u);
    EXPECT_EQ(shm->timeouts[2].timeout_bumps, 0u);
    EXPECT_EQ(shm->timeouts[2].new_sessions, 0u);
}

TEST_F(timeout_counters, touch_nothing_but_the_blades_own_entry)
{
    memset(static_cast<void *>(shm.get()), guarded<ipmi_shm>::fill, sizeof(ipmi_shm));
    ipmi_shm expected = *shm;
    EXPECT_EQ(count(blade(3), 4), 0u);
    EXPECT_EQ(clear(blade(32)), 0u);
    expected.timeouts[2] = {0xA5A5A5A6, 0xA5A5A5A6};
    expected.timeouts[31] = {0, 0};
    EXPECT_TRUE(shm.content() == bytes_of(expected));
    EXPECT_TRUE(shm.guards_hold());
}

// Reading and clearing.

TEST_F(timeout_counters, are_read_as_they_are_in_silence)
{
    shm->timeouts[18] = {0x12345678, 0x9ABCDEF0};
    const bytes before = shm.content();
    EXPECT_EQ(read(blade(3, 2)), 0u);
    EXPECT_EQ(*bumps, 0x12345678u);
    EXPECT_EQ(*sessions, 0x9ABCDEF0u);
    EXPECT_TRUE(bumps.guards_hold() && sessions.guards_hold());
    EXPECT_TRUE(shm.content() == before);
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(timeout_counters, are_0_once_they_were_cleared)
{
    count(blade(3, 2), 4);
    platform.forget();
    EXPECT_EQ(clear(blade(3, 2)), 0u);
    EXPECT_EQ(read(blade(3, 2)), 0u);
    EXPECT_EQ(*bumps, 0u);
    EXPECT_EQ(*sessions, 0u);
    EXPECT_EQ(platform.journal(), events{});
}
