#include "ruk_ipmi/lldp.h"

#include "commands/oem_parameter.h"

using namespace ruk;

namespace
{

constexpr char lldp_name[] = "ipmi_location_set_lldp_connection_info";
constexpr int chunk_size = 128; // bytes of the information in a request

int send_part(write_parameter_part &part)
{
    const int result = part.exchange();
    if (part.refused())
        os_log(1, 4, "%s: rc = %d, response->comp_code =%d \n", lldp_name, 0,
               part.response.comp_code);
    return result;
}

} // namespace

// A short value is one request. A long one goes in chunks as a stream of `info_len` bytes that
// begins with its own length: so the information's last two bytes stay behind. A chunk that fails
// does not stop the others.
int ipmi_location_set_lldp_connection_info(const blade_location *location, const uint8_t *info,
                                           uint16_t info_len)
{
    if (!location || !info) {
        const int result = invalid_param();
        os_log(1, 4, "%s: Invalid parameter to IPMI interface\n", lldp_name);
        return result;
    }
    constexpr auto group = parameter_group::lldp_connection;
    int result = 0;
    int remaining = info_len;
    if (remaining > chunk_size) {
        write_parameter_part first(location, group, 0, le16{info_len}, block{info, chunk_size});
        result = send_part(first);
        int offset = 2 + chunk_size;
        remaining -= offset;
        while (remaining > 0) {
            const int count = remaining < chunk_size ? remaining : chunk_size;
            info += chunk_size;
            write_parameter_part next(location, group, static_cast<uint16_t>(offset),
                                      block{info, static_cast<size_t>(count)});
            result = send_part(next);
            offset += count;
            remaining -= count;
        }
    } else if (remaining > 0) {
        write_parameter whole(location, group, block{info, info_len});
        result = send_part(whole);
    }
    slog_dlog("%s(): Returning with rc =%d\n", lldp_name, result);
    return result;
}
