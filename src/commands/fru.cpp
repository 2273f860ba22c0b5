#include "ruk_ipmi/fru.h"

#include <cstddef>

#include "commands/short_command.h"

using namespace ruk;

static_assert(sizeof(fru_area_info) == 4 && offsetof(fru_area_info, size) == 1 &&
              offsetof(fru_area_info, access) == 3);
static_assert(sizeof(fru_read_request) == 11 && offsetof(fru_read_request, buffer) == 1 &&
              offsetof(fru_read_request, count) == 9);

// Reading an area takes a controller longer than its other commands.
constexpr uint32_t read_wait = 2 * usual_wait;

int ipmi_location_get_fru_info(const blade_location *location, uint8_t fru_id, fru_area_info *out)
{
    if (!location || !out)
        return invalid_param();
    const int result = short_command(location, 0x0A10, fru_id).fetch(out);
    out->size = from_wire(out->size); // whatever the result, unlike the SEL's and SDR's fields
    return result;
}

int ipmi_get_fru_info(int blade_num, uint8_t fru_id, fru_area_info *out)
{
    return by_number<ipmi_location_get_fru_info>(blade_num, fru_id, out);
}

int ipmi_location_read_fru(const blade_location *location, uint8_t fru_id, uint16_t offset,
                           uint8_t count, uint32_t capacity, fru_read_request *out)
{
    if (!location || !out)
        return invalid_param();
    command read(location, 0x0A11, fru_id, le16{offset}, count);
    slog_dlog("fru id %x, fru_offset %x fru_count %d\n", fru_id, offset, count);
    const int result = read.exchange(read_wait, usual_capacity);

    const uint8_t *answer = read.response.data;
    out->completion_code = answer[0];
    out->count = static_cast<uint16_t>(answer[1] > capacity ? capacity : answer[1]);
    slog_dlog("buffer %x IPMI CC %x \n",
              static_cast<unsigned>(reinterpret_cast<uintptr_t>(out->buffer)),
              read.response.comp_code);
    if (out->count != 0)
        memcpy(out->buffer, answer + 2, out->count);
    slog_dump("Ipmi fru buffer ", out->buffer, out->count, 1);
    return result;
}

int ipmi_read_fru(int blade_num, uint8_t fru_id, uint16_t offset, uint8_t count, uint32_t capacity,
                  fru_read_request *out)
{
    return by_number<ipmi_location_read_fru>(blade_num, fru_id, offset, count, capacity, out);
}

int ipmi_location_write_fru(const blade_location *location, uint8_t fru_id, uint16_t offset,
                            uint32_t length, const uint8_t *data, uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    if (length > FRU_WRITE_MAX)
        return IPMI_ERR_INVALID_PARAM;
    command write(location, 0x0A12, fru_id, le16{offset}, block{data, length});
    return write.fetch(out);
}

int ipmi_write_fru(int blade_num, uint8_t fru_id, uint16_t offset, uint32_t length,
                   const uint8_t *data, uint8_t *out)
{
    return by_number<ipmi_location_write_fru>(blade_num, fru_id, offset, length, data, out);
}
