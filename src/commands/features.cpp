#include "ruk_ipmi/features.h"

#include "commands/short_command.h"

using namespace ruk;

int ipmi_location_get_feature_info(const blade_location *location, uint8_t out[7])
{
    return short_command(location, 0x30BD).fetch(out, 7);
}

int ipmi_get_feature_info(int blade_num, uint8_t out[7])
{
    return by_number<ipmi_location_get_feature_info>(blade_num, out);
}

int ipmi_location_send_bexal_quon(const blade_location *location, const uint8_t value[6],
                                  uint8_t *out)
{
    if (!location || !value || !out)
        return invalid_param();
    return command(location, 0x30C9, zeros{2}, block{value, 6}, zeros{24}).fetch(out);
}

int ipmi_send_bexal_quon(int blade_num, const uint8_t value[6], uint8_t *out)
{
    return by_number<ipmi_location_send_bexal_quon>(blade_num, value, out);
}

int ipmi_location_get_cpld_version(const blade_location *location, uint8_t out[6])
{
    return short_command(location, 0x3033).fetch(out, 6);
}

int ipmi_location_send_zat_feature(const blade_location *location, const uint8_t block[8],
                                   uint8_t *out)
{
    if (!location || !block || !out)
        return invalid_param();
    return command(location, 0x30C3, ruk::block{block, 8}).fetch(out);
}

int ipmi_location_get_auto_discovery_status(const blade_location *location, uint8_t out[10])
{
    return short_command(location, 0x30A3, 0x12).fetch_unchecked(out, 10);
}

int ipmi_get_auto_discovery_status(int blade_num, uint8_t out[10])
{
    return by_number<ipmi_location_get_auto_discovery_status>(blade_num, out);
}

// Power management: one command, whose first byte says what is asked for.

int ipmi_location_get_pm_status(const blade_location *location, uint8_t *out)
{
    command get(location, 0x30A9, 0x12, zeros{3});
    const int result = get.exchange();
    if (result == 0) {
        const uint8_t *answer = get.response.data;
        *out = answer[2] == 0 ? answer[3] : 0;
    }
    return result;
}

int ipmi_get_pm_status(int blade_num, uint8_t *out)
{
    return by_number<ipmi_location_get_pm_status>(blade_num, out);
}

int ipmi_location_get_pm_rebrand(const blade_location *location, char out[15])
{
    command get(location, 0x30A9, 0x14, zeros{3});
    const int result = get.exchange();
    if (result == 0) {
        const auto *text = reinterpret_cast<const char *>(get.response.data + 3);
        memset(out, 0, 15);
        memcpy(out, text, strnlen(text, 15));
    }
    return result;
}

int ipmi_get_pm_rebrand(int blade_num, char out[15])
{
    return by_number<ipmi_location_get_pm_rebrand>(blade_num, out);
}
