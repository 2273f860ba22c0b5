#include "ruk_ipmi/sel.h"

#include <cstddef>

#include "commands/short_command.h"
#include "platform/message_service.h"

using namespace ruk;

static_assert(sizeof(sel_reservation) == 3 && offsetof(sel_reservation, reservation_id) == 1);
static_assert(sizeof(sel_info) == 15 && offsetof(sel_info, version) == 1 &&
              offsetof(sel_info, entries) == 2 && offsetof(sel_info, free_space) == 4 &&
              offsetof(sel_info, addition_time) == 6 && offsetof(sel_info, erase_time) == 10 &&
              offsetof(sel_info, operation_support) == 14);
static_assert(sizeof(sel_entry) == 19 && offsetof(sel_entry, next_record_id) == 1 &&
              offsetof(sel_entry, record) == 3);
static_assert(sizeof(sel_clear_status) == 2 && offsetof(sel_clear_status, progress) == 1);

int ipmi_location_set_sel_time(const blade_location *location, uint32_t time, uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    command set_time(location, 0x0A49, le32{time});
    const int result = set_time.fetch(out);
    if (set_time.refused())
        slog_elog("%s(): blade=%s IPMI_SET_SEL_TIME failed: rc=0x%04X\n",
                  "ipmi_location_set_sel_time", ruk_blade_clt_to_str(location),
                  set_time.response.comp_code);
    else // also when no answer came: "succeeded" then only says that nobody refused
        slog_dlog("%s(): blade=%s IPMI_SET_SEL_TIME succeeded: time=%d secs\n",
                  "ipmi_location_set_sel_time", ruk_blade_clt_to_str(location), time);
    return result;
}

int ipmi_set_sel_time(int blade_num, uint32_t time, uint8_t *out)
{
    return by_number<ipmi_location_set_sel_time>(blade_num, time, out);
}

int ipmi_location_set_sel_time_offset(const blade_location *location, int offset, uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    const auto comp_offset = static_cast<uint16_t>(offset);
    slog_dlog("%s(): blade=%s offset=%d compOffset=0x%04X\n", "ipmi_location_set_sel_time_offset",
              ruk_blade_clt_to_str(location), offset, comp_offset);
    command set_offset(location, 0x0A5D, le16{comp_offset});
    const int result = set_offset.fetch(out);
    if (set_offset.refused()) {
        slog_elog("%s(): blade=%s IPMI_SET_SEL_TIME_UTC_OFFSET failed: rc=0x%04X\n",
                  "ipmi_location_set_sel_time_offset", ruk_blade_clt_to_str(location),
                  set_offset.response.comp_code);
        slog_dump("IPMI Request Buffer ", set_offset.request.data, set_offset.request.data_len, 1);
    }
    return result;
}

int ipmi_location_reserve_sel(const blade_location *location, sel_reservation *out)
{
    const int result = short_command(location, 0x0A42).fetch(out);
    if (result == 0)
        out->reservation_id = from_wire(out->reservation_id);
    return result;
}

int ipmi_location_get_sel_info(const blade_location *location, sel_info *out)
{
    const int result = short_command(location, 0x0A40).fetch(out);
    if (result == 0) { // the two time stamps stay as received
        out->entries = from_wire(out->entries);
        out->free_space = from_wire(out->free_space);
    }
    return result;
}

int ipmi_location_get_sel_entry(const blade_location *location, uint16_t record_id, sel_entry *out)
{
    if (!out)
        return invalid_param();
    command get_entry(location, 0x0A43, le16{0}, le16{record_id}, 0x00, 0xFF);
    const int result = get_entry.fetch(out);
    if (result == 0)
        out->next_record_id = from_wire(out->next_record_id);
    return result;
}

int ipmi_location_clear_sel(const blade_location *location, uint16_t reservation_id, uint8_t action,
                            sel_clear_status *out)
{
    if (action != SEL_CLEAR_INITIATE && action != SEL_CLEAR_GET_STATUS)
        return invalid_param();
    return short_command(location, 0x0A47, le16{reservation_id}, 'C', 'L', 'R', action).fetch(out);
}
