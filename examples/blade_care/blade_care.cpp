#include "blade_care.h"

namespace
{

constexpr uint32_t blade_inserted = 1; // the event's number on this chassis
constexpr uint16_t first_record = 0x0000;
constexpr uint16_t no_more_records = 0xFFFF;
constexpr int node_busy = 0xC0;
constexpr int tries = 3;

// A system event (record type 0x02) by which a memory sensor (type 0x0C) reports state 1 of its
// type (0x6F, with bit 7 clear: the state has begun).
bool is_memory_error(const uint8_t record[16])
{
    return record[2] == 0x02 && record[10] == 0x0C && record[12] == 0x6F &&
           (record[13] & 0x0F) == 0x01;
}

// A controller that is starting refuses for a while.
int power_on(const blade_location &blade)
{
    int result = node_busy;
    for (int i = 0; i < tries && result == node_busy; ++i) {
        uint8_t completion_code;
        result = ipmi_location_chassis_control_command(&blade, CHASSIS_POWER_UP, &completion_code);
    }
    return result;
}

int on_inserted(uint32_t, imc_event_info *info)
{
    unsigned errors = 0;
    const int result = count_memory_errors(info->location, errors);
    return result == 0 && errors == 0 ? power_on(info->location) : result;
}

} // namespace

int count_memory_errors(const blade_location &blade, unsigned &count)
{
    sel_info log;
    int result = ipmi_location_get_sel_info(&blade, &log);
    if (result != 0)
        return result;

    unsigned errors = 0;
    uint16_t record_id = first_record;
    for (unsigned i = 0; i < log.entries && record_id != no_more_records; ++i) {
        sel_entry entry;
        result = ipmi_location_get_sel_entry(&blade, record_id, &entry);
        if (result != 0)
            return result;
        errors += is_memory_error(entry.record);
        record_id = entry.next_record_id;
    }
    count = errors;
    return 0;
}

uint32_t care_for_inserted_blades()
{
    imc_event_set wanted;
    imc_event_set_init(&wanted);
    imc_event_set_SET(blade_inserted, &wanted);
    const uint32_t status = ruk_ipmi_init();
    return status != 0 ? status : ruk_register_imc_event_set(&wanted, on_inserted);
}
