// Every function of the runtime, again and again, each time with another call of the platform
// failing: the caller learns of it where it matters, and nothing stays locked, attached or half
// written. The callback thread's whole life is in failing_calls_test.cpp.

#include <cstdlib>
#include <ostream>
#include <set>
#include <string>

#include "runtime.h"

using namespace ruk_ipmi_testing;

namespace
{

// What a call works on.
struct world {
    whole_platform platform;
    ipmi_list list{};
    ipmi_list_node *node = nullptr;
    mutex_obj mutex{};
    event_obj event{};
    void *holder = nullptr;
    uint32_t position = 0;
    ipmi_interrupt interrupt{};
    ipmi_request request = request_to(blade(1), 0x0601);

    ~world()
    {
        for (ipmi_list *each : {&list, &ruk::ipmi_lib_state.pending})
            while (each->head)
                list_delete_and_free_data(each, each->head);
    }
};

void nothing(world &) {}

void start(world &)
{
    ruk_ipmi_init();
}

void start_and_expect_a_command(world &at)
{
    ruk_ipmi_init();
    at.platform.expects(at.request);
}

void make_list(world &at)
{
    ipmi_list_init(&at.list, "things");
}

void fill_list(world &at)
{
    make_list(at);
    list_insert(&at.list, malloc(1));
    list_insert(&at.list, malloc(1));
    at.node = at.list.head;
}

void lock_mutex(world &at)
{
    acquire_mutex("a mutex", &at.mutex, 0);
}

void lock_list(world &at)
{
    make_list(at);
    get_list_access(&at.list);
}

struct runtime_function {
    const char *name;
    void (*prepare)(world &);
    uint32_t (*call)(world &);

    // Whose failures it tells its caller of; it goes on after those of others.
    std::set<std::string> tells;
};

std::ostream &operator<<(std::ostream &out, const runtime_function &function)
{
    return out << function.name;
}

const std::set<std::string> region_calls = {"attach_ruk_shm", "find_component_shm"};
const std::set<std::string> ring_calls = {"attach_ruk_shm", "find_component_shm", "os_mutex_create",
                                          "os_mutex_get"};

const runtime_function functions[] = {
    {"ruk_ipmi_init",
     nothing,
     [](world &) { return ruk_ipmi_init(); },
     {"os_notify_list_init", "os_notify_list_add", "os_notify_init", "os_ev_create"}},
    {"ruk_ipmi_exit", start, [](world &) { return ruk_ipmi_exit(), 0u; }, {}},
    {"get_ruk_ipmi_response",
     start_and_expect_a_command,
     [](world &at) {
         ipmi_response response{};
         response.data_len = 10;
         return get_ruk_ipmi_response(&at.request, &response, 1);
     },
     {"attach_ruk_shm", "send_ruk_command", "receive_ruk_response"}},
    {"send_ruk_ipmi_command",
     start_and_expect_a_command,
     [](world &at) {
         const uint32_t rc = send_ruk_ipmi_command(&at.request, runtime_test::on_answer, 1);
         if (rc != 0)
             free(at.platform.os.last_allocated); // left to nobody
         return rc;
     },
     {"os_malloc", "attach_ruk_shm", "send_ruk_command"}},
    {"ruk_register_imc_event_set",
     start,
     [](world &) {
         const imc_event_set all = set_of({1});
         return ruk_register_imc_event_set(&all, runtime_test::on_event);
     },
     {"os_thread_create"}},

    {"ipmi_list_init", nothing, [](world &at) { return make_list(at), 0u; }, {}},
    {"get_list_access",
     make_list,
     [](world &at) {
         const uint32_t rc = get_list_access(&at.list);
         if (rc == 0)
             release_list_access(&at.list);
         return rc;
     },
     {"os_mutex_get"}},
    {"release_list_access",
     lock_list,
     [](world &at) { return release_list_access(&at.list), 0u; },
     {}},
    {"list_insert",
     fill_list,
     [](world &at) { return static_cast<uint32_t>(list_insert(&at.list, malloc(1))); },
     {}},
    {"list_delete",
     fill_list,
     [](world &at) {
         void *const item = list_delete(&at.list, at.node);
         free(item);
         return uint32_t{item != nullptr};
     },
     {}},
    {"list_delete_and_free_data",
     fill_list,
     [](world &at) { return static_cast<uint32_t>(list_delete_and_free_data(&at.list, at.node)); },
     {}},
    {"get_list_first",
     fill_list,
     [](world &at) { return uint32_t{get_list_first(&at.list) == at.node}; },
     {}},
    {"get_list_next",
     fill_list,
     [](world &at) { return uint32_t{get_list_next(&at.list, at.node) == at.node->next}; },
     {}},

    {"acquire_mutex",
     nothing,
     [](world &at) {
         const uint32_t rc = acquire_mutex("a mutex", &at.mutex, 0);
         if (rc == 0)
             release_mutex(&at.mutex);
         return rc;
     },
     {"os_mutex_create", "os_mutex_get"}},
    {"release_mutex", lock_mutex, [](world &at) { return release_mutex(&at.mutex), 0u; }, {}},
    {"create_event",
     nothing,
     [](world &at) { return create_event("an event", &at.event, 0); },
     {"os_ev_create"}},

    {"get_ipmi_shm_ptr", nothing, [](world &at) { return get_ipmi_shm_ptr(&at.holder); },
     region_calls},
    {"get_shm_ptr", nothing, [](world &at) { return get_shm_ptr(&at.holder); }, region_calls},
    {"init_shm_ptr", nothing, [](world &at) { return init_shm_ptr(&at.holder); }, ring_calls},
    {"put_next_interrupt", nothing,
     [](world &at) {
         at.interrupt.int_num = 7;
         return put_next_interrupt(7, &at.holder, &at.interrupt);
     },
     ring_calls},
    {"get_next_interrupt", nothing,
     [](world &at) {
         ipmi_shm &region = at.platform.os.region;
         region.ring[0].int_num = region.ring[0].prev_num = region.last_int_num = 7;
         return get_next_interrupt(&at.position, &at.holder, &at.interrupt, 0);
     },
     ring_calls},
};

// How a call ended whose platform failed at the call after the first `after` ones.
struct ending {
    uint32_t result;
    unsigned calls;
    std::string failed;
};

void check_what_is_left(world &at)
{
    EXPECT_EQ(at.platform.complaint().find("never unlocked"), std::string::npos);
    const bool waits_for_answer = ruk::ipmi_lib_state.pending.head != nullptr;
    EXPECT_EQ(at.platform.attached_times(), unsigned{at.holder != nullptr} + waits_for_answer);
}

ending run(const runtime_function &function, unsigned after)
{
    world at;
    function.prepare(at);
    const unsigned before = at.platform.os.calls();
    at.platform.os.fails_after(after, 0x99);
    const uint32_t result = function.call(at);
    check_what_is_left(at);
    const std::string failed = at.platform.os.failed();
    if (function.tells.count(failed) != 0) {
        EXPECT_EQ(at.position, 0u);
        EXPECT_EQ(at.interrupt.prev_num, 0u);
        EXPECT_EQ(at.platform.os.region.next_slot, 0u);
    }
    return {result, at.platform.os.calls() - before, failed};
}

class every_runtime_function : public ::testing::TestWithParam<runtime_function>
{
};

std::string name_of(const ::testing::TestParamInfo<runtime_function> &info)
{
    return info.param.name;
}

} // namespace

TEST_P(every_runtime_function, tells_of_the_failures_that_matter_and_goes_on_after_others)
{
    const runtime_function &function = GetParam();
    constexpr unsigned never = 1000;
    const ending whole = run(function, never);
    ASSERT_GE(whole.calls, 1u);
    EXPECT_EQ(whole.failed, "");

    std::set<std::string> told;
    for (unsigned after = 0; after < whole.calls; ++after) {
        SCOPED_TRACE(after);
        const ending failing = run(function, after);
        ASSERT_NE(failing.failed, "");
        if (function.tells.count(failing.failed) == 0) {
            EXPECT_EQ(failing.result, whole.result) << failing.failed;
            continue;
        }
        told.insert(failing.failed);
        EXPECT_NE(failing.result, whole.result) << failing.failed;
        EXPECT_LE(failing.calls, whole.calls + 1);
    }
    EXPECT_EQ(told, function.tells);
}

INSTANTIATE_TEST_SUITE_P(library, every_runtime_function, ::testing::ValuesIn(functions), name_of);

TEST(every_other_runtime_function, makes_no_call_that_could_fail)
{
    whole_platform platform;
    ipmi_shm region{};
    const blade_location at = blade(1);
    imc_event_set set;
    uint32_t bumps = 0;
    uint32_t sessions = 0;
    const uint8_t source[] = {'a', 0};
    char text[8];

    imc_event_set_init(&set);
    imc_event_set_SET(3, &set);
    EXPECT_EQ(imc_event_set_TEST(3, &set), 1u);
    EXPECT_EQ(imc_event_set_NEXT_ASSERTED(0, &set), 3u);
    imc_event_set_CLR(3, &set);
    EXPECT_EQ(SetTimeout(&region, &at, 4, "a test", 1), 0u);
    EXPECT_EQ(GetTimeouts(&region, &at, &bumps, &sessions), 0u);
    EXPECT_EQ(ClearTimeouts(&region, &at), 0u);
    EXPECT_EQ(UTF8_2_PrintableASCII(source, text, sizeof text - 1, 1), 0);
    EXPECT_EQ(Unicode16_2_PrintableASCII(text, sizeof text - 1, source, 2), 0);
    EXPECT_NE(ipmi_switch_config_status_to_str(0), nullptr);
    EXPECT_EQ(platform.os.calls(), 0u);
}
