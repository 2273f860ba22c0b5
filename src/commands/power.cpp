#include "ruk_ipmi/power.h"

#include <algorithm>
#include <cstddef>

#include "commands/short_command.h"
#include "platform/platform_info.h"

using namespace ruk;

static_assert(sizeof(power_cycle_data) == 2);
static_assert(sizeof(power_consumption_data) == 25 &&
              offsetof(power_consumption_data, value_5) == 17 &&
              offsetof(power_consumption_data, value_7) == 23);

// What a blade draws, and how often it was powered.

int ipmi_location_get_power_cycle_data(const blade_location *location, power_cycle_data *out)
{
    return short_command(location, 0x309B).fetch(out);
}

int ipmi_get_power_cycle_data(int blade_num, power_cycle_data *out)
{
    return by_number<ipmi_location_get_power_cycle_data>(blade_num, out);
}

int ipmi_location_get_power_consumption_data(const blade_location *location, uint8_t p1, uint8_t p2,
                                             power_consumption_data *out)
{
    if (!location || !out)
        return invalid_param();
    command get(location, 0x309C, p1, p2);
    const int result = get.fetch(out);
    if (!get.refused()) { // also when no answer came
        out->value_1 = from_wire(out->value_1);
        out->value_2 = from_wire(out->value_2);
        out->value_3 = from_wire(out->value_3);
        out->value_4 = from_wire(out->value_4);
        out->value_5 = from_wire(out->value_5);
        out->value_6 = from_wire(out->value_6);
        out->value_7 = from_wire(out->value_7);
    }
    return result;
}

int ipmi_location_reset_power_consumption_data(const blade_location *location, uint8_t p1,
                                               uint8_t p2, uint8_t p3, uint8_t *out)
{
    return short_command(location, 0x309D, p1, p2, p3).fetch(out);
}

namespace
{

// Turns a number to host order and takes the correction from it, where there is so much.
void turn_and_correct(uint8_t *at, uint16_t correction)
{
    uint16_t value = load_le16(at);
    if (value >= correction)
        value = static_cast<uint16_t>(value - correction);
    memcpy(at, &value, sizeof value);
}

} // namespace

int location_blade_power_consumption(const blade_location *location, uint8_t out[14])
{
    constexpr uint8_t usual_correction = 16;
    constexpr uint8_t greatest_correction = 50;
    if (!out)
        return invalid_param();
    command ask(location, 0x308F);
    const int result = ask.fetch(out, 14);
    if (!ask.refused()) { // also when no answer came
        turn<uint16_t>(out + 1);
        turn<uint16_t>(out + 5);
        const uint8_t correction =
            out[12] == 0 ? usual_correction : std::min(out[12], greatest_correction);
        for (uint8_t *field : {out + 8, out + 10, out + 3})
            turn_and_correct(field, correction);
    }
    return result;
}

// What a blade is granted.

namespace
{

// The efficiency in ten-thousandths as the request has it: the low half of the word says that all
// of it is reached, the high half what is.
uint32_t efficiency_word(float efficiency)
{
    constexpr uint32_t all = 1;
    constexpr float too_great = 2147483648.0F; // for a 32-bit integer
    // Of single precision on every host, those included that compute with more.
    const volatile float product = efficiency * 10000.0F;
    if (!(product >= -too_great && product < too_great)) // or not a number
        return all;
    const auto parts = static_cast<uint16_t>(static_cast<int32_t>(product));
    return parts > 9999 ? all : static_cast<uint32_t>(parts) << 16;
}

// The platforms whose blades take the extended reason of a failure.
bool has_extended_reason(uint32_t platform_type)
{
    switch (platform_type) {
    case 1:
    case 2:
    case 3:
    case 0x10:
    case 0x11:
    case 0x12:
    case 0x13:
    case 0x20:
    case 0x21:
        return true;
    default:
        return false;
    }
}

} // namespace

int ipmi_location_set_efficiency(const blade_location *location, uint8_t first, uint8_t second,
                                 float efficiency, uint8_t *out)
{
    if (!out)
        return invalid_param();
    return command(location, 0x30C0, le32{efficiency_word(efficiency)}, first, second, zeros{10})
        .fetch(out);
}

int ipmi_set_efficiency(int blade_num, uint8_t first, uint8_t second, float efficiency,
                        uint8_t *out)
{
    return by_number<ipmi_location_set_efficiency>(blade_num, first, second, efficiency, out);
}

int location_power_on_response(const blade_location *location, uint8_t result, uint8_t fail_reason,
                               uint16_t power_allocated, uint8_t warning, uint8_t fail_reason_ext,
                               uint16_t *out)
{
    if (!location || !out)
        return invalid_param();
    command respond(location, 0x3087, result, fail_reason, le16{power_allocated}, warning);
    if (has_extended_reason(_gPlatInfo()[PLAT_INFO_TYPE])) {
        append(respond.request, fail_reason_ext);
        const uint8_t *sent = respond.request.data + 2;
        slog_elog("location_power_on_response : Alloc Result %d Fail Reason %d Warn %d "
                  "powerallocated(raw) %d Power Alloc %d FailExt %d \n",
                  result, fail_reason, warning, power_allocated, sent[0] << 8 | sent[1],
                  fail_reason_ext);
    }
    return respond.fetch(out);
}

// Throttling and fans.

int ipmi_location_cpu_throttling_control(const blade_location *location, uint8_t control,
                                         uint8_t out[3])
{
    return short_command(location, 0x308B, control, 0x00, 0x00).fetch_unchecked(out, 3);
}

int ipmi_cpu_throttling_control(int blade_num, uint8_t control, uint8_t out[3])
{
    return by_number<ipmi_location_cpu_throttling_control>(blade_num, control, out);
}

int ipmi_location_mem_throttle(const blade_location *location, uint8_t control, uint8_t *out)
{
    return short_command(location, 0x309A, control, 0x00, 0x00).fetch(out);
}

int ipmi_mem_throttle(int blade_num, uint8_t control, uint8_t *out)
{
    return by_number<ipmi_location_mem_throttle>(blade_num, control, out);
}

int ipmi_location_get_requested_fan_speed(const blade_location *location, uint8_t out[3])
{
    return short_command(location, 0x308C).fetch(out, 3);
}

int ipmi_get_requested_fan_speed(int blade_num, uint8_t out[3])
{
    return by_number<ipmi_location_get_requested_fan_speed>(blade_num, out);
}

int ipmi_location_chassis_fan_status(const blade_location *location, uint8_t status, uint16_t *out)
{
    return short_command(location, 0x3095, status, 0x00, 0x00).fetch(out);
}

int ipmi_chassis_fan_status(int blade_num, uint8_t status, uint16_t *out)
{
    return by_number<ipmi_location_chassis_fan_status>(blade_num, status, out);
}
