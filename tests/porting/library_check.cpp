// The library above all of the platform.

#include <atomic>

#include "check.h"
#include "ruk_ipmi.h"

namespace
{

using namespace tests;

class Library : public testing::Test
{
  protected:
    static void SetUpTestSuite() { ASSERT_EQ(0u, ruk_ipmi_init()); }
    static void TearDownTestSuite()
    {
        ruk_ipmi_exit();
        os_sleep(20); // so that its thread is gone when the process ends
    }
};

ipmi_request device_id_request()
{
    ipmi_request request{};
    request.location.slot_id = *blade_to_ask();
    request.netfn_cmd = 0x0601;
    return request;
}

TEST_F(Library, ExchangesARequestForItsAnswer)
{
    if (!blade_to_ask())
        GTEST_SKIP() << no_blade;
    ipmi_request request = device_id_request();
    ipmi_response response{};
    response.data_len = 483;
    ASSERT_EQ(0u, get_ruk_ipmi_response(&request, &response, 500));
    EXPECT_EQ(0u, response.comp_code);
    EXPECT_GE(response.data_len, 12u) << "the answer to Get Device ID";
}

std::atomic<int> answered{0};

void on_answer(ipmi_response *response)
{
    answered += response->comp_code == 0;
}

TEST_F(Library, HasTheAnswersToAsynchronousCommandsCalledBack)
{
    if (!blade_to_ask())
        GTEST_SKIP() << no_blade;
    static ipmi_request requests[20];
    for (ipmi_request &each : requests) {
        each = device_id_request();
        EXPECT_EQ(0u, send_ruk_ipmi_command(&each, on_answer, 500));
    }
    EXPECT_TRUE(eventually([] { return answered == 20; })) << answered;
}

std::atomic<int> events{0};

int on_event(uint32_t, imc_event_info *)
{
    return ++events;
}

TEST_F(Library, HasEventsCalledBack)
{
    if (!can_post())
        GTEST_SKIP() << no_way_to_post;
    imc_event_set all;
    imc_event_set_init(&all);
    for (uint32_t event = 1; event <= IMC_EVENTS; ++event)
        imc_event_set_SET(event, &all);
    ASSERT_EQ(0u, ruk_register_imc_event_set(&all, on_event));
    // What is posted before its thread listens, it is not told.
    const int before = events;
    EXPECT_TRUE(eventually([=] {
        if (!post_event())
            return false;
        os_sleep(5);
        return events > before;
    }));
}

TEST_F(Library, ReadsTheRing)
{
    void *holder = nullptr;
    ipmi_interrupt interrupt{};
    uint32_t position = 0;
    for (uint32_t continuing : {0u, 1u})
        EXPECT_EQ(0u, get_next_interrupt(&position, &holder, &interrupt, continuing));
}

} // namespace
