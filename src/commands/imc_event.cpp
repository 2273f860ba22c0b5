#include "ruk_ipmi/imc_event.h"

#include <cstddef>

#include "commands/oem_parameter.h"
#include "platform/message_service.h"

using namespace ruk;

static_assert(sizeof(misc_imc_event) == 42 && offsetof(misc_imc_event, feature_bits) == 2 &&
              offsetof(misc_imc_event, fru_id) == 4 && offsetof(misc_imc_event, data) == 5);

int location_blade_get_miscellaneous_imc_event(const blade_location *location,
                                               misc_imc_event *event)
{
    static constexpr char name[] = "location_blade_get_miscellaneous_imc_event";
    *event = {};
    if (!location) {
        slog_elog("IPMI Cmd IPMI_MISC_SUBCMD_IMCEVENT_BIT36 Invalid parameter to IPMI "
                  "interface\n");
        os_log(1, 4, "%s: invalid parameter blade location %s \n", name,
               ruk_blade_clt_to_str(nullptr));
        return IPMI_ERR_INVALID_PARAM;
    }
    read_parameter get(location, parameter_group::imc_event, sizeof *event);
    int result = get.exchange();
    if (get.refused())
        slog_elog("%s() :  ipmi cmd  failed %x \n", name, get.response.comp_code);
    if (result != 0)
        return result;

    constexpr size_t fields = offsetof(misc_imc_event, data);
    const uint8_t *value = get.response.data + parameter_header;
    event->payload_len = load_le16(value);
    event->feature_bits = load_le16(value + 2);
    event->fru_id = value[4];
    if (event->payload_len > sizeof *event) {
        slog_elog("%s():Invalid Payload Length received  %d\n", name, event->payload_len);
        os_log(1, 4, "%s: Payload Length blade location %s \n", name,
               ruk_blade_clt_to_str(location));
        result = IPMI_ERR_INVALID_PARAM;
    } else if (event->payload_len > fields) {
        memcpy(event->data, value + fields, event->payload_len - fields);
    }
    slog_dlog("%s(): Payload Length is %x \n", name, event->payload_len);
    slog_dlog("%s(): FeatureBit is %x \n", name, event->feature_bits);
    slog_dlog("%s(): Fruid is %x \n", name, event->fru_id);
    return result;
}
