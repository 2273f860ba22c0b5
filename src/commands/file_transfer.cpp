#include "ruk_ipmi/file_transfer.h"

#include "commands/oem_parameter.h"
#include "platform/message_service.h"

using namespace ruk;

namespace
{

// A path fills its field with zeros and needs one itself.
constexpr uint32_t path_field = 30;

bool fits(const char *path)
{
    return strlen(path) + 1 <= path_field;
}

enum notice : uint8_t { firmware_update_status = 0x03, time_out_error = 0x04 };

// Notices of a firmware update tell their course in the operating-system layer's log, each under
// its own name.
template <typename... Fields>
int send_notice(const blade_location *location, const char *name, Fields... fields)
{
    if (!location) {
        const int result = invalid_param();
        os_log(1, 4, "%s: Returning from else 1\n", name);
        return result;
    }
    write_parameter set(location, parameter_group::notices, fields...);
    const int result = set.exchange();
    if (set.refused())
        os_log(1, 4, "%s rc = %d, response->comp_code =%d \n", name, 0, set.response.comp_code);
    os_log(1, 4, "%s: Returning with rc =%d\n", name, result);
    return result;
}

} // namespace

int ipmi_location_set_nfs_path(const blade_location *location, uint8_t selector, const char *path)
{
    os_log(1, 4, "Entered ipmi_location_set_nfs_path function.\n");
    if (!location || !path) {
        const int result = invalid_param();
        os_log(1, 4, "ipmi_location_set_nfs_path: Returning from else 1\n");
        return result;
    }
    os_log(1, 4, "ipmi_location_set_nfs_path: validation of params done.\n");
    if (!fits(path)) {
        const int result = invalid_param();
        os_log(1, 4, "ipmi_location_set_nfs_path. Returning from else\n");
        return result;
    }
    write_parameter set(location, parameter_group::notices, selector, text_field{path, path_field});
    const int result = set.exchange();
    if (set.refused())
        os_log(1, 4, "ipmi_location_set_nfs_path: rc = %d, response->comp_code =%d \n", 0,
               set.response.comp_code);
    os_log(1, 4, "ipmi_location_set_nfs_path: Returning with rc =%d\n", result);
    return result;
}

int ipmi_location_set_lt_nfs_path(const blade_location *location, const char *path)
{
    if (!location || !path || !fits(path))
        return invalid_param();
    write_parameter set(location, parameter_group::link_tuning, text_field{path, path_field});
    return set.exchange();
}

int ipmi_location_get_file_cp_status(const blade_location *location, uint8_t selector,
                                     char *copy_status)
{
    if (!location || !copy_status)
        return invalid_param();
    read_parameter get(location, parameter_group::notices, 3, selector);
    const int result = get.exchange_exactly(9);
    if (result == 0) {
        *copy_status = static_cast<char>(get.response.data[8]);
        os_log(1, 4, "ipmi_location_get_file_cp_status: copy status = %c", *copy_status);
    }
    return result;
}

int ipmi_location_set_fwupdate_status(const blade_location *location, uint8_t status)
{
    return send_notice(location, "ipmi_location_set_fwupdate_status", firmware_update_status,
                       status);
}

int ipmi_location_set_timeout_error(const blade_location *location)
{
    return send_notice(location, "ipmi_location_set_timeout_error", time_out_error);
}

int ipmi_location_set_dumplogs_status(const blade_location *location, uint8_t status)
{
    static constexpr char name[] = "ipmi_location_set_dumplogs_status";
    static constexpr char file[] = "zatdumplogs.log.zip";
    constexpr size_t file_length = sizeof file - 1;
    if (!location) {
        const char *blade = ruk_blade_clt_to_str(nullptr);
        slog_elog("%s(): server-%s Invalid parameter to IPMI interface\n", name, blade);
        os_log(1, 4, "%s: invalid parameter blade location %s \n", name, blade);
        return IPMI_ERR_INVALID_PARAM;
    }
    write_parameter set(location, parameter_group::log_bundle, le16{0}, status, int{file_length},
                        block{file, file_length});
    const int result = set.exchange();
    if (set.refused())
        slog_elog("%s(): ipmi cmd failed in server-%s rc=%x \n", name,
                  ruk_blade_clt_to_str(location), set.response.comp_code);
    return result;
}
