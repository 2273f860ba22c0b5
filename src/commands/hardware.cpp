#include "ruk_ipmi/hardware.h"

#include "commands/oem_parameter.h"
#include "commands/short_command.h"

using namespace ruk;

namespace
{

// The two LEDs differ in their code, their period and four bytes of the request.
struct led {
    uint8_t code;
    uint16_t period;
    uint32_t pattern;
};

constexpr led server_led = {0x01, 250, 0};
constexpr led drive_led = {0x03, 500 & 0xFF, 0xFFFFFFFF}; // blades expect 500's low byte alone

// A refusal is only logged, under one name for both LEDs.
int blink_led(const blade_location *location, uint32_t blink, const led &which)
{
    static constexpr char name[] = "ipmi_blink_unblink_serverled";
    if (!location)
        return IPMI_ERR_INVALID_PARAM;
    if (location->slot_id == 0 && location->sub_slot_id == 0)
        return IPMI_ERR_BAD_LOCATION;
    slog_elog("%s(), slot_id: %d, sub_slot_id: %d, blink: %d, button_id\n", name, location->slot_id,
              location->sub_slot_id, blink);
    write_parameter set(location, parameter_group::leds, which.code, 0x02, blink != 0 ? 0xFF : 0x00,
                        le16{which.period}, le16{which.period}, le32{which.pattern}, 0x00);
    slog_elog("ENTER %s()\n", name);
    slog_dump("IPMI Request Buffer ", set.request.data, set.request.data_len, 1);
    set.exchange();
    if (set.refused())
        slog_elog("\n%s() failed get_ruk_ipmi_response rc: %d\n cc: %hhu\n", name, 0,
                  set.completion_code());
    return static_cast<int>(set.status);
}

} // namespace

int ipmi_blink_unblink_serverled_kvm(const blade_location *location, uint32_t blink)
{
    return blink_led(location, blink, server_led);
}

int ipmi_blink_unblink_sled_driveled(const blade_location *location, uint32_t blink)
{
    return blink_led(location, blink, drive_led);
}

int ipmi_set_node_power_button(const blade_location *location, uint32_t button_flags)
{
    static constexpr char name[] = "ipmi_set_node_power_button";
    if (!location) {
        slog_elog("%s: blade_location is NULL.\n", name);
        return IPMI_ERR_INVALID_PARAM;
    }
    command set(location, 0x000A, static_cast<int>(button_flags & 1));
    const int result = set.exchange();
    if (set.refused())
        slog_elog("%s: completion code: %u.\n", name, set.response.comp_code);
    return result;
}

int ipmi_cpld_access(const blade_location *location, const uint8_t request[10], uint32_t *result)
{
    if (!request || !result || !location)
        return invalid_param();
    command access(location, 0x30BC, block{request, 10});
    uint8_t *data = access.request.data;
    if (data[0] == 2 || data[0] == 3) { // the operations with numbers in them
        turn<uint16_t>(data + 1);
        turn<uint32_t>(data + 3);
    }
    const int status = access.exchange();
    memcpy(result, access.response.data, sizeof *result);
    return status;
}

int ipmi_bexal_post_code(const blade_location *location, const uint8_t request[4], uint8_t post[17])
{
    if (!request || !post || !location)
        return invalid_param();
    const short_command ask(location, 0x30D4, request[0], request[1], request[2], request[3]);
    const int result = ask.fetch(post, 17);
    turn<uint32_t>(post + 1);
    return result;
}
