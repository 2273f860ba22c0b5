// Event sets, the table of actions, and the registration for events.

#include "ruk_ipmi/events.h"

#include <cstring>
#include <thread>

#include "runtime.h"
#include "support/guarded.h"

using namespace ruk_ipmi_testing;

// Sets.

TEST(event_set, begins_empty)
{
    guarded<imc_event_set> set;
    imc_event_set_init(set.get());
    EXPECT_EQ(set.content(), bytes(8));
    EXPECT_TRUE(set.guards_hold());
}

TEST(event_set, keeps_event_1_in_the_lowest_bit_of_the_first_byte)
{
    EXPECT_EQ(bytes_of(set_of({1, 9})), (bytes{0x01, 0x01, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytes_of(set_of({8, 64})), (bytes{0x80, 0, 0, 0, 0, 0, 0, 0x80}));
    EXPECT_EQ(bytes_of(set_of({3, 40})), (bytes{0x04, 0, 0, 0, 0x80, 0, 0, 0}));
}

TEST(event_set, keeps_each_event_apart)
{
    for (uint32_t e = 1; e <= IMC_EVENTS; ++e) {
        guarded<imc_event_set> set;
        imc_event_set_init(set.get());
        imc_event_set_SET(e, set.get());
        for (uint32_t other = 1; other <= IMC_EVENTS; ++other)
            EXPECT_EQ(imc_event_set_TEST(other, set.get()), other == e ? 1u : 0u);
        EXPECT_TRUE(set.guards_hold());
    }
}

TEST(event_set, loses_no_other_event_with_the_one_taken_out)
{
    imc_event_set full;
    memset(&full, 0xFF, sizeof full);
    for (uint32_t e = 1; e <= IMC_EVENTS; ++e) {
        imc_event_set set = full;
        imc_event_set_CLR(e, &set);
        EXPECT_EQ(imc_event_set_TEST(e, &set), 0u);
        imc_event_set_SET(e, &set);
        EXPECT_EQ(bytes_of(set), bytes_of(full));
    }
}

TEST(event_set, finds_the_next_event)
{
    const imc_event_set set = set_of({2, 9, 64});
    EXPECT_EQ(imc_event_set_NEXT_ASSERTED(0, &set), 2u);
    EXPECT_EQ(imc_event_set_NEXT_ASSERTED(1, &set), 2u);
    EXPECT_EQ(imc_event_set_NEXT_ASSERTED(2, &set), 9u);
    EXPECT_EQ(imc_event_set_NEXT_ASSERTED(63, &set), 64u);
}

TEST(event_set, has_no_next_event_after_its_last)
{
    const imc_event_set set = set_of({2, 9});
    EXPECT_EQ(imc_event_set_NEXT_ASSERTED(9, &set), 0u);
    const imc_event_set none = set_of({});
    EXPECT_EQ(imc_event_set_NEXT_ASSERTED(0, &none), 0u);
}

TEST(event_set, has_no_next_event_from_64_on)
{
    imc_event_set sets[2]; // what lies behind the first must not be taken for more events
    memset(sets, 0xFF, sizeof sets);
    for (const uint32_t after : {64u, 65u, 71u, 255u, 256u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        EXPECT_EQ(imc_event_set_NEXT_ASSERTED(after, &sets[0]), 0u) << after;
}

// The table.

TEST(event_action_table, has_its_first_image)
{
    static_assert(sizeof event_action == 780);
    bytes image(780);
    image[0] = 0x30;
    image[1] = 0x90;
    for (size_t e = 1; e <= IMC_EVENTS; ++e)
        image[12 * e + 8] = 0xFF;
    EXPECT_EQ(bytes_at(event_action, sizeof event_action), image);
}

TEST(event_action_table, is_its_users_to_change)
{
    event_action[64].bytes[11] = 7;
    EXPECT_EQ(event_action[64].bytes[11], 7);
    event_action[64].bytes[11] = 0;
}

// Registration.

class registration : public runtime_test
{
};

TEST_F(registration, starts_the_callback_thread)
{
    const imc_event_set set = set_of({1});
    EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0u);
    EXPECT_EQ(platform.journal(), (events{os_call("os_thread_create")}));
}

TEST_F(registration, starts_one_thread_only)
{
    const imc_event_set set = set_of({1});
    EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0u);
    EXPECT_EQ(ruk_register_imc_event_set(&set, nullptr), 0u);
    EXPECT_EQ(platform.os.threads_created(), 1u);
}

TEST_F(registration, starts_one_thread_for_many_first_callers_at_once)
{
    const imc_event_set set = set_of({1});
    std::vector<std::thread> callers;
    for (int i = 0; i < 8; ++i)
        callers.emplace_back([&] { EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0u); });
    for (std::thread &each : callers)
        each.join();
    EXPECT_EQ(platform.os.threads_created(), 1u);
}

TEST_F(registration, starts_one_thread_when_a_second_caller_comes_while_it_is_created)
{
    const imc_event_set set = set_of({1});
    platform.os.before("os_thread_create",
                       [&] { EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0u); });
    EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0u);
    EXPECT_EQ(platform.os.threads_created(), 1u);
}

TEST_F(registration, holds_nobody_up_while_the_thread_is_created)
{
    // The thread may have run callbacks by the time its creation returns.
    const imc_event_set set = set_of({1});
    platform.os.before("os_thread_create",
                       [&] { run_callback_thread({[&] { post(1, 3, {1}); }}); });
    EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0u);
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}}));
}

TEST_F(registration, stands_when_the_thread_cannot_be_started)
{
    const imc_event_set set = set_of({1});
    platform.os.fails("os_thread_create", 0x5D);
    EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0x5Du);
    run_callback_thread({[&] { post(1, 3, {1}); }});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}}));
}

TEST_F(registration, may_be_made_anew_while_events_are_told)
{
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, on_event);
    std::thread other;
    run_callback_thread({[&] {
        for (uint32_t number = 1; number <= 100; ++number)
            post(number, 3, {1});
        other = std::thread([&] {
            for (int i = 0; i < 300; ++i)
                ruk_register_imc_event_set(&set, on_event);
        });
    }});
    other.join();
    EXPECT_GE(events_told.size(), 100u);
}

TEST_F(registration, says_when_the_thread_cannot_be_started_and_tries_again_the_next_time)
{
    const imc_event_set set = set_of({1});
    platform.os.fails("os_thread_create", 0x5D);
    EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0x5Du);
    EXPECT_EQ(platform.log(),
              (events{debug_line("Error code returned by os_thread_create 93 (0x93) ")}));
    EXPECT_EQ(ruk_register_imc_event_set(&set, on_event), 0u);
    EXPECT_EQ(platform.os.threads_created(), 1u);
}

TEST_F(registration, tells_a_first_reader_of_nothing_that_happened_before)
{
    post(5, 3, {1});
    const imc_event_set set = set_of({1, 2});
    ruk_register_imc_event_set(&set, on_event);
    run_callback_thread({[&] { post(6, 4, {2}); }});
    EXPECT_EQ(events_told, (std::vector<told>{{4, 2}}));
}

TEST_F(registration, made_anew_replaces_events_and_callback_and_replays_the_ring)
{
    const imc_event_set first = set_of({1});
    const imc_event_set second = set_of({2});
    ruk_register_imc_event_set(&first, nullptr);
    run_callback_thread({
        [&] {
            post(1, 3, {1, 2});
        },
        [&] {
            post(2, 4, {1, 2});
        },
        [&] { ruk_register_imc_event_set(&second, on_event); },
    });
    EXPECT_EQ(events_told, (std::vector<told>{{3, 2}, {4, 2}}));
}

TEST_F(registration, takes_a_copy_of_the_set)
{
    imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, on_event);
    imc_event_set_init(&set);
    run_callback_thread({[&] { post(1, 3, {1}); }});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}}));
}
