// A sled's switches but for their configuration: the links, the map of dynamic MAC addresses, and
// the names of statuses.

#include "ruk_ipmi/sled_switch.h"

#include <numeric>

#include "oem_shape.h"

namespace
{

const bytes links_request = {0x01, 0x0D, 0x04, 0x00, 0x00, 0x00};

const uint8_t map[] = {0xD1, 0xD2, 0xD3};
const event refusal_of_map = error_line("ipmi_set_dynamic_mac_iom_map: found invalid parameter\n");

oem_row links_row()
{
    return oem_query(
        "get_link_status",
        [](auto at) {
            guarded<uint8_t> a, b;
            const int result = ipmi_location_get_sled_switch_link_status(at, a.get(), b.get());
            return outcome_of(result, a, b);
        },
        0x30D0, links_request, {0x00, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0x01, 0x02, 0xF8},
        {0x01, 0x02});
}

event map_failed(const char *numbers)
{
    return error_line(formatted("ipmi_set_dynamic_mac_iom_map command failed %s\n", numbers));
}

oem_row map_row()
{
    oem_row row =
        oem_command("set_dynamic_mac_iom_map",
                    [](auto at) { return ipmi_set_dynamic_mac_iom_map(at, 0x77, map, sizeof map); },
                    0x30CB, {0x00, 0x08, 0x05, 0x00, 0x00, 0x00, 0x77, 0x03, 0xD1, 0xD2, 0xD3});
    row.counts_first = preferred::completion_code;
    row.after_refusal = {map_failed("rc: 0 cc: 0xC1")};
    row.after_failure = {map_failed("rc: 20481 cc: 0x0")};
    row.after_both = {map_failed("rc: 20481 cc: 0xC1")};
    row.missing_location = events{refusal_of_map};
    return row;
}

std::vector<oem_row> rows()
{
    return {links_row(), map_row()};
}

INSTANTIATE_OEM_SHAPE(sled_switch_links, rows());

class sled_switch_links : public scripted_test
{
  protected:
    const blade_location at = blade(5);
};

using dynamic_mac_iom_map = sled_switch_links;

} // namespace

TEST_F(sled_switch_links, refuse_each_missing_pointer)
{
    guarded<uint8_t> a, b;
    EXPECT_EQ(ipmi_location_get_sled_switch_link_status(&at, nullptr, b.get()), 0x510a);
    EXPECT_EQ(ipmi_location_get_sled_switch_link_status(&at, a.get(), nullptr), 0x510a);
    EXPECT_TRUE(a.untouched() && b.untouched());
    EXPECT_EQ(platform.journal(), events(2, error_line("Invalid parameter to IPMI interface\n")));
}

TEST_F(sled_switch_links, are_zeros_where_an_answer_is_short)
{
    platform.expects(at, 0x30D0, links_request).answers({0, 0, 0, 0, 0, 0, 0, 0, 7});
    guarded<uint8_t> a, b;
    litter_the_stack();
    EXPECT_EQ(ipmi_location_get_sled_switch_link_status(&at, a.get(), b.get()), 0);
    EXPECT_EQ(*a, 7);
    EXPECT_EQ(*b, 0);
}

TEST_F(dynamic_mac_iom_map, refuses_a_missing_map_of_whatever_length)
{
    EXPECT_EQ(ipmi_set_dynamic_mac_iom_map(&at, 1, nullptr, 3), 0x510a);
    EXPECT_EQ(ipmi_set_dynamic_mac_iom_map(&at, 1, nullptr, 0), 0x510a);
    EXPECT_EQ(platform.journal(), events(2, refusal_of_map));
}

TEST_F(dynamic_mac_iom_map, sends_up_to_128_bytes)
{
    bytes longest(128);
    std::iota(longest.begin(), longest.end(), uint8_t{1});
    platform.expects(at, 0x30CB, joined({0x00, 0x08, 130, 0, 0, 0, 0x77, 128}, longest));
    EXPECT_EQ(ipmi_set_dynamic_mac_iom_map(&at, 0x77, longest.data(), 128), 0);
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 136));
}

TEST_F(dynamic_mac_iom_map, refuses_more_than_128_bytes)
{
    const bytes too_long(129);
    for (const uint32_t length : {129u, 0x100u, 0x10001u, 0xFFFFFFFFu})
        EXPECT_EQ(ipmi_set_dynamic_mac_iom_map(&at, 1, too_long.data(), length), 0x510a);
    EXPECT_EQ(platform.journal(), events(4, refusal_of_map));
}

TEST_F(dynamic_mac_iom_map, sends_the_header_alone_for_no_bytes)
{
    platform.expects(at, 0x30CB, {0x00, 0x08, 0x02, 0x00, 0x00, 0x00, 0x77, 0x00});
    EXPECT_EQ(ipmi_set_dynamic_mac_iom_map(&at, 0x77, map, 0), 0);
}

TEST(switch_config_status, has_a_name_for_each_of_nine_values)
{
    const char *const names[] = {"Not_Started",        "Completed",        "Pending_Busy",
                                 "TFTP_Failure",       "FileAccess_Error", "EEPROM_Driver_Error",
                                 "Verification_Error", "General_Failure",  "File_Size_CRC_Error"};
    for (uint32_t status = 0; status < std::size(names); ++status)
        EXPECT_STREQ(ipmi_switch_config_status_to_str(status), names[status]);
}

TEST(switch_config_status, has_no_name_beyond_them)
{
    for (const uint32_t status : {9u, 10u, 255u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(ipmi_switch_config_status_to_str(status), nullptr);
}
