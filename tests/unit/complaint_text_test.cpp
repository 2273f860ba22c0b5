// What a developer reads when a request is not the expected one.

#include "ruk_ipmi/sel.h"
#include "support/whole_platform.h"

#include <cstring>

#include <gtest/gtest.h>

#include "ruk_ipmi/exchange.h"

using namespace ruk_ipmi_testing;

namespace
{

class complaint_text : public ::testing::Test
{
  protected:
    scripted_exchange &expects(const blade_location &location, uint32_t netfn_cmd,
                               const bytes &payload = {})
    {
        return platform.expects(location, netfn_cmd, payload, {"a_test.cpp", ++line});
    }

    void send(ipmi_request request)
    {
        ipmi_response response{};
        response.data_len = 483;
        get_ruk_ipmi_response(&request, &response, 500);
    }

    void send(const blade_location &location, uint32_t netfn_cmd, const bytes &payload = {})
    {
        send(request_to(location, netfn_cmd, payload));
    }

    int line = 0;
    whole_platform platform;
};

} // namespace

TEST_F(complaint_text, marks_the_byte_that_differs)
{
    expects(blade(5), 0x0A43, {0x00, 0x00, 0x34, 0x12, 0x00, 0xFF});
    const blade_location at = blade(5);
    sel_entry entry;
    EXPECT_EQ(ipmi_location_get_sel_entry(&at, 0x1235, &entry), 0x5BAD);
    EXPECT_EQ(platform.complaint(),
              "a_test.cpp:1: exchange 1 of 1 is not the expected one\n"
              "  expected: blade 5, 0x0A43 (ipmi_location_get_sel_entry), 6 bytes\n"
              "  received: blade 5, 0x0A43 (ipmi_location_get_sel_entry), 6 bytes\n"
              "    expected: 00 00 34 12 00 FF\n"
              "    received: 00 00 35 12 00 FF\n"
              "                    ^^\n"
              "  wrong: payload byte 2 is 0x35 instead of 0x34\n");
}

TEST_F(complaint_text, tells_another_blade_and_another_command)
{
    expects(blade(5), 0x0A40);
    send(blade(6, 2), 0x0601);
    EXPECT_EQ(platform.complaint(),
              "a_test.cpp:1: exchange 1 of 1 is not the expected one\n"
              "  expected: blade 5, 0x0A40 (ipmi_location_get_sel_info), no payload\n"
              "  received: blade 6.2, 0x0601, no payload\n"
              "  wrong: the blade, the command\n");
}

TEST_F(complaint_text, shows_what_a_shorter_payload_lacks)
{
    expects(blade(5), 0x0601, {0x11, 0x22, 0x33});
    send(blade(5), 0x0601, {0x11});
    EXPECT_EQ(platform.complaint(), "a_test.cpp:1: exchange 1 of 1 is not the expected one\n"
                                    "  expected: blade 5, 0x0601, 3 bytes\n"
                                    "  received: blade 5, 0x0601, 1 byte\n"
                                    "    expected: 11 22 33\n"
                                    "    received: 11 -- --\n"
                                    "                 ^^ ^^\n"
                                    "  wrong: a payload of 1 byte instead of 3 bytes\n");
}

TEST_F(complaint_text, shows_of_long_payloads_the_rows_that_differ)
{
    bytes payload = counting(100);
    expects(blade(5), 0x0601, payload);
    payload[17] = payload[19] = 0x00;
    send(blade(5), 0x0601, payload);
    EXPECT_EQ(platform.complaint(),
              "a_test.cpp:1: exchange 1 of 1 is not the expected one\n"
              "  expected: blade 5, 0x0601, 100 bytes\n"
              "  received: blade 5, 0x0601, 100 bytes\n"
              "  payload from byte 16 on\n"
              "    expected: 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F 20\n"
              "    received: 11 00 13 00 15 16 17 18 19 1A 1B 1C 1D 1E 1F 20\n"
              "                 ^^    ^^\n"
              "  wrong: payload byte 17 is 0x00 instead of 0x12 and 1 more\n");
}

TEST_F(complaint_text, ends_when_enough_rows_were_shown)
{
    expects(blade(5), 0x0601, bytes(100, 0x00));
    send(blade(5), 0x0601, bytes(100, 0x01));
    const std::string text = platform.complaint();
    EXPECT_NE(text.find("payload from byte 48 on"), std::string::npos);
    EXPECT_EQ(text.find("payload from byte 64 on"), std::string::npos);
    EXPECT_NE(text.find("  and 3 more rows that differ\n"), std::string::npos);
}

TEST_F(complaint_text, tells_words_of_the_record_that_have_to_be_0)
{
    expects(blade(5), 0x0601, {0x11});
    ipmi_request request = request_to({5, 0, {0, 7}}, 0x0601, {0x11});
    request.reserved_04 = 1;
    request.reserved_0c = 0xABCD;
    send(request);
    EXPECT_EQ(platform.complaint(),
              "a_test.cpp:1: exchange 1 of 1 is not the expected one\n"
              "  expected: blade 5, 0x0601, 1 byte\n"
              "  received: blade 5 (reserved bytes 00 07), 0x0601, 1 byte\n"
              "    11\n"
              "  wrong: the blade, reserved_04 is 0x1 instead of 0x0, reserved_0c is 0xABCD "
              "instead of 0x0\n");
}

TEST_F(complaint_text, says_that_an_exchange_is_expected_later)
{
    expects(blade(5), 0x0A42);
    expects(blade(5), 0x0A40);
    send(blade(5), 0x0A40);
    EXPECT_EQ(platform.complaint(),
              "a_test.cpp:1: exchange 1 of 2 is not the expected one\n"
              "  expected: blade 5, 0x0A42 (ipmi_location_reserve_sel), no payload\n"
              "  received: blade 5, 0x0A40 (ipmi_location_get_sel_info), no payload\n"
              "  wrong: the command\n"
              "  it is the request of exchange 2\n"
              "a_test.cpp:2: exchange 2 of 2 was expected and never came\n"
              "  expected: blade 5, 0x0A40 (ipmi_location_get_sel_info), no payload\n");
}

TEST_F(complaint_text, shows_a_request_that_nobody_expects)
{
    expects(blade(5), 0x0601, {0x11});
    send(blade(5), 0x0601, {0x11});
    send(blade(5), 0x0601, {0x11});
    EXPECT_EQ(platform.complaint(),
              "a request that nobody expects: the script ends with exchange 1\n"
              "  received: blade 5, 0x0601, 1 byte\n"
              "    11\n"
              "  it is the request of exchange 1, which has come\n");
}

TEST_F(complaint_text, shows_an_exchange_that_never_came)
{
    expects(blade(5), 0x0A43, {0x00, 0x00, 0x34, 0x12, 0x00, 0xFF});
    EXPECT_EQ(platform.complaint(),
              "a_test.cpp:1: exchange 1 of 1 was expected and never came\n"
              "  expected: blade 5, 0x0A43 (ipmi_location_get_sel_entry), 6 bytes\n"
              "    00 00 34 12 00 FF\n");
}

TEST_F(complaint_text, names_all_functions_of_a_command_that_has_few)
{
    expects(blade(5), 0x0659);
    EXPECT_NE(platform.complaint().find("0x0659 (location_get_sys_info, location_get_sys_info_ex)"),
              std::string::npos);
}

TEST_F(complaint_text, names_no_function_of_a_command_that_has_many)
{
    expects(blade(5), 0x30D0);
    EXPECT_NE(platform.complaint().find("blade 5, 0x30D0, no payload"), std::string::npos);
}

TEST_F(complaint_text, names_the_line_of_the_test_by_itself)
{
    platform.expects(blade(5), 0x0601);
    const int expected_line = __LINE__ - 1;
    EXPECT_NE(platform.complaint().find(formatted("complaint_text_test.cpp:%d: ", expected_line)),
              std::string::npos);
}
