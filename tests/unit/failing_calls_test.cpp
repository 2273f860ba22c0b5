// A whole life of the runtime, again and again, each time with another call of the platform
// failing: it always comes to its end, leaves nothing locked, and answers no command twice.

#include <cstdlib>
#include <map>

#include "runtime.h"

using namespace ruk_ipmi_testing;

namespace
{

struct life {
    unsigned calls;                  // of the platform
    std::map<int, unsigned> answers; // by blade
    std::string complaint;
};

// Starts, registers, sends two commands, is told of events, ends. The call after the first `after`
// ones fails.
life live(unsigned after)
{
    runtime_test::answers.clear();
    runtime_test::events_told.clear();
    whole_platform platform;
    platform.os.fails_after(after, 0x99);
    const auto post = [&platform](uint32_t number) {
        void *holder = &platform.os.region;
        ipmi_interrupt interrupt{};
        interrupt.int_num = number;
        interrupt.ies = set_of({1, 40});
        put_next_interrupt(number, &holder, &interrupt);
    };
    ipmi_request requests[] = {request_to(blade(1), 0x0601), request_to(blade(2), 0x0602)};
    platform.expects(requests[0]).keeps_waiting(1).answers({0x00});
    platform.expects(requests[1]).keeps_waiting();
    platform.os.on_wait([&] { post(3); });
    platform.os.on_wait(ruk_ipmi_exit);
    platform.os.on_tick([&] { post(1); });
    platform.os.on_tick([&] { post(2); });

    ruk_ipmi_init();
    const imc_event_set wanted = set_of({40});
    ruk_register_imc_event_set(&wanted, runtime_test::on_event);
    for (ipmi_request &each : requests)
        if (send_ruk_ipmi_command(&each, runtime_test::on_answer, 2) != 0)
            free(platform.os.last_allocated); // left to nobody
    pthread_t thread;
    pthread_create(&thread, nullptr, ipmi_callback_thread, nullptr);
    pthread_join(thread, nullptr);
    ipmi_list &pending = ruk::ipmi_lib_state.pending;
    while (pending.head)
        list_delete_and_free_data(&pending, pending.head);

    life lived{platform.os.calls(), {}, platform.complaint()};
    for (const ipmi_response &each : runtime_test::answers)
        ++lived.answers[each.location.slot_id];
    return lived;
}

} // namespace

TEST(failing_calls, end_no_life_of_the_runtime_badly)
{
    const life good = live(~0u - 1);
    ASSERT_EQ(good.complaint, "");
    ASSERT_EQ(runtime_test::events_told.size(), 3u);
    ASSERT_EQ(good.answers, (std::map<int, unsigned>{{1, 1}, {2, 1}}));

    for (unsigned after = 0; after < good.calls; ++after) {
        const life lived = live(after);
        EXPECT_EQ(lived.complaint.find("never unlocked"), std::string::npos) << after;
        for (const auto &[slot, times] : lived.answers)
            EXPECT_EQ(times, 1u) << after << ": blade " << slot;
    }
}
