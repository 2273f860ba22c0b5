// The synchronous exchange, called directly.

#include "ruk_ipmi/exchange.h"

#include <atomic>
#include <thread>
#include <vector>

#include "support/scripted_test.h"

using namespace ruk_ipmi_testing;

namespace
{

constexpr uint32_t index_1 = whole_platform::first_index;

class exchange : public scripted_test
{
  protected:
    ipmi_request request = request_to(blade(5, 1), 0x0601, {0x11, 0x22});
    ipmi_response response{};
};

} // namespace

TEST_F(exchange, refuses_a_missing_request)
{
    EXPECT_EQ(get_ruk_ipmi_response(nullptr, &response, 500), 0x510au);
    EXPECT_EQ(platform.journal(), (events{error_line("Invalid parameter for IPMI Call (null "
                                                     "parameter received)")}));
    EXPECT_EQ(bytes_of(response), bytes(512));
}

TEST_F(exchange, refuses_a_missing_response)
{
    request.msg_type = 7;
    EXPECT_EQ(get_ruk_ipmi_response(&request, nullptr, 500), 0x510au);
    EXPECT_EQ(platform.journal(), (events{error_line("Invalid parameter for IPMI Call (null "
                                                     "parameter received)")}));
    EXPECT_EQ(request.msg_type, 7u);
}

TEST_F(exchange, attaches_sends_receives_and_detaches)
{
    platform.expects(request).answers({0x00, 0x33});
    response.data_len = 483;
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 1234), 0u);
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x18 + 2), received(index_1, 1234, 483), detached()}));
}

TEST_F(exchange, sends_the_record_byte_for_byte)
{
    request.reserved_04 = 0x04040404;
    request.reserved_0c = 0x0C0C0C0C;
    platform.expects(request);
    response.data_len = 483;
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0u);
}

TEST_F(exchange, hands_over_the_answer_as_the_service_gives_it)
{
    request.reserved_0c = 0xCAFE;
    platform.expects(request).answers({0x00, 0x33, 0x44});
    response.data_len = 483;
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0u);

    ipmi_response expected{};
    expected.location = blade(5, 1);
    expected.reserved_0c = 0xCAFE;
    expected.netfn_cmd = 0x0601;
    expected.data_len = 3;
    expected.data[1] = 0x33;
    expected.data[2] = 0x44;
    EXPECT_EQ(hex(bytes_of(response)), hex(bytes_of(expected)));
}

TEST_F(exchange, sends_a_request_without_payload_as_its_header)
{
    request = request_to(blade(5), 0x0601);
    platform.expects(request);
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0u);
    EXPECT_EQ(platform.calls().at(1), sent(0x18));
}

TEST_F(exchange, sends_a_full_record)
{
    request = request_to(blade(5), 0x30D0, bytes(488, 0x77));
    platform.expects(request);
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0u);
    EXPECT_EQ(platform.calls().at(1), sent(512));
}

TEST_F(exchange, stores_the_message_type_whatever_the_caller_left_there)
{
    platform.expects(request);
    request.msg_type = 0xFFFFFFFF;
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0u);
    EXPECT_EQ(request.msg_type, 0x101u);
}

TEST_F(exchange, hands_the_callers_capacity_and_wait_on_unchanged)
{
    for (const uint32_t number : {0u, 1u, 483u, 0xFFFFFFFFu}) {
        platform.expects(request);
        response.data_len = number;
        EXPECT_EQ(get_ruk_ipmi_response(&request, &response, ~number), 0u);
    }
    events receives;
    for (const event &call : platform.calls())
        if (call.on == channel::receive)
            receives.push_back(call);
    EXPECT_EQ(receives,
              (events{received(index_1, 0xFFFFFFFF, 0), received(index_1 + 1, 0xFFFFFFFE, 1),
                      received(index_1 + 2, ~483u, 483), received(index_1 + 3, 0, 0xFFFFFFFF)}));
}

TEST_F(exchange, does_not_look_at_the_completion_code)
{
    platform.expects(request).answers({0xC1});
    response.data_len = 483;
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0u);
    EXPECT_EQ(response.comp_code, 0xC1u);
    EXPECT_EQ(platform.log(), events{});
}

TEST_F(exchange, returns_the_status_of_a_failed_attach_with_nothing_to_detach)
{
    request.msg_type = 7;
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0x5001u);
    EXPECT_EQ(platform.journal(),
              (events{attached(), error_line("attach_ruk_shm returned 20481 (0x00005001)\n")}));
    EXPECT_EQ(request.msg_type, 7u);
    EXPECT_EQ(bytes_of(response), bytes(512));
}

TEST_F(exchange, logs_and_returns_the_status_of_a_failed_send_and_detaches)
{
    platform.expects(request).fails_to_send(0x5002);
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0x5002u);
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x1A),
                      error_line(formatted("pid %d send_ruk_command returned 20482 (0x00005002)\n",
                                           this_thread())),
                      error_line("    idx 0    len 26   comp 4   \n"), detached()}));
    EXPECT_EQ(bytes_of(response), bytes(512));
}

TEST_F(exchange, logs_and_returns_the_status_of_a_failed_receive_and_detaches)
{
    platform.expects(request).fails_to_receive(0x5007);
    response.data_len = 483;
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0x5007u);
    EXPECT_EQ(
        platform.journal(),
        (events{attached(), sent(0x1A), received(index_1, 500, 483),
                error_line(formatted("pid %d receive_ruk_command returned 20487 (0x00005007)\n",
                                     this_thread())),
                error_line("    idx 1001    maxTO 500 ticks  comp 4  \n"), detached()}));
}

TEST_F(exchange, prints_statuses_and_waits_beyond_31_bits_as_negative_numbers)
{
    platform.expects(request).fails_to_receive(0xFFFFFFFE);
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 0xFFFFFFFF), 0xFFFFFFFEu);
    EXPECT_EQ(platform.log(),
              (events{error_line(formatted("pid %d receive_ruk_command returned -2 (0xfffffffe)\n",
                                           this_thread())),
                      error_line("    idx 1001    maxTO -1 ticks  comp 4  \n")}));
}

TEST_F(exchange, leaves_the_response_of_a_failed_receive_as_the_service_left_it)
{
    platform.expects(request).answers({0xC1, 0x77}).fails_to_receive(0x5007);
    response.data_len = 483;
    EXPECT_EQ(get_ruk_ipmi_response(&request, &response, 500), 0x5007u);
    EXPECT_EQ(response.comp_code, 0xC1u);
    EXPECT_EQ(response.data[1], 0x77);
}

TEST_F(exchange, keeps_no_attachment_between_calls)
{
    platform.expects(request);
    platform.expects(request).fails_to_receive(0x5007);
    for (int i = 0; i < 2; ++i)
        get_ruk_ipmi_response(&request, &response, 500);
    EXPECT_EQ(platform.calls(),
              (events{attached(), sent(0x1A), received(index_1, 500, 0), detached(), attached(),
                      sent(0x1A), received(index_1 + 1, 500, 0), detached()}));
}

TEST_F(exchange, may_be_in_many_threads_at_once)
{
    constexpr int threads = 4;
    constexpr int calls = 50;
    for (int i = 0; i < threads * calls; ++i)
        platform.expects(request);

    std::atomic<int> successes{0};
    std::vector<std::thread> callers;
    for (int i = 0; i < threads; ++i)
        callers.emplace_back([&] {
            for (int n = 0; n < calls; ++n) {
                ipmi_request mine = request;
                ipmi_response answer{};
                answer.data_len = 483;
                successes += get_ruk_ipmi_response(&mine, &answer, 500) == 0;
            }
        });
    for (std::thread &caller : callers)
        caller.join();
    EXPECT_EQ(successes, threads * calls);
}
