#include "ruk_ipmi/chassis.h"

#include "commands/short_command.h"

using namespace ruk;

static_assert(sizeof(boot_options_data) == 8);

int ipmi_location_chassis_control_command(const blade_location *location, uint8_t control,
                                          uint8_t *out)
{
    return short_command(location, 0x0002, control).fetch(out);
}

int ipmi_chassis_control_command(int blade_num, uint8_t control, uint8_t *out)
{
    return by_number<ipmi_location_chassis_control_command>(blade_num, control, out);
}

int ipmi_location_chassis_identify_command(const blade_location *location, uint8_t interval,
                                           uint8_t force, uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    command identify(location, 0x0004, interval);
    if (force != 0)
        append(identify.request, 0x01);
    slog_dlog("time %x flag %x len %x ", interval, force, 1); // 1 also where 2 bytes are sent
    return identify.fetch(out);
}

int ipmi_chassis_identify_command(int blade_num, uint8_t interval, uint8_t force, uint8_t *out)
{
    return by_number<ipmi_location_chassis_identify_command>(blade_num, interval, force, out);
}

int ipmi_location_get_boot_options(const blade_location *location, uint8_t parameter,
                                   uint8_t set_selector, uint8_t, boot_options_data *out)
{
    return short_command(location, 0x0009, parameter, set_selector, 0x00).fetch(out);
}

int ipmi_location_set_boot_options(const blade_location *location, uint8_t parameter,
                                   const uint8_t *data, uint32_t length, uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    return command(location, 0x0008, parameter, block{data, length}).fetch(out);
}

int ipmi_location_reset_to_defaults(const blade_location *location, uint8_t which, uint8_t *out)
{
    return short_command(location, 0x3021, which).fetch(out);
}
