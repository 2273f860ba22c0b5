// The queries of a blade's status and the small actions on its controller.

#include "ruk_ipmi/blade_status.h"

#include <csignal>

#include "command_shape.h"

namespace
{

// Outputs whose numbers are turned to host order.
struct RUK_IPMI_PACKED host_events {
    uint8_t completion_code;
    uint16_t number;
    uint8_t rest[3];
};

struct RUK_IPMI_PACKED login_answer {
    uint8_t completion_code;
    uint32_t number;
    uint8_t rest;
};

template <typename Record>
uint8_t *bytes_in(Record *record)
{
    return reinterpret_cast<uint8_t *>(record);
}

const bytes monitor = counting(128);
const uint8_t four_bytes[] = {0xA1, 0xA2, 0xA3, 0xA4};
const bytes login_payload =
    joined({'s', 'e', 'c', 'o', 'n', 'd', ' ', 't', 'e', 'x', 't'}, bytes(25));

std::vector<command_row> query_rows()
{
    return {
        row<host_events>(
            "host_event_status",
            [](auto at, auto out) { return ipmi_location_host_event_status(at, bytes_in(out)); },
            0x3051, {}, {0x00, 0x34, 0x12, 0x05, 0x06, 0x07, 0x08}, {0x00, 0x1234, {5, 6, 7}})
            .by_number<host_events>(
                [](int blade, auto out) { return ipmi_host_event_status(blade, bytes_in(out)); })
            .converts_always(),
        row<7>("get_vkvm_status", ipmi_location_get_vkvm_status, 0x308D, {}, counting_answer(9))
            .by_number<7>(ipmi_get_vkvm_status),
        row<5>("get_vmedia_status", ipmi_location_get_vmedia_status, 0x308E, {}, counting_answer(9))
            .by_number<5>(ipmi_get_vmedia_status),
        row<7>("get_imc_status", ipmi_location_get_imc_status, 0x3090, {}, counting_answer(9)),
        row<2>("identify_led_status", ipmi_location_identify_led_status, 0x3032, {},
               {0x00, 0x34, 0x12})
            .by_number<2>(ipmi_identify_led_status),
        row<131>("get_last_post_code", ipmi_location_get_last_post_code, 0x3099, {},
                 counting_answer(133))
            .by_number<131>(ipmi_get_last_post_code)
            .leaves_location_unchecked(),
        row<257>(
            "read_staging",
            [](auto at, auto out) { return ipmi_location_read_staging(at, 0x07, out); }, 0x3093,
            {0x07}, counting_answer(259))
            .by_number<257>(
                [](int blade, auto out) { return ipmi_read_staging(blade, 0x07, out); }),
        row<257>(
            "read_queue",
            [](auto at, auto out) { return ipmi_location_read_queue(at, 0x07, 0x81, out); }, 0x3094,
            {0x07, 0x81}, counting_answer(259))
            .by_number<257>(
                [](int blade, auto out) { return ipmi_read_queue(blade, 0x07, 0x81, out); }),
    };
}

std::vector<command_row> action_rows()
{
    return {
        row<1>("enter_firmware_update", ipmi_location_enter_firmware_update, 0xB818, {},
               {0x00, 0x01})
            .by_number<1>(ipmi_enter_firmware_update),
        row<1>("edid_information",
               [](auto at, auto out) {
                   return location_edid_information(at, 0x07, monitor.data(), 128, out);
               },
               0x3092, joined({0x07}, monitor), {0x00, 0x01})
            .by_number<1>([](int blade, auto out) {
                return edid_information(blade, 0x07, monitor.data(), 128, out);
            }),
        row<login_answer>("login_access",
                          [](auto at, auto out) {
                              return ipmi_location_login_access(at, "first", "second text",
                                                                bytes_in(out));
                          },
                          0x3096, login_payload, {0x00, 0x78, 0x56, 0x34, 0x12, 0x05, 0x06},
                          {0x00, 0x12345678, 0x05})
            .by_number<login_answer>([](int blade, auto out) {
                return ipmi_login_access(blade, "first", "second text", bytes_in(out));
            })
            .converts_unless_refused(),
        row<1>(
            "test_alert",
            [](auto at, auto out) { return ipmi_location_test_alert(at, 0x07, four_bytes, out); },
            0x3097, {0x07, 0xA1, 0xA2, 0xA3, 0xA4, 0, 0, 0, 0}, {0x00, 0x01})
            .leaves_location_unchecked(),
    };
}

INSTANTIATE_COMMAND_SHAPE(blade_queries, query_rows());
INSTANTIATE_COMMAND_SHAPE(blade_actions, action_rows());

class edid : public scripted_test
{
  protected:
    int hand_over(const uint8_t *block, uint32_t length)
    {
        uint8_t out;
        litter_the_stack();
        return location_edid_information(&at, 0x07, block, length, &out);
    }

    const blade_location at = blade(5);
};

class login : public scripted_test
{
  protected:
    void expects_text(const std::string &text)
    {
        bytes payload(text.begin(), text.end());
        payload.resize(36);
        platform.expects(at, 0x3096, payload);
    }

    int ask(const std::string &first, const char *second)
    {
        uint8_t out[6];
        litter_the_stack();
        return ipmi_location_login_access(&at, first.c_str(), second, out);
    }

    const blade_location at = blade(5);
};

using edid_death = edid;
using login_death = login;
using host_events_of_a_blade = scripted_test;
using test_alert_death = scripted_test;

} // namespace

TEST_F(host_events_of_a_blade, come_in_host_order_with_a_refusal_too)
{
    const blade_location at = blade(5);
    platform.expects(at, 0x3051).answers({0x01, 0x34, 0x12, 0x05, 0x06, 0x07});
    guarded<host_events> out;
    EXPECT_EQ(ipmi_host_event_status(5, bytes_in(out.get())), 0x01);
    EXPECT_EQ(hex(out.content()), hex(bytes_of(host_events{0x01, 0x1234, {5, 6, 7}})));
}

TEST_F(edid, sends_129_bytes_for_a_shorter_block)
{
    platform.expects(at, 0x3092, joined({0x07, 0xAB, 0xCD, 0xEF}, bytes(125)));
    const uint8_t block[] = {0xAB, 0xCD, 0xEF};
    EXPECT_EQ(hand_over(block, 3), 0);
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 129));
}

TEST_F(edid, sends_zeros_for_no_block)
{
    platform.expects(at, 0x3092, joined({0x07}, bytes(128)));
    EXPECT_EQ(hand_over(nullptr, 0), 0);
}

TEST_F(edid, sends_128_bytes_of_a_longer_block)
{
    for (const uint32_t length : {129u, 256u, 487u}) {
        platform.expects(at, 0x3092, joined({0x07}, monitor));
        EXPECT_EQ(hand_over(counting(length).data(), length), 0);
    }
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 129));
}

TEST_F(edid_death, a_block_longer_than_its_room_ends_the_process)
{
    platform.echo_log();
    for (const uint32_t length : {488u, 0xFFFFFFFFu})
        EXPECT_EXIT(hand_over(monitor.data(), length), ::testing::KilledBySignal(SIGABRT),
                    formatted("^error: %u bytes do not fit", length));
}

TEST_F(edid_death, a_missing_block_is_not_refused_but_dereferenced)
{
    EXPECT_DEATH(hand_over(nullptr, 128), "");
}

TEST_F(login, lets_the_second_text_take_the_place_of_the_first)
{
    expects_text("ab");
    EXPECT_EQ(ask("root", "ab"), 0);
    expects_text("");
    EXPECT_EQ(ask("root", ""), 0);
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 36));
}

TEST_F(login, sends_no_byte_of_a_first_text_that_is_longer_than_its_field)
{
    expects_text("ab");
    EXPECT_EQ(ask(std::string(100, 'x'), "ab"), 0);
}

TEST_F(login, cuts_the_second_text_after_20_characters)
{
    const std::string twenty = "twenty characters...";
    for (const std::string &text : {twenty, twenty + ".", twenty + std::string(1000, '.')}) {
        expects_text(twenty);
        EXPECT_EQ(ask("root", text.c_str()), 0);
    }
}

TEST_F(login_death, a_missing_second_text_is_not_refused_but_dereferenced)
{
    EXPECT_DEATH(ask("root", nullptr), "");
}

TEST_F(test_alert_death, missing_data_is_not_refused_but_dereferenced)
{
    const blade_location at = blade(5);
    uint8_t out;
    EXPECT_DEATH(ipmi_location_test_alert(&at, 0x07, nullptr, &out), "");
}
