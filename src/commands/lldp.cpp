#include "ruk_ipmi/lldp.h"

#include <algorithm>

#include "commands/oem_parameter.h"

using namespace ruk;

namespace
{

constexpr char lldp_name[] = "ipmi_location_set_lldp_connection_info";
constexpr int chunk_size = 128; // bytes of the information in a request
constexpr int length_size = value_head;

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
    int result = 0;
    if (info_len != 0) {
        const bool is_whole = info_len <= chunk_size;
        const auto length = static_cast<uint16_t>(is_whole ? length_size + info_len : info_len);
        write_parameter_part part(location, parameter_group::lldp_connection);
        part.carry(0, le16{length},
                   block{info, static_cast<size_t>(std::min<int>(info_len, chunk_size))});
        result = send_part(part);
        for (int offset = length_size + chunk_size; offset < info_len; offset += chunk_size) {
            info += chunk_size;
            const int count = std::min(info_len - offset, chunk_size);
            part.carry(offset, block{info, static_cast<size_t>(count)});
            result = send_part(part);
        }
    }
    slog_dlog("%s(): Returning with rc =%d\n", lldp_name, result);
    return result;
}
