#include "ruk_ipmi/settings.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "commands/oem_parameter.h"
#include "platform/platform_info.h"

using namespace ruk;

static_assert(sizeof(power_thermal_request) == 488 && offsetof(power_thermal_request, param) == 1 &&
              offsetof(power_thermal_request, len) == 2 &&
              offsetof(power_thermal_request, offset) == 4 &&
              offsetof(power_thermal_request, body) == 6);

// Power and thermal management.

namespace
{

// The length that is told is the body's.
int manage_power_thermal(const blade_location *location, uint8_t op, uint8_t param, uint16_t offset,
                         block body, uint8_t resp[10])
{
    return command(location, 0x30CE, op, param, le16{static_cast<uint16_t>(body.length)},
                   le16{offset}, body)
        .fetch(resp, 10);
}

} // namespace

int ipmi_location_process_power_thermal_mgmt(const blade_location *location,
                                             const power_thermal_request *req, uint8_t resp[10])
{
    if (!req || !resp || !location)
        return invalid_param();
    return manage_power_thermal(location, req->op, req->param, req->offset,
                                block{req->body, req->len}, resp);
}

int ipmi_process_power_thermal_mgmt(int blade_num, const power_thermal_request *req,
                                    uint8_t resp[10])
{
    return by_number<ipmi_location_process_power_thermal_mgmt>(blade_num, req, resp);
}

// Physical location.

namespace
{

constexpr uint32_t numeric_attribute = 513;
constexpr size_t longest_value = 128;

// What a blade calls an attribute that is a text; 0 when it is none.
uint8_t code_of_text(uint32_t attr_id)
{
    switch (attr_id) {
    case 637:
        return 0x10;
    case 706:
        return 0x20;
    case 633:
        return 0x30;
    case 205:
        return 0x40;
    case 600:
        return 0x50;
    default:
        return 0;
    }
}

} // namespace

int ipmi_location_set_physical_location(const blade_location *location, uint8_t param_b,
                                        uint32_t attr_id, const char *value)
{
    constexpr uint8_t physical_location = 0x01;
    constexpr size_t text_head = 7;
    uint8_t body[text_head + longest_value] = {};
    size_t length = 0;
    body[3] = param_b;
    body[4] = location->slot_id;
    body[5] = static_cast<uint8_t>(_gPlatInfo()[PLAT_INFO_LOCATION]);
    if (const uint8_t code = code_of_text(attr_id)) {
        const size_t text_length = strlen(value);
        bounded_copy(body + text_head, longest_value, value, text_length,
                     "the physical location's value");
        length = text_head + text_length;
        body[2] = code;
        body[6] = static_cast<uint8_t>(text_length);
    } else if (attr_id == numeric_attribute) {
        length = 6;
        body[3] = static_cast<uint8_t>(strtol(value, nullptr, 10));
    } // any other: a header alone
    store_le16(body, static_cast<uint16_t>(length));
    uint8_t resp[10];
    return manage_power_thermal(location, 0x00, physical_location, 0, block{body, length}, resp);
}

// Messages of the LCD.

int ipmi_location_get_lcd_hide_status(const blade_location *location, uint8_t *status_a,
                                      uint8_t *status_b)
{
    if (!status_a || !status_b)
        return invalid_param();
    read_parameter get(location, parameter_group::lcd_messages, 5);
    get.exchange();
    if (get.refused())
        return static_cast<int>(get.response.comp_code);
    // What a short answer does not have is 0.
    uint8_t answer[11] = {};
    memcpy(answer, get.response.data, std::min<size_t>(get.response.data_len, sizeof answer));
    *status_a = answer[8];
    *status_b = answer[9];
    return static_cast<int>(get.status);
}

int ipmi_get_lcd_hide_status(int blade_num, uint8_t *status_a, uint8_t *status_b)
{
    return by_number<ipmi_location_get_lcd_hide_status>(blade_num, status_a, status_b);
}

int ipmi_location_hide_lcd_messages(const blade_location *location)
{
    return write_parameter(location, parameter_group::lcd_messages, 0x01).exchange();
}

int ipmi_hide_lcd_messages(int blade_num)
{
    return by_number<ipmi_location_hide_lcd_messages>(blade_num);
}

int ipmi_location_unhide_lcd_messages(const blade_location *location)
{
    return write_parameter(location, parameter_group::lcd_messages, 0x00).exchange();
}

int ipmi_unhide_lcd_messages(int blade_num)
{
    return by_number<ipmi_location_unhide_lcd_messages>(blade_num);
}

// Link tuning.

namespace
{

enum link_tuning_item : uint8_t { tuning_version = 1, transmit_status = 2 };

} // namespace

int ipmi_location_get_link_tuning_version(const blade_location *location, uint32_t *value_a,
                                          uint32_t *value_b, uint8_t *value_c)
{
    if (!location || !value_a || !value_b)
        return invalid_param();
    read_parameter get(location, parameter_group::link_tuning, 11, tuning_version);
    const int result = get.exchange_exactly(17);
    if (result == 0) {
        const uint8_t *data = get.response.data;
        *value_c = data[8];
        memcpy(value_a, data + 9, sizeof *value_a); // as the blade has them
        memcpy(value_b, data + 13, sizeof *value_b);
    }
    return result;
}

int ipmi_location_get_link_tuning_tx_status(const blade_location *location, uint8_t *tx_status)
{
    if (!location || !tx_status)
        return invalid_param();
    read_parameter get(location, parameter_group::link_tuning, 3, transmit_status);
    const int result = get.exchange_exactly(9);
    if (result == 0)
        *tx_status = get.response.data[8];
    return result;
}

// Automatic throttling.

int ipmi_location_set_autothrottle_delay(const blade_location *location)
{
    if (!location) {
        const int result = invalid_param();
        os_log(1, 4, "%s: invalid parameter blade location\n",
               "ipmi_location_set_autothrottle_delay");
        return result;
    }
    return write_parameter(location, parameter_group::autothrottle, 0x00, 0x01, 0x59).exchange();
}
