// Sending an asynchronous command. What becomes of it is the callback thread's affair.

#include "ruk_ipmi/async.h"

#include <cstdlib>
#include <thread>

#include "memory.h"
#include "runtime.h"

using namespace ruk_ipmi_testing;

namespace
{

class async : public runtime_test
{
  protected:
    uint32_t send(uint32_t timeout = 3)
    {
        return send_ruk_ipmi_command(&request, on_answer, timeout);
    }

    ipmi_request request = request_to(blade(5, 1), 0x0601, {0x11, 0x22});
};

} // namespace

TEST_F(async, refuses_a_missing_request_or_callback)
{
    EXPECT_EQ(send_ruk_ipmi_command(nullptr, on_answer, 10), 0x510au);
    EXPECT_EQ(send_ruk_ipmi_command(&request, nullptr, 10), 0x510au);
    const event line = error_line("Invalid parameter for IPMI Call (null parameter received)");
    EXPECT_EQ(platform.journal(), (events{line, line}));
}

TEST_F(async, says_when_there_is_no_memory)
{
    platform.os.fails("os_malloc", 1);
    EXPECT_EQ(send(), 0x5104u);
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_malloc"), error_line("Cannot allocate memory in IPMI Call (null "
                                                       "parameter received)\n")}));
}

TEST_F(async, gives_up_a_command_that_it_cannot_keep_in_mind)
{
    platform.expects(request).keeps_waiting();
    uint32_t rc = 0;
    {
        const no_memory_left for_the_list; // the platform has its own
        rc = send();
    }
    EXPECT_EQ(rc, 0x5104u);
    EXPECT_EQ(platform.log(), (events{error_line("Cannot allocate memory in IPMI Call (null "
                                                 "parameter received)\n")}));
    EXPECT_EQ(platform.attached_times(), 0u);
    EXPECT_EQ(platform.os.threads_created(), 0u);
}

TEST_F(async, attaches_sends_and_stays_attached)
{
    platform.expects(request).keeps_waiting();
    request.msg_type = 7;
    EXPECT_EQ(send(), 0u);
    EXPECT_EQ(request.msg_type, 0x101u);
    const events calls = platform.calls();
    EXPECT_EQ(events(calls.begin(), calls.begin() + 3),
              (events{os_call("os_malloc"), attached(), sent(0x18 + 2)}));
    EXPECT_EQ(calls.back(), os_call("os_thread_create"));
    EXPECT_EQ(platform.attached_times(), 1u);
}

TEST_F(async, keeps_in_mind_what_it_sent)
{
    platform.expects(request).keeps_waiting();
    EXPECT_EQ(send(7), 0u);
    const ipmi_list_node *const node = ruk::ipmi_lib_state.pending.head;
    ASSERT_NE(node, nullptr);
    const auto &kept = *static_cast<const ruk::pending_request *>(node->data);
    EXPECT_EQ(kept.request, &request);
    EXPECT_EQ(kept.reserved, 0u);
    EXPECT_EQ(kept.msg_index, platform.first_index);
    EXPECT_EQ(kept.callback, &on_answer);
    EXPECT_EQ(kept.ticks_left, 7u);
}

TEST_F(async, starts_the_callback_thread_with_the_first_command)
{
    platform.expects(request).keeps_waiting();
    EXPECT_EQ(send(), 0u);
    EXPECT_EQ(platform.log(), (events{debug_line("create event returned error 0\n"),
                                      debug_line("Creating Ipmi callback thread \n")}));
    EXPECT_EQ(platform.os.threads_created(), 1u);
    EXPECT_EQ(platform.os.thread_entry, ipmi_callback_thread);
    EXPECT_EQ(platform.os.thread_argument, nullptr);
}

TEST_F(async, wakes_the_callback_thread_with_every_further_command)
{
    platform.expects(request).keeps_waiting();
    platform.expects(request).keeps_waiting();
    EXPECT_EQ(send(), 0u);
    platform.forget();
    EXPECT_EQ(send(), 0u);
    EXPECT_EQ(platform.log(), (events{debug_line("Sending event to callback thread \n")}));
    EXPECT_EQ(platform.calls().back(),
              os_call("os_ev_set IPMI Callback event-" + std::to_string(this_thread())));
    EXPECT_EQ(platform.os.threads_created(), 1u);
}

TEST_F(async, does_not_mind_that_the_thread_cannot_be_started_and_tries_again_the_next_time)
{
    platform.expects(request).answers({0x00});
    platform.expects(request).answers({0x00});
    platform.os.fails("os_thread_create", 5);
    EXPECT_EQ(send(), 0u);
    EXPECT_EQ(send(), 0u);
    EXPECT_EQ(platform.os.threads_created(), 1u);
    run_callback_thread();
    EXPECT_EQ(answers.size(), 2u);
}

TEST_F(async, tells_the_log_before_it_starts_the_thread_and_nothing_when_that_fails)
{
    platform.expects(request).keeps_waiting();
    platform.os.fails("os_thread_create", 5);
    EXPECT_EQ(send(), 0u);
    const events all = platform.journal();
    ASSERT_GE(all.size(), 3u);
    EXPECT_EQ(
        events(all.end() - 3, all.end()),
        (events{debug_line("create event returned error 0\n"),
                debug_line("Creating Ipmi callback thread \n"), os_call("os_thread_create")}));
}

TEST_F(async, starts_one_thread_when_a_second_caller_comes_while_it_is_created)
{
    platform.expects(request).keeps_waiting();
    platform.expects(request).keeps_waiting();
    platform.os.before("os_thread_create", [&] { EXPECT_EQ(send(), 0u); });
    EXPECT_EQ(send(), 0u);
    EXPECT_EQ(platform.os.threads_created(), 1u);
}

TEST_F(async, does_not_touch_its_record_again_when_it_cannot_send)
{
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(send(), 0x5001u);
    EXPECT_EQ(bytes_at(platform.os.last_allocated, sizeof(ruk::pending_request)),
              bytes(sizeof(ruk::pending_request)));
    free(platform.os.last_allocated);
}

TEST_F(async, returns_the_status_of_a_failed_attach)
{
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(send(), 0x5001u);
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_malloc"), attached(),
                      error_line("attach_ruk_shm returned 20481 (0x00005001)\n")}));
    free(platform.os.last_allocated); // left to nobody
    EXPECT_EQ(platform.os.threads_created(), 0u);
}

TEST_F(async, detaches_after_a_failed_send_and_returns_its_status)
{
    platform.expects(request).fails_to_send(0x5006);
    EXPECT_EQ(send(), 0x5006u);
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_malloc"), attached(), sent(0x18 + 2),
                      error_line(formatted("pid %d send_ruk_command returned 20486 (0x00005006)\n",
                                           this_thread())),
                      error_line("    idx 0    len 26   comp 4   \n"), detached()}));
    free(platform.os.last_allocated); // left to nobody
    EXPECT_EQ(platform.os.threads_created(), 0u);
}

TEST_F(async, starts_one_thread_for_many_first_callers_at_once)
{
    std::vector<std::thread> callers;
    std::vector<ipmi_request> requests(8, request);
    for (size_t i = 0; i < requests.size(); ++i)
        platform.expects(request).answers({0x00});
    for (ipmi_request &each : requests)
        callers.emplace_back(
            [&each] { EXPECT_EQ(send_ruk_ipmi_command(&each, on_answer, 3), 0u); });
    for (std::thread &each : callers)
        each.join();
    EXPECT_EQ(platform.os.threads_created(), 1u);
    run_callback_thread();
    EXPECT_EQ(answers.size(), requests.size());
}
