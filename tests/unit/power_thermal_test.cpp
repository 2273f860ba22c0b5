// Power and thermal management, and the physical location that travels by it.

#include "ruk_ipmi/settings.h"

#include <array>
#include <csignal>
#include <numeric>

#include "oem_shape.h"

namespace
{

using thermal_answer = std::array<uint8_t, 10>;

const power_thermal_request thermal_request = {0x01, 0x02, 3, 0x1234, {0xB1, 0xB2, 0xB3, 0xEE}};
const bytes thermal_payload = {0x01, 0x02, 0x03, 0x00, 0x34, 0x12, 0xB1, 0xB2, 0xB3};

uint8_t *data_of(thermal_answer *answer)
{
    return answer ? answer->data() : nullptr;
}

// The one whose output is the answer from its completion code on.
std::vector<command_row> answer_rows()
{
    return {row<thermal_answer>("process_power_thermal_mgmt",
                                [](auto at, auto out) {
                                    return ipmi_location_process_power_thermal_mgmt(
                                        at, &thermal_request, data_of(out));
                                },
                                0x30CE, thermal_payload, {0x00, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10},
                                {0x00, 1, 2, 3, 4, 5, 6, 7, 8, 9})
                .by_number<thermal_answer>([](int number, auto out) {
                    return ipmi_process_power_thermal_mgmt(number, &thermal_request, data_of(out));
                })};
}

INSTANTIATE_COMMAND_SHAPE(power_thermal, answer_rows());

// Of all attributes one that the library does not know: its request is the same for any slot.
std::vector<oem_row> location_rows()
{
    oem_row row =
        oem_command("set_unknown_physical_location",
                    [](auto at) { return ipmi_location_set_physical_location(at, 7, 1, nullptr); },
                    0x30CE, {0x00, 0x01, 0x00, 0x00, 0x00, 0x00});
    row.missing_location.reset();
    return {row};
}

INSTANTIATE_OEM_SHAPE(physical_location, location_rows());

class power_thermal : public scripted_test
{
  protected:
    const blade_location at = blade(5, 2);
};

using power_thermal_death = power_thermal;

class physical_location : public power_thermal
{
  protected:
    physical_location() { platform.os.platform_info[28] = 0x11223344; }

    int set(uint32_t attribute, const std::string &value)
    {
        return ipmi_location_set_physical_location(&at, 0x07, attribute, value.c_str());
    }
};

using physical_location_death = physical_location;

} // namespace

TEST_F(power_thermal, sends_a_body_of_482_bytes)
{
    power_thermal_request longest = thermal_request;
    longest.len = 482;
    std::iota(std::begin(longest.body), std::end(longest.body), uint8_t{1});
    platform.expects(at, 0x30CE,
                     joined({0x01, 0x02, 0xE2, 0x01, 0x34, 0x12}, bytes_at(longest.body, 482)));
    uint8_t answer[10];
    EXPECT_EQ(ipmi_location_process_power_thermal_mgmt(&at, &longest, answer), 0);
    EXPECT_EQ(platform.calls().at(1), sent(512));
}

TEST_F(power_thermal, sends_the_header_alone_for_no_body)
{
    power_thermal_request empty = thermal_request;
    empty.len = 0;
    platform.expects(at, 0x30CE, {0x01, 0x02, 0x00, 0x00, 0x34, 0x12});
    uint8_t answer[10];
    EXPECT_EQ(ipmi_location_process_power_thermal_mgmt(&at, &empty, answer), 0);
}

TEST_F(power_thermal, refuses_a_missing_request)
{
    guarded<thermal_answer> answer;
    EXPECT_EQ(ipmi_location_process_power_thermal_mgmt(&at, nullptr, answer->data()), 0x510a);
    EXPECT_EQ(ipmi_process_power_thermal_mgmt(5, nullptr, answer->data()), 0x510a);
    EXPECT_TRUE(answer.untouched());
    EXPECT_EQ(platform.journal(), events(2, error_line("Invalid parameter to IPMI interface\n")));
}

TEST_F(power_thermal_death, a_body_longer_than_its_room_ends_the_process)
{
    power_thermal_request too_long = thermal_request;
    uint8_t answer[10];
    platform.echo_log();
    for (const uint16_t length : {uint16_t{483}, uint16_t{0xFFFF}}) {
        too_long.len = length;
        EXPECT_EXIT(ipmi_location_process_power_thermal_mgmt(&at, &too_long, answer),
                    ::testing::KilledBySignal(SIGABRT),
                    formatted("^error: %u bytes do not fit", unsigned{length}));
    }
}

TEST_F(physical_location, sends_a_text_with_its_length_slot_and_platform)
{
    platform.expects(
        at, 0x30CE,
        {0x00, 0x01, 0x09, 0x00, 0x00, 0x00, 0x09, 0x00, 0x10, 0x07, 0x05, 0x44, 0x02, 'R', '1'});
    litter_the_stack();
    EXPECT_EQ(set(637, "R1"), 0);
    EXPECT_EQ(platform.calls(),
              (events{attached(), sent(0x18 + 15), received(1001, 500, 483), detached()}));
    EXPECT_EQ(platform.log(), events{});
}

TEST_F(physical_location, knows_five_texts_by_their_codes)
{
    struct attribute {
        uint32_t id;
        uint8_t code;
    };
    for (const auto &[id, code] : {attribute{637, 0x10}, attribute{706, 0x20}, attribute{633, 0x30},
                                   attribute{205, 0x40}, attribute{600, 0x50}}) {
        platform.expects(at, 0x30CE,
                         {0x00, 0x01, 0x08, 0, 0, 0, 0x08, 0, code, 0x07, 0x05, 0x44, 0x01, 'x'});
        EXPECT_EQ(set(id, "x"), 0);
    }
}

TEST_F(physical_location, sends_an_empty_text)
{
    platform.expects(at, 0x30CE,
                     {0x00, 0x01, 0x07, 0, 0, 0, 0x07, 0, 0x10, 0x07, 0x05, 0x44, 0x00});
    EXPECT_EQ(set(637, ""), 0);
}

TEST_F(physical_location, sends_a_text_of_128_characters)
{
    const std::string longest(128, 'x');
    platform.expects(at, 0x30CE,
                     joined({0x00, 0x01, 135, 0, 0, 0, 135, 0, 0x50, 0x07, 0x05, 0x44, 0x80},
                            characters(longest)));
    EXPECT_EQ(set(600, longest), 0);
}

TEST_F(physical_location_death, a_text_longer_than_its_room_ends_the_process)
{
    platform.echo_log();
    EXPECT_EXIT(set(637, std::string(129, 'x')), ::testing::KilledBySignal(SIGABRT),
                "^error: 129 bytes do not fit");
    EXPECT_EXIT(set(600, std::string(70000, 'x')), ::testing::KilledBySignal(SIGABRT),
                "^error: 70000 bytes do not fit");
}

TEST_F(physical_location, sends_the_low_byte_of_a_number_in_place_of_the_parameter)
{
    struct number {
        const char *text;
        uint8_t low_byte;
    };
    for (const auto &[text, low_byte] :
         {number{"300", 44}, number{"0", 0}, number{"255", 255}, number{"-1", 255},
          number{" 12 and more", 12}, number{"none", 0}, number{"", 0}}) {
        platform.expects(at, 0x30CE,
                         {0x00, 0x01, 0x06, 0, 0, 0, 0x06, 0, 0x00, low_byte, 0x05, 0x44});
        EXPECT_EQ(set(513, text), 0) << text;
    }
}

TEST_F(physical_location, sends_a_number_with_the_slot_and_the_platform_too)
{
    const blade_location other = blade(9);
    platform.os.platform_info[28] = 0x55667788;
    platform.expects(other, 0x30CE, {0x00, 0x01, 0x06, 0, 0, 0, 0x06, 0, 0x00, 12, 0x09, 0x88});
    EXPECT_EQ(ipmi_location_set_physical_location(&other, 0x07, 513, "12"), 0);
}

TEST_F(physical_location, sends_the_header_alone_for_an_unknown_attribute)
{
    for (const uint32_t attribute : {0u, 512u, 636u, 0x10000u + 637, 0xFFFFFFFFu}) {
        platform.expects(at, 0x30CE, {0x00, 0x01, 0x00, 0x00, 0x00, 0x00});
        EXPECT_EQ(set(attribute, "R1"), 0);
    }
}

TEST_F(physical_location, returns_what_became_of_a_text)
{
    const bytes payload = {0x00, 0x01, 0x08, 0, 0, 0, 0x08, 0, 0x10, 0x07, 0x05, 0x44, 0x01, 'x'};
    platform.expects(at, 0x30CE, payload).answers({0xC1});
    EXPECT_EQ(set(637, "x"), 0xC1);
    platform.expects(at, 0x30CE, payload).answers({0xC1}).fails_to_receive(0x5002);
    EXPECT_EQ(set(637, "x"), 0x5002);
}
