// What a blade's controller can do.

#include "ruk_ipmi/features.h"

#include <array>

#include "oem_shape.h"

namespace
{

const uint8_t six_bytes[] = {1, 2, 3, 4, 5, 6};
const uint8_t eight_bytes[] = {1, 2, 3, 4, 5, 6, 7, 8};
const bytes six_bytes_payload = joined({0, 0, 1, 2, 3, 4, 5, 6}, bytes(24));

std::vector<command_row> feature_rows()
{
    return {
        row<7>("get_feature_info", ipmi_location_get_feature_info, 0x30BD, {}, counting_answer(9))
            .by_number<7>(ipmi_get_feature_info),
        row<1>("send_bexal_quon",
               [](auto at, auto out) { return ipmi_location_send_bexal_quon(at, six_bytes, out); },
               0x30C9, six_bytes_payload, {0x00, 0x01})
            .by_number<1>(
                [](int blade, auto out) { return ipmi_send_bexal_quon(blade, six_bytes, out); }),
        row<6>("get_cpld_version", ipmi_location_get_cpld_version, 0x3033, {}, counting_answer(9)),
        row<1>(
            "send_zat_feature",
            [](auto at, auto out) { return ipmi_location_send_zat_feature(at, eight_bytes, out); },
            0x30C3, {1, 2, 3, 4, 5, 6, 7, 8}, {0x00, 0x01}),
        row<10>("get_auto_discovery_status", ipmi_location_get_auto_discovery_status, 0x30A3,
                {0x12}, counting_answer(12))
            .by_number<10>(ipmi_get_auto_discovery_status)
            .leaves_location_unchecked(),
    };
}

INSTANTIATE_COMMAND_SHAPE(features, feature_rows());

const bytes status_payload = {0x12, 0x00, 0x00, 0x00};
const bytes rebrand_payload = {0x14, 0x00, 0x00, 0x00};

template <typename Function, typename Blade>
outcome pm_status(Function get, Blade blade)
{
    guarded<uint8_t> status;
    const int result = get(blade, status.get());
    return outcome_of(result, status);
}

template <typename Function, typename Blade>
outcome pm_rebrand(Function get, Blade blade)
{
    guarded<std::array<char, 15>> text;
    const int result = get(blade, text->data());
    return outcome_of(result, text);
}

std::vector<oem_row> power_management_rows()
{
    oem_row status = oem_query("get_pm_status",
                               [](auto at) { return pm_status(ipmi_location_get_pm_status, at); },
                               0x30A9, status_payload, {0x00, 0xF1, 0x00, 0x05, 0x06}, {0x05});
    status.call_by_number = [](int number) { return pm_status(ipmi_get_pm_status, number); };
    oem_row rebrand = oem_query(
        "get_pm_rebrand", [](auto at) { return pm_rebrand(ipmi_location_get_pm_rebrand, at); },
        0x30A9, rebrand_payload, joined({0x00, 0xF1, 0xF2}, characters("Chassis")),
        zero_filled(characters("Chassis"), 15));
    rebrand.call_by_number = [](int number) { return pm_rebrand(ipmi_get_pm_rebrand, number); };
    status.missing_location.reset();
    rebrand.missing_location.reset();
    return {status, rebrand};
}

INSTANTIATE_OEM_SHAPE(power_management, power_management_rows());

using features = scripted_test;

class power_management : public scripted_test
{
  protected:
    // The status after `answer`.
    bytes status(const bytes &answer)
    {
        platform.expects(at, 0x30A9, status_payload).answers(answer);
        litter_the_stack();
        const outcome seen = pm_status(ipmi_location_get_pm_status, &at);
        EXPECT_EQ(seen.result, 0);
        return seen.output;
    }

    // What the caller's 15 characters hold after an answer with `text` from byte 3 on.
    bytes rebrand(const bytes &text)
    {
        platform.expects(at, 0x30A9, rebrand_payload).answers(joined({0x00, 0xF1, 0xF2}, text));
        litter_the_stack();
        const outcome seen = pm_rebrand(ipmi_location_get_pm_rebrand, &at);
        EXPECT_EQ(seen.result, 0);
        EXPECT_TRUE(seen.guards_hold);
        return seen.output;
    }

    const blade_location at = blade(5);
};

using power_management_death = power_management;

} // namespace

TEST_F(features, refuse_a_missing_value)
{
    const blade_location at = blade(5);
    guarded<uint8_t> out;
    EXPECT_EQ(ipmi_location_send_bexal_quon(&at, nullptr, out.get()), 0x510a);
    EXPECT_EQ(ipmi_send_bexal_quon(5, nullptr, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_send_zat_feature(&at, nullptr, out.get()), 0x510a);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events(3, error_line("Invalid parameter to IPMI interface\n")));
}

TEST_F(power_management, has_a_status_where_byte_2_is_0)
{
    EXPECT_EQ(status({0x00, 0x00, 0x00, 0x05}), bytes{0x05});
    EXPECT_EQ(status({0x00, 0x00, 0x01, 0x05}), bytes{0x00});
    EXPECT_EQ(status({0x00, 0x00, 0xFF, 0x05}), bytes{0x00});
    EXPECT_EQ(status({0x00, 0xFF, 0x00, 0xFE}), bytes{0xFE});
}

TEST_F(power_management, has_status_0_where_the_answer_is_short)
{
    for (const size_t length : {0, 1, 2, 3})
        EXPECT_EQ(status(bytes(length)), bytes{0x00});
}

TEST_F(power_management, rebrands_with_15_characters_and_no_terminator)
{
    const bytes twenty = characters("twenty characters...");
    EXPECT_EQ(hex(rebrand(twenty)), hex(characters("twenty characte")));
    EXPECT_EQ(hex(rebrand(bytes_at(twenty.data(), 15))), hex(characters("twenty characte")));
    EXPECT_EQ(hex(rebrand(bytes_at(twenty.data(), 14))),
              hex(zero_filled(characters("twenty charact"), 15)));
}

TEST_F(power_management, rebrands_with_zeros_behind_a_text_that_ends)
{
    EXPECT_EQ(hex(rebrand({'Z', 'a', 't', 0x00, 'x', 'y', 'z'})),
              hex(zero_filled(characters("Zat"), 15)));
    EXPECT_EQ(rebrand({0x00, 'x', 'y', 'z'}), bytes(15));
    EXPECT_EQ(rebrand({}), bytes(15));
}

TEST_F(power_management, takes_characters_beyond_ascii_as_they_come)
{
    EXPECT_EQ(hex(rebrand({0xC3, 0xA4, 0xFF, 0x01})),
              hex(zero_filled({0xC3, 0xA4, 0xFF, 0x01}, 15)));
}

TEST_F(power_management, does_not_look_at_its_output_unless_it_succeeds)
{
    platform.expects(at, 0x30A9, status_payload).answers({0xC1});
    EXPECT_EQ(ipmi_location_get_pm_status(&at, nullptr), 0xC1);
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(ipmi_location_get_pm_rebrand(&at, nullptr), 0x5001);
}

TEST_F(power_management_death, a_missing_output_is_not_refused_but_dereferenced)
{
    EXPECT_DEATH(
        {
            platform.expects(at, 0x30A9, status_payload);
            ipmi_location_get_pm_status(&at, nullptr);
        },
        "");
    EXPECT_DEATH(
        {
            platform.expects(at, 0x30A9, rebrand_payload);
            ipmi_location_get_pm_rebrand(&at, nullptr);
        },
        "");
}
