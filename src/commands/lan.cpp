#include "ruk_ipmi/lan.h"

#include "commands/frame.h"

using namespace ruk;

static_assert(sizeof(lan_parameter_data) == 202);

constexpr uint8_t lan_channel = 1;

int ipmi_location_set_lan_parameters(const blade_location *location, uint8_t parameter,
                                     const uint8_t *data, uint32_t length, uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    if (length > LAN_PARAMETER_MAX)
        return IPMI_ERR_INVALID_PARAM;
    slog_dlog(" set lan parameters param len %x\n", length);
    return command(location, 0x0C01, lan_channel, parameter, block{data, length}).fetch(out);
}

int ipmi_set_lan_parameters(int blade_num, uint8_t parameter, const uint8_t *data, uint32_t length,
                            uint8_t *out)
{
    return by_number<ipmi_location_set_lan_parameters>(blade_num, parameter, data, length, out);
}

int ipmi_location_get_lan_parameters(const blade_location *location, uint8_t parameter,
                                     lan_parameter_data *out)
{
    if (!location || !out)
        return invalid_param();
    command get(location, 0x0C02, lan_channel, parameter, 0x00, 0x00);
    const int result = get.fetch(out);
    if (!get.refused()) // also when no answer came
        out->length = static_cast<uint8_t>(get.response.data_len - 2);
    return result;
}

int ipmi_get_lan_parameters(int blade_num, uint8_t parameter, lan_parameter_data *out)
{
    return by_number<ipmi_location_get_lan_parameters>(blade_num, parameter, out);
}
