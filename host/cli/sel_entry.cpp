#include "cli/sel_entry.h"

#include <algorithm>
#include <map>

#include "cli/freeipmi.h"
#include "cli/output.h"
#include "cli/parser.h"
#include "cli/request.h"
#include "cli/times.h"

namespace cli
{

namespace
{

// Where a record has what. Behind the time an event differs from makers' own records.
constexpr size_t id_at = 0;
constexpr size_t record_type_at = 2;
constexpr size_t time_at = 3;
constexpr size_t generator_at = 7;
constexpr size_t sensor_type_at = 10;
constexpr size_t sensor_at = 11;
constexpr size_t event_type_at = 12; // the highest bit is the direction

bool is_event(const uint8_t *record)
{
    return record[record_type_at] == 0x02;
}

bool is_makers_own(const uint8_t *record)
{
    return record[record_type_at] >= 0xC0;
}

bool has_time(const uint8_t *record)
{
    return is_event(record) || (is_makers_own(record) && record[record_type_at] < 0xE0);
}

ipmi_sel_ctx_t context()
{
    static const auto made = [] {
        auto parser =
            kept(FREEIPMI(ipmi_sel_ctx_create)(nullptr, nullptr), FREEIPMI(ipmi_sel_ctx_destroy));
        FREEIPMI(ipmi_sel_ctx_set_separator)(parser.get(), "; ");
        return parser;
    }();
    return made.get();
}

// A field of the record as text, by the letter that the parser has for it.
json text(const uint8_t *record, const char *letter)
{
    char text[512] = "";
    const int length = FREEIPMI(ipmi_sel_parse_read_record_string)(
        context(), letter, record, sel_record_size, text, sizeof text - 1,
        IPMI_SEL_STRING_FLAGS_DEFAULT);
    return length < 0 ? json() : json(printable(text));
}

// Makers' own records hold no event that could be named, only data.
json event(const uint8_t *record)
{
    if (is_event(record))
        return text(record, "%E");
    if (is_makers_own(record))
        return text(record, has_time(record) ? "%m; %o" : "%o");
    return "record of unknown type " + hex(record[record_type_at]);
}

json sensor_type(const uint8_t *record)
{
    if (!is_event(record))
        return nullptr;
    const char *known = FREEIPMI(ipmi_get_sensor_type_string)(record[sensor_type_at]);
    return known ? known : "";
}

struct texts {
    json sensor_type;
    json event;
};

// FreeIPMI's texts for a record, remembered: a log repeats itself, and making them takes its time.
// What tells records apart in them is all but the ID and the time.
const texts &texts_of(const uint8_t *record)
{
    static std::map<bytes, texts> known;
    constexpr size_t most = 1000;

    bytes key(record, record + sel_record_size);
    std::fill(&key[id_at], &key[record_type_at], 0);
    if (has_time(record))
        std::fill(&key[time_at], &key[generator_at], 0);
    if (const auto found = known.find(key); found != known.end())
        return found->second;
    if (known.size() == most)
        known.clear();
    return known[key] = {sensor_type(key.data()), event(key.data())};
}

} // namespace

json entry_summary(const uint8_t *record, bool utc)
{
    const texts &said = texts_of(record);
    const bool has_sensor = is_event(record);
    const bool is_over = (record[event_type_at] & 0x80) != 0;
    json fields; // one by one: a list of them would be copied twice
    fields["id"] = hex(load_le16(&record[id_at]));
    fields["time"] =
        has_time(record) ? json(format_time(load_le32(&record[time_at]), utc)) : json();
    fields["sensor_type"] = said.sensor_type;
    fields["sensor"] = has_sensor ? json(hex(record[sensor_at])) : json();
    fields["direction"] = has_sensor ? json(is_over ? "deassertion" : "assertion") : json();
    fields["event"] = said.event;
    return fields;
}

json entry_details(const uint8_t *record, bool utc)
{
    const bool has_sensor = is_event(record);
    json fields = entry_summary(record, utc);
    fields["record_type"] = hex(record[record_type_at]);
    fields["generator"] = has_sensor ? json(hex(record[generator_at])) : json();
    fields["event_type"] =
        has_sensor ? json(hex(static_cast<uint8_t>(record[event_type_at] & 0x7F))) : json();
    fields["record"] = hex(record, sel_record_size);
    return fields;
}

} // namespace cli
