#include "ruk_ipmi/extended.h"

#include <algorithm>
#include <cstddef>

#include "commands/frame.h"

using namespace ruk;

static_assert(sizeof(ext_cmd_data) == 1027 && offsetof(ext_cmd_data, data) == 3);

namespace
{

// Every request begins with the enterprise's number.
struct extended_command : command {
    template <typename... Fields>
    extended_command(const blade_location *location, uint32_t netfn_cmd, Fields... fields)
        : command(location, netfn_cmd, 0xA2, 0x02, 0x00, fields...)
    {
    }
};

constexpr uint8_t longest_piece = 128; // of all but the first that is read

// What a read takes the first request by: no length is known yet, and the request is for so much.
constexpr int not_begun = 255;

constexpr int most_retries = 3;

} // namespace

int ipmi_location_get_ext_cmd_indexed(const blade_location *location, uint8_t command,
                                      uint8_t index, ext_cmd_data *out)
{
    constexpr int out_of_range = 0xC9;
    if (!location || !out)
        return invalid_param();
    *out = {};
    out->total = not_begun;
    extended_command get(location, 0x2E02, 0x00, command, index, zeros{3});
    const uint8_t *answer = get.response.data;
    int remaining = not_begun;
    int retries = 0;
    do {
        const bool first = remaining == not_begun;
        const auto offset = static_cast<uint16_t>(out->total - remaining);
        const int wanted = first ? remaining : std::min<int>(remaining, longest_piece);
        store_le16(get.request.data + 6, offset);
        get.request.data[8] = static_cast<uint8_t>(wanted);

        const int result = get.exchange();
        const uint8_t count = answer[6];
        if ((result == out_of_range || count == 0) && retries < most_retries) {
            // The length that was told may be wrong by now.
            ++retries;
            slog_dlog("Received out of bounds response. May be we got wrong param length "
                      "Retry No : %d\n",
                      retries);
            out->total = not_begun;
            remaining = not_begun;
            continue;
        }
        if (result != 0)
            return result;
        if (first) {
            out->total = load_le16(answer + 7);
            slog_dlog("param len %x \n", out->total);
            memcpy(out->data, answer + 7, count);
            remaining = out->total - count;
        } else {
            if (offset < sizeof out->data)
                memcpy(out->data + offset, answer + 7,
                       std::min<size_t>(count, sizeof out->data - offset));
            remaining -= count;
        }
    } while (remaining > 0);
    return 0;
}

int ipmi_location_get_ext_cmd(const blade_location *location, uint8_t command, ext_cmd_data *out)
{
    return ipmi_location_get_ext_cmd_indexed(location, command, 0, out);
}

int ipmi_get_ext_cmd_indexed(int blade_num, uint8_t command, uint8_t index, ext_cmd_data *out)
{
    return by_number<ipmi_location_get_ext_cmd_indexed>(blade_num, command, index, out);
}

int ipmi_get_ext_cmd(int blade_num, uint8_t command, ext_cmd_data *out)
{
    return ipmi_get_ext_cmd_indexed(blade_num, command, 0, out);
}

int ipmi_location_set_ext_cmd_indexed(const blade_location *location, uint8_t command,
                                      uint8_t index, const uint8_t *data, uint32_t length,
                                      uint8_t *out)
{
    if (!location || !data || !out)
        return invalid_param();
    extended_command transfer(location, 0x2E01);
    int result = transfer.exchange();
    if (result != 0)
        return result;
    ipmi_request &request = transfer.request;
    const uint32_t enterprise_number = request.data_len;
    const uint8_t handle = transfer.response.data[4];
    request.netfn_cmd = 0x2E03;
    for (uint32_t offset = 0; offset < length;) {
        const uint32_t count = std::min<uint32_t>(length - offset, longest_piece);
        const bool is_last = offset + count == length;
        request.data_len = enterprise_number;
        append(request, handle, command, index, le16{static_cast<uint16_t>(offset)}, is_last,
               block{data + offset, count});
        result = transfer.exchange();
        if (transfer.refused())
            return result;
        offset += count;
    }
    *out = transfer.completion_code();
    return result;
}

int ipmi_location_set_ext_cmd(const blade_location *location, uint8_t command, const uint8_t *data,
                              uint32_t length, uint8_t *out)
{
    return ipmi_location_set_ext_cmd_indexed(location, command, 0, data, length, out);
}

int ipmi_set_ext_cmd_indexed(int blade_num, uint8_t command, uint8_t index, const uint8_t *data,
                             uint32_t length, uint8_t *out)
{
    return by_number<ipmi_location_set_ext_cmd_indexed>(blade_num, command, index, data, length,
                                                        out);
}

int ipmi_set_ext_cmd(int blade_num, uint8_t command, const uint8_t *data, uint32_t length,
                     uint8_t *out)
{
    return ipmi_set_ext_cmd_indexed(blade_num, command, 0, data, length, out);
}
