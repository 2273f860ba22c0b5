#include "ruk_ipmi/sled_switch.h"

#include <cstddef>
#include <iterator>

#include "commands/oem_parameter.h"
#include "platform/message_service.h"

using namespace ruk;

static_assert(sizeof(sled_switch_config) == 40 && offsetof(sled_switch_config, status) == 2 &&
              offsetof(sled_switch_config, len) == 3 && offsetof(sled_switch_config, crc) == 4 &&
              offsetof(sled_switch_config, name) == 8);

namespace
{

constexpr uint32_t config_capacity = 60; // room offered for the answer to the configuration
constexpr size_t sent_name = 16;         // bytes of the name that travel

// The result of a command for the configuration that failed, told in the log.
int tell_configuration_failure(const command &failed, const char *name)
{
    slog_elog("\n%s command failed rc: %d cc: 0x%hhX\n", name, failed.status,
              failed.completion_code());
    return failed.refusal_first();
}

} // namespace

int ipmi_set_sled_switch_configuration(const blade_location *location,
                                       const sled_switch_config *cfg)
{
    static constexpr char name[] = "ipmi_set_sled_switch_configuration";
    if (!cfg || !location || cfg->len == 0) {
        slog_elog("%s: invalid param %p %p %hhu\n", name, static_cast<const void *>(cfg),
                  static_cast<const void *>(location), cfg ? cfg->len : uint8_t{255});
        return IPMI_ERR_INVALID_PARAM;
    }
    slog_dlog("%s: slot: %s CRC: %X name: %.32s len: %hhu\n", name, ruk_blade_clt_to_str(location),
              cfg->crc, cfg->name, cfg->len);
    write_parameter set(location, parameter_group::sled_switch, cfg->len, le32{cfg->crc}, le16{0},
                        block{cfg->name, sent_name});
    slog_dump(name, set.request.data, set.request.data_len, 1);
    set.exchange(usual_wait, config_capacity);
    return set.failed() ? tell_configuration_failure(set, name) : 0;
}

int ipmi_get_sled_switch_configuration(const blade_location *location, sled_switch_config *out)
{
    static constexpr char name[] = "ipmi_get_sled_switch_configuration";
    constexpr uint8_t data_truncated = 0xC6;
    if (!out || !location) {
        slog_elog("%s: invalid param %p %p\n", name, static_cast<void *>(out),
                  static_cast<const void *>(location));
        return IPMI_ERR_INVALID_PARAM;
    }
    // A blade that cannot tell all of it is asked once more, for the status alone.
    uint32_t status = 0;
    for (const uint16_t count : {uint16_t{24}, uint16_t{4}}) {
        read_parameter get(location, parameter_group::sled_switch, count, zeros{25});
        get.exchange(usual_wait, config_capacity);
        if (!get.failed()) {
            const uint8_t *data = get.response.data;
            out->status = data[8];
            if (data[9] != 0) {
                out->len = data[9];
                memcpy(out->name, data + 15, sent_name);
                out->name[sizeof out->name - 1] = '\0';
            }
            return 0;
        }
        if (get.response.comp_code != data_truncated)
            return tell_configuration_failure(get, name);
        status = get.status;
    }
    return static_cast<int>(status);
}

int ipmi_location_get_sled_switch_link_status(const blade_location *location, uint8_t *link_a,
                                              uint8_t *link_b)
{
    if (!link_a || !link_b || !location)
        return invalid_param();
    read_parameter get(location, parameter_group::sled_links, 4);
    const int result = get.exchange();
    if (result == 0) {
        *link_a = get.response.data[8];
        *link_b = get.response.data[9];
    }
    return result;
}

int ipmi_set_dynamic_mac_iom_map(const blade_location *location, uint8_t map_id, const uint8_t *map,
                                 uint32_t map_len)
{
    static constexpr char name[] = "ipmi_set_dynamic_mac_iom_map";
    constexpr uint32_t longest_map = 128;
    if (!location || !map || map_len > longest_map) {
        slog_elog("%s: found invalid parameter\n", name);
        return IPMI_ERR_INVALID_PARAM;
    }
    const int length = static_cast<int>(map_len);
    command set(location, 0x30CB, 0x00, 0x08, length + 2, 0x00, le16{0}, map_id, length,
                block{map, map_len});
    set.exchange();
    return set.failed() ? set.tell_failure(name) : 0;
}

const char *ipmi_switch_config_status_to_str(uint32_t status)
{
    static const char *const names[] = {
        "Not_Started",        "Completed",        "Pending_Busy",
        "TFTP_Failure",       "FileAccess_Error", "EEPROM_Driver_Error",
        "Verification_Error", "General_Failure",  "File_Size_CRC_Error"};
    return status < std::size(names) ? names[status] : nullptr;
}
