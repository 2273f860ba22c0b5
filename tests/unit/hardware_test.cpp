// The commands of a blade's own hardware.

#include "ruk_ipmi/hardware.h"

#include <array>
#include <cstring>

#include "oem_shape.h"

namespace
{

using post_code = std::array<uint8_t, 17>;

const uint8_t cpld_request[10] = {0x01, 0x12, 0x34, 0xAA, 0xBB, 0xCC, 0xDD, 0x01, 0x02, 0x03};
const uint8_t post_request[4] = {0x12, 0x34, 0x56, 0x78};

// The answer's first four bytes, as they lie.
uint32_t cpld_result()
{
    const uint8_t answer[] = {0x00, 0xA1, 0xA2, 0xA3};
    uint32_t result;
    memcpy(&result, answer, sizeof result);
    return result;
}

post_code post_output()
{
    post_code post = {0, 0, 0, 0, 0, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const uint32_t number = 0x12345678;
    memcpy(&post[1], &number, sizeof number);
    return post;
}

int read_post(const blade_location *at, post_code *post)
{
    return ipmi_bexal_post_code(at, post_request, post ? post->data() : nullptr);
}

// Those whose output is the answer from its completion code on.
std::vector<command_row> answer_rows()
{
    return {row<uint32_t>(
                "cpld_access",
                [](auto at, auto out) { return ipmi_cpld_access(at, cpld_request, out); }, 0x30BC,
                bytes_of(cpld_request), {0x00, 0xA1, 0xA2, 0xA3, 0xA4}, cpld_result()),
            row<post_code>(
                "post_code", read_post, 0x30D4, bytes_of(post_request),
                {0x00, 0x78, 0x56, 0x34, 0x12, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17},
                post_output())
                .converts_always()};
}

INSTANTIATE_COMMAND_SHAPE(hardware, answer_rows());

using led_command = int (*)(const blade_location *, uint32_t);

const bytes server_led = {0x00, 0x0E, 0x0E, 0,    0, 0, 0x0E, 0, 0x01, 0x02,
                          0xFF, 0xFA, 0,    0xFA, 0, 0, 0,    0, 0,    0};
const bytes drive_led = {0x00, 0x0E, 0x0E, 0,    0, 0,    0x0E, 0,    0x03, 0x02,
                         0xFF, 0xF4, 0,    0xF4, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0};

// The lines before either LED's request, whose bytes they end with.
events announced(const char *numbers, const bytes &request)
{
    return {error_line(formatted("ipmi_blink_unblink_serverled(), %s, button_id\n", numbers)),
            error_line("ENTER ipmi_blink_unblink_serverled()\n"),
            dump_line("IPMI Request Buffer ", request, 1)};
}

oem_row led_row(const char *name, led_command blink, const bytes &request)
{
    oem_row row = oem_command(
        name, [=](auto at) { return blink(at, 1); }, 0x30D0, request);
    row.refusal_is_a_success = true;
    row.zero_location_is_sent = false;
    row.before = announced("slot_id: 5, sub_slot_id: 0, blink: 1", request);
    row.after_refusal = {error_line("\nipmi_blink_unblink_serverled() failed "
                                    "get_ruk_ipmi_response rc: 0\n cc: 193\n")};
    row.missing_location = events{};
    return row;
}

oem_row power_button_row()
{
    oem_row row =
        oem_command("set_node_power_button",
                    [](auto at) { return ipmi_set_node_power_button(at, 1); }, 0x000A, {0x01});
    row.after_refusal = {error_line("ipmi_set_node_power_button: completion code: 193.\n")};
    row.missing_location =
        events{error_line("ipmi_set_node_power_button: blade_location is NULL.\n")};
    return row;
}

std::vector<oem_row> hardware_rows()
{
    return {led_row("server_led", ipmi_blink_unblink_serverled_kvm, server_led),
            led_row("drive_led", ipmi_blink_unblink_sled_driveled, drive_led), power_button_row()};
}

INSTANTIATE_OEM_SHAPE(hardware, hardware_rows());

// Either LED: its command and the request that lets it blink.
struct led {
    led_command blink;
    bytes request;
};

class leds : public scripted_test, public ::testing::WithParamInterface<led>
{
};

INSTANTIATE_TEST_SUITE_P(hardware, leds,
                         ::testing::Values(led{ipmi_blink_unblink_serverled_kvm, server_led},
                                           led{ipmi_blink_unblink_sled_driveled, drive_led}));

class hardware : public scripted_test
{
  protected:
    const blade_location at = blade(5);
};

using power_button = hardware;
using cpld = hardware;
using post = hardware;

} // namespace

TEST_P(leds, blink_for_any_number_but_0)
{
    const blade_location at = blade(5, 2);
    platform.expects(at, 0x30D0, GetParam().request);
    EXPECT_EQ(GetParam().blink(&at, 2), 0);
    EXPECT_EQ(platform.log(),
              announced("slot_id: 5, sub_slot_id: 2, blink: 2", GetParam().request));

    platform.expects(at, 0x30D0, GetParam().request);
    EXPECT_EQ(GetParam().blink(&at, 0x100), 0);
    platform.expects(at, 0x30D0, GetParam().request);
    EXPECT_EQ(GetParam().blink(&at, 0xFFFFFFFF), 0);
}

TEST_P(leds, stop_for_0)
{
    const blade_location at = blade(5);
    bytes request = GetParam().request;
    request[10] = 0x00;
    platform.expects(at, 0x30D0, request);
    EXPECT_EQ(GetParam().blink(&at, 0), 0);
    EXPECT_EQ(platform.log(), announced("slot_id: 5, sub_slot_id: 0, blink: 0", request));
}

TEST_P(leds, refuse_a_location_without_slot_and_sub_slot_and_say_nothing)
{
    const blade_location nowhere = {0, 0, {1, 1}};
    EXPECT_EQ(GetParam().blink(&nowhere, 1), 0x5105);
    EXPECT_EQ(platform.journal(), events{});
}

TEST_P(leds, take_a_location_with_only_one_of_the_two)
{
    for (const blade_location &at : {blade(0, 1), blade(255, 0)}) {
        platform.expects(at, 0x30D0, GetParam().request);
        EXPECT_EQ(GetParam().blink(&at, 1), 0);
    }
}

TEST_F(power_button, sends_bit_0_alone)
{
    for (const uint32_t flags : {0u, 1u, 2u, 3u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
        platform.expects(at, 0x000A, {static_cast<uint8_t>(flags % 2)});
        EXPECT_EQ(ipmi_set_node_power_button(&at, flags), 0);
    }
}

TEST_F(cpld, sends_the_two_numbers_of_operations_2_and_3_least_significant_byte_first)
{
    for (const uint8_t operation : {uint8_t{2}, uint8_t{3}}) {
        uint8_t request[10] = {operation, 0, 0, 0, 0, 0, 0, 0x01, 0x02, 0x03};
        const uint16_t word = 0x1234;
        const uint32_t number = 0xAABBCCDD;
        memcpy(request + 1, &word, sizeof word);
        memcpy(request + 3, &number, sizeof number);
        platform.expects(at, 0x30BC, {operation, 0x34, 0x12, 0xDD, 0xCC, 0xBB, 0xAA, 1, 2, 3});
        uint32_t result;
        EXPECT_EQ(ipmi_cpld_access(&at, request, &result), 0);
    }
}

TEST_F(cpld, sends_the_bytes_of_any_other_operation_as_they_are)
{
    bytes request = bytes_of(cpld_request);
    for (int operation = 0; operation <= 0xFF; ++operation)
        if (operation != 2 && operation != 3) {
            request[0] = static_cast<uint8_t>(operation);
            platform.expects(at, 0x30BC, request);
            uint32_t result;
            EXPECT_EQ(ipmi_cpld_access(&at, request.data(), &result), 0);
        }
}

TEST_F(cpld, leaves_the_callers_request_as_it_was)
{
    uint8_t request[10] = {2, 0x12, 0x34, 0xAA, 0xBB, 0xCC, 0xDD, 1, 2, 3};
    const bytes before = bytes_of(request);
    platform.fails_to_attach(0x5001);
    uint32_t result;
    EXPECT_EQ(ipmi_cpld_access(&at, request, &result), 0x5001);
    EXPECT_EQ(bytes_of(request), before);
}

TEST_F(cpld, refuses_a_missing_request)
{
    guarded<uint32_t> result;
    EXPECT_EQ(ipmi_cpld_access(&at, nullptr, result.get()), 0x510a);
    EXPECT_TRUE(result.untouched());
    EXPECT_EQ(platform.journal(), events{error_line("Invalid parameter to IPMI interface\n")});
}

TEST_F(post, refuses_a_missing_request)
{
    guarded<post_code> code;
    EXPECT_EQ(ipmi_bexal_post_code(&at, nullptr, code->data()), 0x510a);
    EXPECT_TRUE(code.untouched());
    EXPECT_EQ(platform.journal(), events{error_line("Invalid parameter to IPMI interface\n")});
}

TEST_F(post, is_a_number_in_host_order_behind_the_completion_code)
{
    platform.expects(at, 0x30D4, bytes_of(post_request)).answers({0x00, 0x78, 0x56, 0x34, 0x12});
    guarded<post_code> code;
    EXPECT_EQ(read_post(&at, code.get()), 0);
    uint32_t number;
    memcpy(&number, code->data() + 1, sizeof number);
    EXPECT_EQ(number, 0x12345678u);
    EXPECT_EQ(bytes_at(code->data() + 5, 12), bytes(12));
}
