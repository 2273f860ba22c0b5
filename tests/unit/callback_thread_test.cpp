// The callback thread: its start, the drain of the ring, the look for answers.

#include "runtime.h"

using namespace ruk_ipmi_testing;

namespace
{

const event exit_called = debug_line("ruk_ipmi_exit() called. \n");
const event one_tick = debug_line("Wait for one tick \n");

// What taking an interrupt from the ring logs.
event taken(uint32_t number, std::initializer_list<uint32_t> asserted)
{
    const imc_event_set set = set_of(asserted);
    return debug_line(formatted("get_next_interrupt(): new int %d ies bytes: ", number) +
                      hex(bytes_of(set)) + "\n");
}

event processed(uint32_t old, uint32_t number, int slot, int sub_slot = 0, int length = 0)
{
    return verbose_line(formatted("process_blade_alert last int num %d cur_int_num %d blade %d-%d "
                                  "data @ ADDRESS len %d\n",
                                  old, number, slot, sub_slot, length));
}

class callback_thread : public runtime_test
{
};

class ring_drain : public runtime_test
{
  protected:
    void SetUp() override
    {
        runtime_test::SetUp();
        set_everything();
    }

    void set_everything()
    {
        imc_event_set all;
        memset(&all, 0xFF, sizeof all);
        ruk_register_imc_event_set(&all, on_event);
        platform.forget();
    }
};

class answer_poll : public runtime_test
{
  protected:
    scripted_exchange &expects_command() { return platform.expects(request); }

    void send(uint32_t timeout = 3)
    {
        ASSERT_EQ(send_ruk_ipmi_command(&request, on_answer, timeout), 0u);
    }

    // What a look that finds no answer logs.
    events not_there(uint32_t index, uint32_t ticks, uint32_t status) const
    {
        return {
            debug_line(formatted("pid %d receive_ruk_command returned %d (0x(%x))\n",
                                 static_cast<int>(platform.os.callback_thread()), status, status)),
            debug_line(formatted("    idx %d    maxTO %d ticks  comp 4  \n", index, ticks))};
    }

    static constexpr uint32_t index_1 = whole_platform::first_index;
    ipmi_request request = request_to(blade(5, 1), 0x0601, {0x11, 0x22});
};

events joined(std::initializer_list<events> parts)
{
    events all;
    for (const events &each : parts)
        all.insert(all.end(), each.begin(), each.end());
    return all;
}

} // namespace

// Start.

TEST_F(callback_thread, names_itself_registers_and_finds_the_region)
{
    run_callback_thread();
    const events calls = platform.calls();
    const events begin = {os_call("os_thread_set_name IPMI_Callback"),
                          os_call("os_notify_register"), attached(),
                          os_call("find_component_shm 4")};
    ASSERT_GE(calls.size(), begin.size());
    EXPECT_EQ(events(calls.begin(), calls.begin() + 4), begin);
    EXPECT_EQ(platform.log(), log_of_thread({exit_called}));
}

TEST_F(callback_thread, does_without_a_name)
{
    platform.os.fails("os_thread_set_name", 1);
    run_callback_thread();
    const events log = platform.log();
    EXPECT_EQ(log.front(), debug_line("ipmi_callback_thread Error setting thread name"));
    EXPECT_EQ(events(log.begin() + 1, log.end()), log_of_thread({exit_called}));
}

TEST_F(callback_thread, ends_when_it_cannot_register)
{
    platform.os.fails("os_notify_register", 0x77);
    run_thread();
    EXPECT_EQ(platform.log().back(),
              debug_line("Error code returned by os_notify_callback 119 (0x119).Call "
                         "ruk_ipmi_init first"));
    EXPECT_EQ(platform.calls().back(), os_call("os_notify_register"));
}

TEST_F(callback_thread, ends_when_it_cannot_attach)
{
    platform.fails_to_attach(0x5001);
    run_thread();
    const events log = platform.log();
    EXPECT_EQ(events(log.begin() + 1, log.end()),
              (events{error_line("Error obtaining shared memory 5001\n"),
                      error_line("int_shm_ptr returned 20481 (0x00005001)\n")}));
    EXPECT_EQ(platform.calls().back(), os_call("os_thread_exit"));
}

TEST_F(callback_thread, ends_when_it_cannot_find_the_region)
{
    platform.os.fails("find_component_shm", 0x5005);
    run_thread();
    const events log = platform.log();
    EXPECT_EQ(events(log.begin() + 1, log.end()),
              (events{error_line("Error obtaining shared memory 5005 \n"),
                      error_line("int_shm_ptr returned 20485 (0x00005005)\n")}));
    EXPECT_EQ(platform.attached_times(), 0u);
    EXPECT_EQ(platform.calls().back(), os_call("os_thread_exit"));
}

TEST_F(callback_thread, sleeps_without_limit_when_nothing_is_outstanding)
{
    run_callback_thread();
    const std::string name = "os_ev_wait IPMI Callback event-" + std::to_string(this_thread());
    const events calls = platform.calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), os_call(name + ", forever")), 1);
}

TEST_F(callback_thread, logs_a_failed_wait_and_goes_on)
{
    platform.os.fails("os_ev_wait", 0xAB);
    run_callback_thread({[] {}});
    EXPECT_EQ(platform.log(),
              log_of_thread({error_line("Error returned by os_ev_wait ab\n"), exit_called}));
}

TEST_F(callback_thread, begins_behind_the_last_number_up_to_10000)
{
    const imc_event_set set = set_of({1});
    post(10000, 3, {1});
    ruk_register_imc_event_set(&set, on_event);
    run_callback_thread({[] {}});
    EXPECT_TRUE(events_told.empty());
}

TEST_F(callback_thread, begins_with_all_the_ring_holds_when_the_last_number_is_above_10000)
{
    const imc_event_set set = set_of({1});
    post(1, 3, {1});
    post(10001, 4, {1});
    ruk_register_imc_event_set(&set, on_event);
    run_callback_thread({[] {}});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}, {4, 1}}));
}

// The drain.

TEST_F(ring_drain, finds_nothing_in_an_empty_ring)
{
    run_callback_thread({[] {}, [] {}});
    EXPECT_EQ(platform.log(), log_of_thread({exit_called}));
}

TEST_F(ring_drain, tells_of_each_event_of_an_interrupt_in_ascending_order)
{
    run_callback_thread({[&] { post(1, 3, {40, 3, 64, 1}); }});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}, {3, 3}, {3, 40}, {3, 64}}));
    EXPECT_EQ(logged(), log_of_thread({taken(1, {40, 3, 64, 1}), processed(0, 1, 3), exit_called}));
}

TEST_F(ring_drain, tells_only_of_the_events_that_are_wanted)
{
    const imc_event_set set = set_of({3, 40});
    ruk_register_imc_event_set(&set, on_event);
    run_callback_thread({[&] { post(1, 3, {1, 3, 39, 40, 41}); }});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 3}, {3, 40}}));
}

TEST_F(ring_drain, tells_which_blade_it_was)
{
    static blade_location seen;
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, [](uint32_t, imc_event_info *info) {
        seen = info->location;
        return 0;
    });
    platform.forget();
    run_callback_thread({[&] {
        post(1, 3, {1});
        platform.os.region.ring[0].location = {3, 2, {7, 9}};
        platform.os.region.ring[0].data_len = 164;
    }});
    EXPECT_EQ(bytes_of(seen), (bytes{3, 2, 7, 9}));
    EXPECT_EQ(logged(), log_of_thread({taken(1, {1}), processed(0, 1, 3, 2, 164), exit_called}));
}

TEST_F(ring_drain, takes_all_that_is_new_in_one_pass)
{
    run_callback_thread({[&] {
        for (uint32_t number = 1; number <= 200; ++number)
            post(number, static_cast<uint8_t>(number), {7});
    }});
    ASSERT_EQ(events_told.size(), 200u);
    EXPECT_EQ(events_told.front(), (told{1, 7}));
    EXPECT_EQ(events_told.back(), (told{200, 7}));
}

TEST_F(ring_drain, logs_what_a_callback_complains_about)
{
    imc_event_set set = set_of({2});
    ruk_register_imc_event_set(&set, [](uint32_t, imc_event_info *) { return -3; });
    platform.forget();
    run_callback_thread({[&] { post(1, 3, {2}); }});
    EXPECT_EQ(logged(),
              log_of_thread({taken(1, {2}), processed(0, 1, 3),
                             verbose_line("call_event_callback_func(): new callback for event 2 "
                                          "returned -3\n"),
                             exit_called}));
}

TEST_F(ring_drain, says_so_when_nobody_is_to_be_told)
{
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, nullptr);
    platform.forget();
    run_callback_thread({[&] { post(1, 3, {1}); }});
    EXPECT_EQ(logged(),
              log_of_thread({taken(1, {1}), processed(0, 1, 3),
                             os_log_line("call_event_callback_func(): callback is NULL!\n"),
                             exit_called}));
}

TEST_F(ring_drain, notices_that_events_were_missed)
{
    run_callback_thread({[&] { post(5, 3, {1}); }, [&] { post(7, 3, {1}); }});
    EXPECT_EQ(
        logged(),
        log_of_thread({taken(5, {1}), processed(0, 5, 3), taken(7, {1}), processed(5, 7, 3),
                       notice_line("IPMI client missed events between 5 and 7.\n"), exit_called}));
}

TEST_F(ring_drain, complains_of_a_callback_before_it_notices_what_was_missed)
{
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, [](uint32_t, imc_event_info *) { return 7; });
    platform.forget();
    run_callback_thread({[&] { post(5, 3, {}); }, [&] { post(9, 3, {1}); }});
    EXPECT_EQ(
        logged(),
        log_of_thread({taken(5, {}), processed(0, 5, 3), taken(9, {1}), processed(5, 9, 3),
                       verbose_line("call_event_callback_func(): new callback for event 1 "
                                    "returned 7\n"),
                       notice_line("IPMI client missed events between 5 and 9.\n"), exit_called}));
}

TEST_F(ring_drain, misses_nothing_before_its_first_event_nor_between_neighbours)
{
    run_callback_thread({[&] { post(9, 3, {1}); }, [&] { post(10, 3, {1}); }});
    EXPECT_EQ(logged(), log_of_thread({taken(9, {1}), processed(0, 9, 3), taken(10, {1}),
                                       processed(9, 10, 3), exit_called}));
}

TEST_F(ring_drain, gives_up_a_pass_after_three_failures_a_tick_apart)
{
    // The first look-up makes the mutex; from then on it is there.
    run_callback_thread({[&] { platform.os.fails("os_mutex_get", 0x99, 3); }});
    const events failure = {debug_line("Error in acqiuiring the mutex 99\n"),
                            error_line("Error in acquiring the mutex the shm ptr 99\n"),
                            error_line("Error in getting the interrupt info \n")};
    EXPECT_EQ(
        platform.log(),
        log_of_thread(joined({failure,
                              failure,
                              failure,
                              {notice_line("Failure to get next IPMI event.\n"), exit_called}})));
    const events calls = platform.calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), os_call("os_sleep 1 ticks")), 2);
}

TEST_F(ring_drain, counts_failures_anew_in_each_pass)
{
    run_callback_thread({
        [&] { platform.os.fails("os_mutex_get", 0x99, 2); },
        [&] { platform.os.fails("os_mutex_get", 0x99, 2); },
        [&] { post(1, 3, {1}); },
    });
    const events log = platform.log();
    EXPECT_EQ(std::count(log.begin(), log.end(), notice_line("Failure to get next IPMI event.\n")),
              0);
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}}));
}

TEST_F(ring_drain, goes_on_after_a_failure_with_what_came_meanwhile)
{
    platform.os.before("os_sleep", [&] { post(2, 4, {2}); });
    run_callback_thread({[&] {
        post(1, 3, {1});
        platform.os.fails("os_mutex_get", 0x99);
    }});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}, {4, 2}}));
}

TEST_F(ring_drain, replays_the_ring_to_a_registration_from_inside_the_callback)
{
    static std::vector<told> second;
    second.clear();
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, [](uint32_t reserved, imc_event_info *info) {
        on_event(reserved, info);
        if (events_told.size() < 2)
            return 0;
        const imc_event_set all = set_of({1, 2});
        return static_cast<int>(
            ruk_register_imc_event_set(&all, [](uint32_t, imc_event_info *again) {
                second.push_back({again->location.slot_id, again->event});
                return 0;
            }));
    });
    run_callback_thread({[&] {
        post(1, 3, {1});
        post(2, 4, {1});
        post(3, 5, {2});
    }});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}, {4, 1}}));
    EXPECT_EQ(second, (std::vector<told>{{3, 1}, {4, 1}, {5, 2}}));
}

TEST_F(ring_drain, replays_the_ring_to_a_registration_that_comes_while_it_reads)
{
    static std::vector<told> second;
    second.clear();
    const auto other_thread_registers = [] {
        const imc_event_set set = set_of({1});
        ruk_register_imc_event_set(&set, [](uint32_t, imc_event_info *info) {
            second.push_back({info->location.slot_id, info->event});
            return 0;
        });
    };
    run_callback_thread({
        [&] { post(1, 3, {1}); },
        [&] {
            post(2, 4, {1});
            post(3, 5, {1});
            platform.os.before("os_mutex_get",
                               other_thread_registers); // the position was read, the ring not yet
        },
    });
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}}));
    EXPECT_EQ(second, (std::vector<told>{{3, 1}, {4, 1}, {5, 1}}));
}

TEST_F(ring_drain, replays_the_ring_to_a_registration_that_comes_when_there_is_nothing_new)
{
    run_callback_thread({
        [&] { post(1, 3, {1}); },
        [&] {
            platform.os.before("os_mutex_get", [] {
                const imc_event_set set = set_of({1});
                ruk_register_imc_event_set(&set, on_event);
            });
        },
    });
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}, {3, 1}}));
}

TEST_F(ring_drain, ends_in_a_ring_whose_numbers_lead_in_a_circle)
{
    static unsigned calls;
    calls = 0;
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, [](uint32_t, imc_event_info *) {
        ++calls;
        return 0;
    });
    run_callback_thread({[&] {
        ipmi_shm &region = platform.os.region;
        region.last_int_num = 10;
        region.renumbered = 1;
        region.ring[0].prev_num = 6;
        region.ring[0].int_num = 7;
        region.ring[0].ies = set;
        region.ring[1].prev_num = 100;
        region.ring[1].int_num = 5;
        region.ring[1].ies = set;
    }});
    // In each of the two passes: led back once more than there are slots, and forth as often.
    EXPECT_EQ(calls, 2u * 2 * (IPMI_RING_SLOTS + 1));
}

TEST_F(ring_drain, follows_a_writer_that_was_set_back)
{
    run_callback_thread({
        [&] {
            for (uint32_t number = 1; number <= 5; ++number)
                post(number, 1, {1});
        },
        [&] {
            ipmi_interrupt interrupt{};
            interrupt.int_num = 2;
            interrupt.location = blade(9);
            interrupt.ies = set_of({2});
            void *holder = &platform.os.region;
            put_next_interrupt(2, &holder, &interrupt);
        },
    });
    // By the old numbers it finds what is new, and in the next pass, the one that ends the thread,
    // an old interrupt once more.
    ASSERT_EQ(events_told.size(), 7u);
    EXPECT_EQ(events_told[5], (told{9, 2}));
    EXPECT_EQ(events_told[6], (told{1, 1}));
    for (const event &line : platform.log())
        EXPECT_NE(line.on, channel::notice) << line;
}

// Answers.

TEST_F(answer_poll, hands_an_answer_to_its_callback_once)
{
    expects_command().answers({0x00, 0x33, 0x44});
    send();
    run_callback_thread();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].comp_code, 0u);
    EXPECT_EQ(answers[0].data_len, 3u);
    EXPECT_EQ(bytes_at(answers[0].data, 4), (bytes{0x00, 0x33, 0x44, 0x00}));
    EXPECT_EQ(answers[0].location.slot_id, 5);
    EXPECT_EQ(platform.attached_times(), 2u); // one for the command, one for the region
}

TEST_F(answer_poll, looks_once_in_a_tick_with_room_for_a_whole_record)
{
    expects_command().keeps_waiting(2).answers({0xC1});
    send();
    platform.forget();
    run_callback_thread();
    const events ticks = joined({{one_tick},
                                 not_there(index_1, 3, 0x5007),
                                 {one_tick},
                                 not_there(index_1, 2, 0x5007),
                                 {one_tick, debug_line("Received response from ipmi \n")},
                                 {exit_called}});
    EXPECT_EQ(platform.log(), log_of_thread(ticks));
    const events calls = platform.calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), received(index_1, 1, 512)), 3);
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].comp_code, 0xC1u);
}

TEST_F(answer_poll, gives_an_answer_of_its_own_when_the_time_is_up)
{
    request.reserved_0c = 0xCAFE;
    expects_command().keeps_waiting();
    send(1);
    platform.forget();
    run_callback_thread();
    EXPECT_EQ(platform.log(), log_of_thread(joined({{one_tick},
                                                    not_there(index_1, 1, 0x5007),
                                                    {debug_line("Timed out \n"), exit_called}})));
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(bytes_of(answers[0].location), (bytes{5, 1, 0, 0}));
    EXPECT_EQ(answers[0].reserved_0c, 0xCAFEu);
    EXPECT_EQ(answers[0].netfn_cmd, 0x0601u);
    EXPECT_EQ(answers[0].comp_code, 0x5007u);
    EXPECT_EQ(answers[0].data_len, 0u);
}

TEST_F(answer_poll, gives_up_at_once_on_any_other_status)
{
    expects_command().fails_to_receive(0x500A);
    send(1000);
    platform.forget();
    run_callback_thread();
    EXPECT_EQ(platform.log(), log_of_thread(joined({{one_tick},
                                                    not_there(index_1, 1000, 0x500A),
                                                    {debug_line("Timed out \n"), exit_called}})));
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].comp_code, 0x500Au);
}

TEST_F(answer_poll, leaves_the_other_bytes_of_a_failed_receive)
{
    expects_command().answers({0xC0, 0x77}).fails_to_receive(0x5008);
    send();
    run_callback_thread();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].comp_code, 0x5008u);
    EXPECT_EQ(answers[0].data_len, 0u);
    EXPECT_EQ(answers[0].data[1], 0x77);
}

TEST_F(answer_poll, gives_up_at_once_on_a_status_below_that_of_waiting_too)
{
    expects_command().fails_to_receive(0x5001);
    send(1000);
    run_callback_thread();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].comp_code, 0x5001u);
}

TEST_F(answer_poll, waits_one_tick_and_logs_what_the_wait_returns)
{
    expects_command().keeps_waiting();
    send(2);
    platform.os.fails("os_ev_wait", 0xAB);
    platform.forget();
    run_callback_thread();
    const event wait =
        os_call("os_ev_wait IPMI Callback event-" + std::to_string(this_thread()) + ", 1 ticks");
    const events journal = platform.journal();
    EXPECT_EQ(std::count(journal.begin(), journal.end(), wait), 2);
    const auto first = std::find(journal.begin(), journal.end(), wait);
    EXPECT_EQ(*(first + 1), error_line("Error returned by os_ev_wait ab\n"));
}

TEST_F(answer_poll, looks_once_in_a_pass_also_when_a_later_command_is_answered)
{
    ipmi_request second = request_to(blade(6), 0x0602);
    expects_command().keeps_waiting(1).answers({0x00});
    platform.expects(second).answers({0x00});
    send(5);
    ASSERT_EQ(send_ruk_ipmi_command(&second, on_answer, 5), 0u);
    run_callback_thread();
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[0].location.slot_id, 6);
    const events log = platform.log();
    EXPECT_EQ(std::count(log.begin(), log.end(), one_tick), 2);
}

TEST_F(answer_poll, shows_no_command_the_answer_to_another)
{
    ipmi_request second = request_to(blade(6), 0x0602);
    expects_command().answers({0x00, 0x77});
    platform.expects(second).fails_to_receive(0x5002);
    send(5);
    ASSERT_EQ(send_ruk_ipmi_command(&second, on_answer, 5), 0u);
    run_callback_thread();
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(bytes_at(answers[1].data, sizeof answers[1].data), bytes(sizeof answers[1].data));
}

TEST_F(answer_poll, looks_for_answers_in_the_order_of_the_commands)
{
    ipmi_request requests[3];
    for (uint8_t slot = 1; slot <= 3; ++slot) {
        requests[slot - 1] = request_to(blade(slot), 0x0601);
        auto &exchange = platform.expects(requests[slot - 1]);
        exchange.keeps_waiting(slot == 2 ? 1 : 0).answers({slot});
        ASSERT_EQ(send_ruk_ipmi_command(&requests[slot - 1], on_answer, 5), 0u);
    }
    run_callback_thread();
    ASSERT_EQ(answers.size(), 3u);
    EXPECT_EQ(answers[0].location.slot_id, 1);
    EXPECT_EQ(answers[1].location.slot_id, 3);
    EXPECT_EQ(answers[2].location.slot_id, 2);
}

TEST_F(answer_poll, reaches_in_the_same_pass_a_command_that_a_callback_sent)
{
    static ipmi_request second;
    second = request_to(blade(6), 0x0602);
    expects_command().answers({0x00});
    platform.expects(second).answers({0x00});
    ASSERT_EQ(send_ruk_ipmi_command(
                  &request,
                  [](ipmi_response *response) {
                      on_answer(response);
                      EXPECT_EQ(send_ruk_ipmi_command(&second, on_answer, 5), 0u);
                  },
                  5),
              0u);
    run_callback_thread();
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[1].location.slot_id, 6);
    const events log = platform.log();
    EXPECT_EQ(std::count(log.begin(), log.end(), one_tick), 1);
}

TEST_F(answer_poll, comes_after_the_drain_in_each_pass)
{
    imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, [](uint32_t reserved, imc_event_info *info) {
        EXPECT_TRUE(answers.empty());
        return on_event(reserved, info);
    });
    expects_command().answers({0x00});
    send();
    platform.os.on_tick([&] { post(1, 3, {1}); });
    run_callback_thread();
    EXPECT_EQ(events_told.size(), 1u);
    EXPECT_EQ(answers.size(), 1u);
}

TEST_F(answer_poll, never_ends_a_command_whose_time_out_is_0_for_lack_of_time)
{
    expects_command().keeps_waiting(50).answers({0x00});
    send(0);
    run_callback_thread();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].comp_code, 0u);
}
