// Start and stop of the runtime.

#include <pthread.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "runtime.h"

using namespace ruk_ipmi_testing;

namespace
{

const std::string mutex_name = "IPMI pending req list mutex_" + std::to_string(this_thread());
const std::string event_name = "IPMI Callback event-" + std::to_string(this_thread());

const events steps_of_init = {
    os_call("os_mutex_create " + mutex_name), os_call("os_notify_list_init"),
    os_call("os_notify_list_add 0x15"),       os_call("os_notify_init"),
    os_call("os_ev_create " + event_name),
};

class init : public scripted_test
{
  protected:
    // The step fails, and nothing is done after it.
    void expect_failure(const std::string &function, size_t steps, const std::string &line)
    {
        platform.os.fails(function, 0x77);
        EXPECT_EQ(ruk_ipmi_init(), 0x77u);
        events happened(steps_of_init.begin(), steps_of_init.begin() + static_cast<long>(steps));
        happened.push_back(debug_line(line));
        EXPECT_EQ(platform.journal(), happened);
    }
};

class ending : public runtime_test
{
};

} // namespace

TEST_F(init, makes_the_list_the_notification_and_the_event)
{
    EXPECT_EQ(ruk_ipmi_init(), 0u);
    EXPECT_EQ(platform.journal(), steps_of_init);
}

TEST_F(init, goes_on_without_the_list_s_mutex)
{
    platform.os.fails("os_mutex_create", 1);
    platform.os.fails("os_mutex_ident", 2);
    EXPECT_EQ(ruk_ipmi_init(), 0u);
    EXPECT_TRUE(platform.log().empty());
}

TEST_F(init, ends_with_the_status_of_the_notification_list)
{
    expect_failure("os_notify_list_init", 2,
                   "Error code returned by os_notify_list_init 119 (0x119) ");
}

TEST_F(init, ends_with_the_status_of_the_notification_type)
{
    expect_failure("os_notify_list_add", 3,
                   "Error code returned by os_notify_list_add 119 (0x119) ");
}

TEST_F(init, ends_with_the_status_of_the_hook)
{
    expect_failure("os_notify_init", 4, "Error code returned by os_notify_init 119 (0x119) ");
}

TEST_F(init, ends_with_the_status_of_the_event)
{
    expect_failure("os_ev_create", 5, "create event returned error 119 (0x119) ");
}

TEST_F(init, forgets_what_was_before)
{
    ASSERT_EQ(ruk_ipmi_init(), 0u);
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, runtime_test::on_event);
    ASSERT_EQ(ruk_ipmi_init(), 0u);
    ruk_register_imc_event_set(&set, runtime_test::on_event);
    EXPECT_EQ(platform.os.threads_created(), 2u);
}

TEST_F(ending, before_any_thread_only_sets_the_event)
{
    ruk_ipmi_exit();
    EXPECT_EQ(platform.journal(), (events{debug_line("ruk_ipmi_exit() called. \n"),
                                          os_call("os_ev_set " + event_name)}));
}

TEST_F(ending, deletes_the_event_and_unregisters_on_the_next_pass)
{
    run_callback_thread();
    EXPECT_EQ(platform.log(), log_of_thread({debug_line("ruk_ipmi_exit() called. \n")}));
    EXPECT_EQ(platform.os.registered_hooks(), 0u);
    EXPECT_EQ(platform.calls().back(), os_call("os_thread_exit"));
}

TEST_F(ending, tells_the_log_before_each_of_its_steps)
{
    run_callback_thread();
    events last = platform.journal();
    last.erase(last.begin(), last.end() - 7);
    EXPECT_EQ(
        last,
        (events{debug_line("Cleaning ipmi library. \n"), os_call("os_ev_delete " + event_name),
                debug_line("Before unregister os notify. \n"), os_call("os_notify_unregister"),
                debug_line("After unregister os notify. \n"), platform.log().back(),
                os_call("os_thread_exit")}));
}

TEST_F(ending, from_an_event_callback_ends_the_thread_at_once)
{
    const imc_event_set set = set_of({1, 2});
    ruk_register_imc_event_set(&set, [](uint32_t reserved, imc_event_info *info) {
        on_event(reserved, info);
        ruk_ipmi_exit();
        ADD_FAILURE() << "ruk_ipmi_exit returned";
        return 0;
    });
    platform.os.on_wait([&] { post(1, 3, {1, 2}); });
    platform.forget();
    run_thread();

    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}}));
    const events log = platform.log();
    ASSERT_GE(log.size(), 4u);
    EXPECT_EQ(
        events(log.end() - 4, log.end()),
        (events{debug_line("ruk_ipmi_exit() called. \n"), debug_line("Cleaning ipmi library. \n"),
                debug_line("Before unregister os notify. \n"),
                debug_line("After unregister os notify. \n")}));
    EXPECT_EQ(platform.os.registered_hooks(), 0u);
    EXPECT_FALSE(platform.os.is_set(event_name));
}

TEST_F(ending, from_an_answer_s_callback_ends_the_thread_at_once)
{
    platform.expects(blade(5), 0x0601).answers({0x00});
    ipmi_request request = request_to(blade(5), 0x0601);
    send_ruk_ipmi_command(
        &request, [](ipmi_response *) { ruk_ipmi_exit(); }, 10);
    run_thread();
    EXPECT_EQ(platform.log().back(), debug_line("After unregister os notify. \n"));
    EXPECT_EQ(platform.os.registered_hooks(), 0u);
}

TEST_F(ending, leaves_no_thread_to_serve_a_later_command)
{
    platform.expects(blade(5), 0x0601).keeps_waiting();
    ipmi_request request = request_to(blade(5), 0x0601);
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, on_event);
    run_callback_thread();
    platform.forget();

    EXPECT_EQ(send_ruk_ipmi_command(&request, on_answer, 10), 0u);
    EXPECT_EQ(platform.log(), (events{debug_line("Sending event to callback thread \n")}));
    EXPECT_EQ(platform.os.threads_created(), 1u);
    EXPECT_TRUE(answers.empty());
}

TEST_F(ending, twice_ends_no_other_thread)
{
    run_callback_thread();
    // The next thread may well get the identifier of the one that has ended.
    bool returned = false;
    pthread_t other;
    pthread_create(
        &other, nullptr,
        [](void *seen) -> void * {
            ruk_ipmi_exit();
            *static_cast<bool *>(seen) = true;
            return nullptr;
        },
        &returned);
    pthread_join(other, nullptr);
    EXPECT_TRUE(returned);
}

TEST_F(ending, allows_a_new_beginning)
{
    run_callback_thread();
    ASSERT_EQ(ruk_ipmi_init(), 0u);
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, on_event);
    run_callback_thread({[&] { post(1, 3, {1}); }});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}}));
}

TEST_F(ending, is_asked_for_before_the_thread_is_woken)
{
    uint32_t asked = 0;
    platform.os.before("os_ev_set", [&] { asked = ruk::ipmi_lib_state.exit_requested; });
    ruk_ipmi_exit();
    EXPECT_EQ(asked, 1u);
}

TEST_F(ending, may_be_asked_for_at_any_time)
{
    platform.expects(blade(5), 0x0601).keeps_waiting();
    ipmi_request request = request_to(blade(5), 0x0601);
    send_ruk_ipmi_command(&request, on_answer, 0);
    std::thread other;
    platform.os.on_tick([&] { other = std::thread(ruk_ipmi_exit); });
    run_thread();
    other.join();
    EXPECT_EQ(platform.os.registered_hooks(), 0u);
}

TEST_F(ending, asked_for_before_any_thread_was_started_is_forgotten_by_the_thread)
{
    ruk_ipmi_exit();
    const imc_event_set set = set_of({1});
    ruk_register_imc_event_set(&set, on_event);
    run_callback_thread({[&] { post(1, 3, {1}); }});
    EXPECT_EQ(events_told, (std::vector<told>{{3, 1}}));
}

// A child has no callback thread, and a lock that somebody held at the fork is held for good there.
TEST_F(init, frees_a_lock_that_was_held_at_a_fork)
{
    pthread_mutex_lock(&ruk::registration_lock);
    const pid_t child = fork();
    if (child == 0) {
        const bool freed =
            ruk_ipmi_init() == 0 && pthread_mutex_trylock(&ruk::registration_lock) == 0;
        _exit(freed ? 0 : 1);
    }
    pthread_mutex_unlock(&ruk::registration_lock);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

// The notification hook.

class hook : public runtime_test
{
  protected:
    void SetUp() override
    {
        runtime_test::SetUp();
        os_notify_register(ruk::ipmi_lib_state.notify_list, ruk::ipmi_lib_state.notify_handle);
    }
};

TEST_F(hook, wakes_the_thread_when_an_interrupt_was_posted)
{
    platform.os.notify(0x15);
    EXPECT_TRUE(platform.os.is_set(event_name));
}

TEST_F(hook, wakes_nobody_for_other_notifications)
{
    for (const uint32_t type : {0u, 0x14u, 0x16u, 0x115u, 0xFFFFFFFFu})
        platform.os.notify(type);
    EXPECT_FALSE(platform.os.is_set(event_name));
}

TEST_F(hook, wakes_nobody_when_it_cannot_learn_what_was_posted)
{
    platform.os.fails("os_notify_get", 9);
    platform.os.notify(0x15);
    EXPECT_FALSE(platform.os.is_set(event_name));
}
