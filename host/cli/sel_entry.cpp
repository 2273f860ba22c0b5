#include "cli/sel_entry.h"

#include <freeipmi/freeipmi.h>

#include "cli/output.h"
#include "cli/parser.h"
#include "cli/times.h"

namespace cli
{

namespace
{

ipmi_sel_ctx_t context()
{
    static const auto made = [] {
        auto parser = kept(ipmi_sel_ctx_create(nullptr, nullptr), ipmi_sel_ctx_destroy);
        ipmi_sel_ctx_set_separator(parser.get(), "; ");
        return parser;
    }();
    return made.get();
}

// A field of the record as text, by the letter that the parser has for it.
json text(const uint8_t *record, const char *letter)
{
    char text[512] = "";
    const int length =
        ipmi_sel_parse_read_record_string(context(), letter, record, sel_record_size, text,
                                          sizeof text - 1, IPMI_SEL_STRING_FLAGS_DEFAULT);
    return length < 0 ? json() : json(printable(text));
}

// A byte of the record, by the parser's function for it.
template <typename Function>
json byte(const uint8_t *record, Function function)
{
    uint8_t value = 0;
    return function(context(), record, sel_record_size, &value) < 0 ? json() : json(hex(value));
}

std::string record_id(const uint8_t *record)
{
    uint16_t id = 0;
    ipmi_sel_parse_read_record_id(context(), record, sel_record_size, &id);
    return hex(id);
}

json time_of(const uint8_t *record, bool utc)
{
    uint32_t stamp = 0;
    if (ipmi_sel_parse_read_timestamp(context(), record, sel_record_size, &stamp) < 0)
        return nullptr;
    return format_time(stamp, utc);
}

json direction(const uint8_t *record)
{
    uint8_t value = 0;
    if (ipmi_sel_parse_read_event_direction(context(), record, sel_record_size, &value) < 0)
        return nullptr;
    return value == IPMI_SEL_RECORD_ASSERTION_EVENT ? "assertion" : "deassertion";
}

// Makers' own records hold no event that could be named, only data.
json event(const uint8_t *record)
{
    uint8_t type = 0;
    ipmi_sel_parse_read_record_type(context(), record, sel_record_size, &type);
    switch (ipmi_sel_record_type_class(type)) {
    case IPMI_SEL_RECORD_TYPE_CLASS_SYSTEM_EVENT_RECORD:
        return text(record, "%E");
    case IPMI_SEL_RECORD_TYPE_CLASS_TIMESTAMPED_OEM_RECORD:
        return text(record, "%m; %o");
    case IPMI_SEL_RECORD_TYPE_CLASS_NON_TIMESTAMPED_OEM_RECORD:
        return text(record, "%o");
    default:
        return "record of unknown type " + hex(type);
    }
}

} // namespace

json entry_summary(const uint8_t *record, bool utc)
{
    return {{"id", record_id(record)},
            {"time", time_of(record, utc)},
            {"sensor_type", text(record, "%T")},
            {"sensor", byte(record, ipmi_sel_parse_read_sensor_number)},
            {"direction", direction(record)},
            {"event", event(record)}};
}

json entry_details(const uint8_t *record, bool utc)
{
    json fields = entry_summary(record, utc);
    fields["record_type"] = byte(record, ipmi_sel_parse_read_record_type);
    fields["generator"] = byte(record, ipmi_sel_parse_read_generator_id);
    fields["event_type"] = byte(record, ipmi_sel_parse_read_event_type_code);
    fields["record"] = hex(record, sel_record_size);
    return fields;
}

} // namespace cli
