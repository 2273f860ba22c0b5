#include "cli/sdr_record.h"

#include "cli/freeipmi.h"
#include "cli/output.h"
#include "cli/parser.h"

namespace cli
{

namespace
{

ipmi_sdr_ctx_t context()
{
    static const auto made = kept(FREEIPMI(ipmi_sdr_ctx_create)(), FREEIPMI(ipmi_sdr_ctx_destroy));
    return made.get();
}

// Calls a parsing function of the library on the record: whether it found what it is for.
template <typename Function, typename... Outputs>
bool parse(const bytes &record, Function function, Outputs... outputs)
{
    return function(context(), record.data(), static_cast<unsigned>(record.size()), outputs...) >=
           0;
}

const char *type_name(uint8_t type)
{
    switch (type) {
    case IPMI_SDR_FORMAT_FULL_SENSOR_RECORD:
        return "full";
    case IPMI_SDR_FORMAT_COMPACT_SENSOR_RECORD:
        return "compact";
    case IPMI_SDR_FORMAT_EVENT_ONLY_RECORD:
        return "event-only";
    case IPMI_SDR_FORMAT_ENTITY_ASSOCIATION_RECORD:
        return "entity association";
    case IPMI_SDR_FORMAT_DEVICE_RELATIVE_ENTITY_ASSOCIATION_RECORD:
        return "device entities";
    case IPMI_SDR_FORMAT_GENERIC_DEVICE_LOCATOR_RECORD:
        return "device locator";
    case IPMI_SDR_FORMAT_FRU_DEVICE_LOCATOR_RECORD:
        return "FRU locator";
    case IPMI_SDR_FORMAT_MANAGEMENT_CONTROLLER_DEVICE_LOCATOR_RECORD:
        return "MC locator";
    case IPMI_SDR_FORMAT_MANAGEMENT_CONTROLLER_CONFIRMATION_RECORD:
        return "MC confirmation";
    case IPMI_SDR_FORMAT_BMC_MESSAGE_CHANNEL_INFO_RECORD:
        return "message channels";
    case IPMI_SDR_FORMAT_OEM_RECORD:
        return "OEM";
    default:
        return "unknown";
    }
}

// A sensor's or a device's.
json name(const bytes &record)
{
    char text[IPMI_SDR_MAX_SENSOR_NAME_LENGTH + 1] = "";
    constexpr unsigned room = sizeof text - 1;
    if (!parse(record, FREEIPMI(ipmi_sdr_parse_id_string), text, room) &&
        !parse(record, FREEIPMI(ipmi_sdr_parse_device_id_string), text, room))
        return nullptr;
    return printable(text);
}

json sensor_type(const bytes &record)
{
    uint8_t type = 0;
    if (!parse(record, FREEIPMI(ipmi_sdr_parse_sensor_type), &type))
        return nullptr;
    const char *known = FREEIPMI(ipmi_get_sensor_type_string)(type);
    return known ? known : "type " + hex(type);
}

// "Processor 1": what the sensor or device belongs to.
json entity(const bytes &record)
{
    uint8_t id = 0;
    uint8_t instance = 0;
    uint8_t instance_type = 0;
    if (!parse(record, FREEIPMI(ipmi_sdr_parse_entity_id_instance_type), &id, &instance,
               &instance_type) &&
        !parse(record, FREEIPMI(ipmi_sdr_parse_fru_entity_id_and_instance), &id, &instance))
        return nullptr;
    const char *known = FREEIPMI(ipmi_get_entity_id_string)(id);
    return (known ? known : "entity " + hex(id)) + (" " + std::to_string(instance));
}

// A byte of the record, by the parser's function for it.
template <typename Function>
json byte(const bytes &record, Function function)
{
    uint8_t value = 0;
    return parse(record, function, &value) ? json(hex(value)) : json();
}

} // namespace

json sdr_summary(const bytes &record)
{
    uint16_t id = 0;
    uint8_t type = 0;
    parse(record, FREEIPMI(ipmi_sdr_parse_record_id_and_type), &id, &type);
    return {{"id", hex(id)},
            {"type", type_name(type)},
            {"name", name(record)},
            {"sensor_type", sensor_type(record)},
            {"sensor", byte(record, FREEIPMI(ipmi_sdr_parse_sensor_number))},
            {"entity", entity(record)}};
}

json sdr_details(const bytes &record)
{
    json fields = sdr_summary(record);
    uint8_t owner_type = 0;
    uint8_t owner = 0;
    fields["owner"] = nullptr;
    if (parse(record, FREEIPMI(ipmi_sdr_parse_sensor_owner_id), &owner_type, &owner))
        fields["owner"] = hex(static_cast<uint8_t>(owner << 1 | owner_type));
    fields["event_type"] = byte(record, FREEIPMI(ipmi_sdr_parse_event_reading_type_code));
    fields["record"] = hex(record);
    return fields;
}

} // namespace cli
