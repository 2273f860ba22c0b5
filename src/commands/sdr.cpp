#include "ruk_ipmi/sdr.h"

#include <cstddef>

#include "commands/short_command.h"

using namespace ruk;

static_assert(sizeof(sdr_repository_info) == 15 && offsetof(sdr_repository_info, version) == 1 &&
              offsetof(sdr_repository_info, records) == 2 &&
              offsetof(sdr_repository_info, free_space) == 4 &&
              offsetof(sdr_repository_info, addition_time) == 6 &&
              offsetof(sdr_repository_info, erase_time) == 10 &&
              offsetof(sdr_repository_info, operation_support) == 14);
static_assert(sizeof(sdr_reservation) == 3 && offsetof(sdr_reservation, reservation_id) == 1);
static_assert(sizeof(sdr_record) == 258 && offsetof(sdr_record, next_record_id) == 1 &&
              offsetof(sdr_record, data) == 3);

int ipmi_location_get_sdr_info(const blade_location *location, sdr_repository_info *out)
{
    const int result = short_command(location, 0x0A20).fetch(out);
    if (result == 0) { // here the time stamps are converted too, unlike those of the SEL
        out->records = from_wire(out->records);
        out->free_space = from_wire(out->free_space);
        out->addition_time = from_wire(out->addition_time);
        out->erase_time = from_wire(out->erase_time);
    }
    return result;
}

int ipmi_location_reserve_sdr(const blade_location *location, sdr_reservation *out)
{
    const int result = short_command(location, 0x0A22).fetch_unchecked(out, sizeof *out);
    if (result == 0)
        out->reservation_id = from_wire(out->reservation_id);
    return result;
}

int ipmi_reserve_sdr(int blade_num, sdr_reservation *out)
{
    return by_number<ipmi_location_reserve_sdr>(blade_num, out);
}

int ipmi_location_get_sdr(const blade_location *location, uint16_t reservation_id,
                          uint16_t record_id, sdr_record *out)
{
    const short_command get(location, 0x0A23, le16{reservation_id}, le16{record_id}, 0x00, 0xFF);
    const int result = get.fetch(out);
    if (result == 0)
        out->next_record_id = from_wire(out->next_record_id);
    return result;
}
