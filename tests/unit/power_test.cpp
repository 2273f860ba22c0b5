// Power and heat of a blade.

#include "ruk_ipmi/power.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "command_shape.h"

namespace
{

// Two bytes of an answer as they lie in the caller's word.
uint16_t as_they_come(uint8_t first, uint8_t second)
{
    const uint8_t pair[] = {first, second};
    uint16_t word;
    memcpy(&word, pair, sizeof word);
    return word;
}

// What `location_blade_power_consumption` leaves.
struct RUK_IPMI_PACKED power_drawn {
    uint8_t completion_code;
    uint16_t plain_1;
    uint16_t corrected_1;
    uint16_t plain_2;
    uint8_t byte_7;
    uint16_t corrected_2;
    uint16_t corrected_3;
    uint8_t correction;
    uint8_t byte_13;
};

int get_power_drawn(const blade_location *at, power_drawn *out)
{
    return location_blade_power_consumption(at, reinterpret_cast<uint8_t *>(out));
}

std::vector<command_row> power_data_rows()
{
    return {
        row<power_cycle_data>("get_power_cycle_data", ipmi_location_get_power_cycle_data, 0x309B,
                              {}, {0x00, 0x81, 0x82}, {0x00, 0x81})
            .by_number(ipmi_get_power_cycle_data),
        row<power_consumption_data>(
            "get_power_consumption_data",
            [](auto at, auto out) {
                return ipmi_location_get_power_consumption_data(at, 0x07, 0x81, out);
            },
            0x309C, {0x07, 0x81},
            {0x00, 0x10, 0x00, 0x00, 0x00, 0x24, 0x23, 0x22, 0x21, 0x34, 0x33, 0x32, 0x31,
             0x44, 0x43, 0x42, 0x41, 0x52, 0x51, 0x64, 0x63, 0x62, 0x61, 0x72, 0x71, 0x80},
            {0x00, 16, 0x21222324, 0x31323334, 0x41424344, 0x5152, 0x61626364, 0x7172})
            .converts_unless_refused(),
        row<1>("reset_power_consumption_data",
               [](auto at, auto out) {
                   return ipmi_location_reset_power_consumption_data(at, 0x07, 0x81, 0x09, out);
               },
               0x309D, {0x07, 0x81, 0x09}, {0x00, 0x01}),
        row<power_drawn>("blade_power_consumption", get_power_drawn, 0x308F, {},
                         {0x00, 0x22, 0x11, 0x64, 0x00, 0x44, 0x33, 0x77, 0x66, 0x55, 0x0A, 0x00,
                          0x00, 0x99, 0xAA},
                         {0x00, 0x1122, 100 - 16, 0x3344, 0x77, 0x5566 - 16, 10, 0x00, 0x99})
            .leaves_location_unchecked()
            .converts_unless_refused(),
    };
}

INSTANTIATE_COMMAND_SHAPE(power_data, power_data_rows());

const bytes efficiency_payload = {0, 0, 0x28, 0x25, 0x07, 0x81, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};

std::vector<command_row> power_grant_rows()
{
    return {
        row<1>("set_efficiency",
               [](auto at, auto out) {
                   return ipmi_location_set_efficiency(at, 0x07, 0x81, 0.9512F, out);
               },
               0x30C0, efficiency_payload, {0x00, 0x01})
            .by_number<1>([](int blade, auto out) {
                return ipmi_set_efficiency(blade, 0x07, 0x81, 0.9512F, out);
            })
            .leaves_location_unchecked(),
        row<uint16_t>(
            "power_on_response",
            [](auto at, auto out) {
                return location_power_on_response(at, 0x01, 0x02, 0x1234, 0x04, 0x05, out);
            },
            0x3087, {0x01, 0x02, 0x34, 0x12, 0x04}, {0x00, 0x81, 0x82}, as_they_come(0x00, 0x81)),
    };
}

INSTANTIATE_COMMAND_SHAPE(power_grant, power_grant_rows());

std::vector<command_row> thermal_rows()
{
    return {
        row<3>(
            "cpu_throttling_control",
            [](auto at, auto out) { return ipmi_location_cpu_throttling_control(at, 0x81, out); },
            0x308B, {0x81, 0x00, 0x00}, {0x00, 0x01, 0x02, 0x03})
            .by_number<3>(
                [](int blade, auto out) { return ipmi_cpu_throttling_control(blade, 0x81, out); })
            .leaves_location_unchecked(),
        row<1>("mem_throttle",
               [](auto at, auto out) { return ipmi_location_mem_throttle(at, 0x81, out); }, 0x309A,
               {0x81, 0x00, 0x00}, {0x00, 0x01})
            .by_number<1>([](int blade, auto out) { return ipmi_mem_throttle(blade, 0x81, out); }),
        row<3>("get_requested_fan_speed", ipmi_location_get_requested_fan_speed, 0x308C, {},
               {0x00, 0x01, 0x02, 0x03})
            .by_number<3>(ipmi_get_requested_fan_speed),
        row<uint16_t>(
            "chassis_fan_status",
            [](auto at, auto out) { return ipmi_location_chassis_fan_status(at, 0x81, out); },
            0x3095, {0x81, 0x00, 0x00}, {0x00, 0x81, 0x82}, as_they_come(0x00, 0x81))
            .by_number<uint16_t>(
                [](int blade, auto out) { return ipmi_chassis_fan_status(blade, 0x81, out); }),
    };
}

INSTANTIATE_COMMAND_SHAPE(thermal, thermal_rows());

class power_drawn_of_a_blade : public scripted_test
{
  protected:
    // An answer with `number` for each corrected one leaves the caller `left`.
    void expect_corrected(uint16_t number, uint8_t by, uint16_t left)
    {
        platform.expects(at, 0x308F)
            .answers({0, 0x05, 0, low(number), high(number), 0x05, 0, 0, low(number), high(number),
                      low(number), high(number), by, 0});
        power_drawn out;
        EXPECT_EQ(get_power_drawn(&at, &out), 0);
        EXPECT_EQ(hex(bytes_of(out)),
                  hex(bytes_of(power_drawn{0, 5, left, 5, 0, left, left, by, 0})));
    }

    const blade_location at = blade(5);
};

class efficiency : public scripted_test
{
  protected:
    void expect_sent(float value, const bytes &word)
    {
        platform.expects(at, 0x30C0, joined(word, {0x07, 0x81, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
        litter_the_stack();
        uint8_t out;
        EXPECT_EQ(ipmi_location_set_efficiency(&at, 0x07, 0x81, value, &out), 0) << value;
    }

    const bytes all = {0x01, 0x00, 0x00, 0x00};
    const blade_location at = blade(5);
};

class power_on_response : public scripted_test
{
  protected:
    int respond_on(uint32_t platform_type)
    {
        platform.os.platform_info[0] = platform_type;
        uint16_t out;
        litter_the_stack();
        return location_power_on_response(&at, 0x01, 0x02, 0x1234, 0x04, 0x05, &out);
    }

    scripted_exchange &expects_extended()
    {
        return platform.expects(at, 0x3087, {0x01, 0x02, 0x34, 0x12, 0x04, 0x05});
    }

    const blade_location at = blade(5);
    // 0x1234, and 0x3412 for it as it lies in the request.
    const event told =
        error_line("location_power_on_response : Alloc Result 1 Fail Reason 2 Warn 4 "
                   "powerallocated(raw) 4660 Power Alloc 13330 FailExt 5 \n");
};

} // namespace

TEST_F(power_drawn_of_a_blade, is_corrected_by_16_unless_the_blade_says_otherwise)
{
    expect_corrected(100, 0, 84);
    expect_corrected(100, 1, 99);
    expect_corrected(100, 17, 83);
}

TEST_F(power_drawn_of_a_blade, is_corrected_by_50_at_the_most)
{
    expect_corrected(100, 49, 51);
    for (const uint8_t correction : bytes{50, 51, 128, 200, 255})
        expect_corrected(100, correction, 50);
}

TEST_F(power_drawn_of_a_blade, stays_where_it_is_below_the_correction)
{
    expect_corrected(16, 0, 0);
    expect_corrected(15, 0, 15);
    expect_corrected(10, 16, 10);
    expect_corrected(49, 200, 49);
    expect_corrected(0, 200, 0);
}

TEST_F(power_drawn_of_a_blade, is_a_number_of_16_bits)
{
    expect_corrected(0xFFFF, 50, 0xFFFF - 50);
    expect_corrected(0x0100, 1, 0x00FF);
    expect_corrected(0x8000, 0, 0x8000 - 16);
}

TEST_F(efficiency, is_sent_in_ten_thousandths_without_their_fraction)
{
    expect_sent(0.0F, {0x00, 0x00, 0x00, 0x00});
    expect_sent(0.00019F, {0x00, 0x00, 0x01, 0x00});
    expect_sent(0.5F, {0x00, 0x00, 0x88, 0x13});
    expect_sent(0.9512F, {0x00, 0x00, 0x28, 0x25});
    expect_sent(0.99995F, {0x00, 0x00, 0x0F, 0x27});
}

TEST_F(efficiency, is_multiplied_in_single_precision)
{
    expect_sent(0.7F, {0x00, 0x00, 0x58, 0x1B}); // with more it would be a little less than 7000
    expect_sent(0.9F, {0x00, 0x00, 0x28, 0x23});
}

TEST_F(efficiency, of_one_hundred_per_cent_and_more_is_sent_as_all)
{
    for (const float value : {1.0F, 1.00004F, 2.0F, 6.5535F})
        expect_sent(value, all);
}

TEST_F(efficiency, beyond_16_bits_wraps)
{
    expect_sent(7.0F, {0x00, 0x00, 0x70, 0x11});
    expect_sent(6.5536F, {0x00, 0x00, 0x00, 0x00});
    expect_sent(8.0F, all);
    expect_sent(65536.0F, {0x00, 0x00, 0x00, 0x00});
}

TEST_F(efficiency, below_zero_wraps)
{
    expect_sent(-0.00005F, {0x00, 0x00, 0x00, 0x00});
    expect_sent(-0.0001F, all);
    expect_sent(-1.0F, all);
    expect_sent(-6.0F, {0x00, 0x00, 0xA0, 0x15});
}

TEST_F(efficiency, of_the_least_32_bit_number_wraps_and_of_one_above_the_greatest_is_sent_as_all)
{
    constexpr float bound = 214748.359375F; // 2^31 in ten-thousandths of single precision
    expect_sent(-bound, {0x00, 0x00, 0x00, 0x00});
    expect_sent(bound, all);
}

TEST_F(efficiency, that_is_no_32_bit_number_is_sent_as_all)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float value : {214748.4F, -214748.4F, 3.4e38F, infinity, -infinity, NAN, -NAN})
        expect_sent(value, all);
}

TEST_F(power_on_response, has_an_extended_reason_on_some_platforms_which_is_told_before_it_is_sent)
{
    for (const uint32_t type : {1u, 2u, 3u, 0x10u, 0x11u, 0x12u, 0x13u, 0x20u, 0x21u}) {
        expects_extended();
        platform.forget();
        EXPECT_EQ(respond_on(type), 0);
        const events happened = platform.journal();
        ASSERT_EQ(happened.size(), 5u) << type;
        EXPECT_EQ(happened[0], told);
        EXPECT_EQ(happened[2], sent(0x18 + 6));
    }
}

TEST_F(power_on_response, has_none_on_other_platforms_where_nothing_is_told)
{
    for (const uint32_t type : {0u, 4u, 0x0Fu, 0x14u, 0x1Fu, 0x22u, 0x101u, 0xFFFFFFFFu}) {
        platform.expects(at, 0x3087, {0x01, 0x02, 0x34, 0x12, 0x04});
        EXPECT_EQ(respond_on(type), 0) << type;
    }
    EXPECT_EQ(platform.log(), events{});
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 5));
}

TEST_F(power_on_response, with_an_extended_reason_returns_what_became_of_it)
{
    expects_extended().answers({0xC1});
    EXPECT_EQ(respond_on(0x20), 0xC1);
    EXPECT_EQ(platform.log(), events{told});
    expects_extended().answers({0xC1}).fails_to_receive(0x5007);
    EXPECT_EQ(respond_on(0x20), 0x5007);
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(respond_on(0x20), 0x5001);
}

TEST_F(power_on_response, tells_nothing_of_what_it_refuses)
{
    platform.os.platform_info[0] = 0x20;
    EXPECT_EQ(location_power_on_response(&at, 1, 2, 3, 4, 5, nullptr), 0x510a);
    EXPECT_EQ(platform.journal(), events{error_line("Invalid parameter to IPMI interface\n")});
}
