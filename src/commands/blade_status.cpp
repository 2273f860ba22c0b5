#include "ruk_ipmi/blade_status.h"

#include "commands/short_command.h"

using namespace ruk;

int ipmi_location_host_event_status(const blade_location *location, uint8_t out[6])
{
    if (!location || !out)
        return invalid_param();
    const int result = short_command(location, 0x3051).fetch(out, 6);
    turn<uint16_t>(out + 1); // whatever the result
    return result;
}

int ipmi_host_event_status(int blade_num, uint8_t out[6])
{
    return by_number<ipmi_location_host_event_status>(blade_num, out);
}

int ipmi_location_get_vkvm_status(const blade_location *location, uint8_t out[7])
{
    return short_command(location, 0x308D).fetch(out, 7);
}

int ipmi_get_vkvm_status(int blade_num, uint8_t out[7])
{
    return by_number<ipmi_location_get_vkvm_status>(blade_num, out);
}

int ipmi_location_get_vmedia_status(const blade_location *location, uint8_t out[5])
{
    return short_command(location, 0x308E).fetch(out, 5);
}

int ipmi_get_vmedia_status(int blade_num, uint8_t out[5])
{
    return by_number<ipmi_location_get_vmedia_status>(blade_num, out);
}

int ipmi_location_get_imc_status(const blade_location *location, uint8_t out[7])
{
    return short_command(location, 0x3090).fetch(out, 7);
}

int ipmi_location_enter_firmware_update(const blade_location *location, uint8_t *out)
{
    return short_command(location, 0xB818).fetch(out); // network function 0x2E, shifted, on LUN 0
}

int ipmi_enter_firmware_update(int blade_num, uint8_t *out)
{
    return by_number<ipmi_location_enter_firmware_update>(blade_num, out);
}

int location_edid_information(const blade_location *location, uint8_t which, const uint8_t *block,
                              uint32_t length, uint8_t *out)
{
    constexpr uint32_t request_length = 129;
    if (!location || !out)
        return invalid_param();
    command hand_over(location, 0x3092, which, ruk::block{block, length});
    hand_over.request.data_len = request_length; // whatever the block's
    return hand_over.fetch(out);
}

int edid_information(int blade_num, uint8_t which, const uint8_t *block, uint32_t length,
                     uint8_t *out)
{
    return by_number<location_edid_information>(blade_num, which, block, length, out);
}

int ipmi_location_read_staging(const blade_location *location, uint8_t which, uint8_t out[257])
{
    return short_command(location, 0x3093, which).fetch(out, 257);
}

int ipmi_read_staging(int blade_num, uint8_t which, uint8_t out[257])
{
    return by_number<ipmi_location_read_staging>(blade_num, which, out);
}

int ipmi_location_read_queue(const blade_location *location, uint8_t first, uint8_t second,
                             uint8_t out[257])
{
    return short_command(location, 0x3094, first, second).fetch(out, 257);
}

int ipmi_read_queue(int blade_num, uint8_t first, uint8_t second, uint8_t out[257])
{
    return by_number<ipmi_location_read_queue>(blade_num, first, second, out);
}

// The second text takes the first one's place in the request, all of it.
int ipmi_location_login_access(const blade_location *location, const char *,
                               const char *second_text, uint8_t out[6])
{
    if (!location || !out)
        return invalid_param();
    command ask(location, 0x3096, text_field{second_text, 20}, zeros{16});
    const int result = ask.fetch(out, 6);
    if (!ask.refused()) // also when no answer came
        turn<uint32_t>(out + 1);
    return result;
}

int ipmi_login_access(int blade_num, const char *first_text, const char *second_text,
                      uint8_t out[6])
{
    return by_number<ipmi_location_login_access>(blade_num, first_text, second_text, out);
}

int ipmi_location_test_alert(const blade_location *location, uint8_t which, const void *data,
                             uint8_t *out)
{
    if (!out)
        return invalid_param();
    return command(location, 0x3097, which, block{data, 4}, zeros{4}).fetch(out);
}

int ipmi_location_identify_led_status(const blade_location *location, uint8_t out[2])
{
    return short_command(location, 0x3032).fetch(out, 2);
}

int ipmi_identify_led_status(int blade_num, uint8_t out[2])
{
    return by_number<ipmi_location_identify_led_status>(blade_num, out);
}

int ipmi_location_get_last_post_code(const blade_location *location, uint8_t out[131])
{
    return short_command(location, 0x3099).fetch_unchecked(out, 131);
}

int ipmi_get_last_post_code(int blade_num, uint8_t out[131])
{
    return by_number<ipmi_location_get_last_post_code>(blade_num, out);
}
