// What an entry is said to be, with FreeIPMI as the judge: it reads the same records field by
// field.

#include "cli/sel_entry.h"

#include <freeipmi/freeipmi.h>
#include <gtest/gtest.h>

#include "cli/output.h"
#include "cli/times.h"

using namespace cli;

namespace
{

// An event of a temperature.
bytes event_record()
{
    return {0x34, 0x12, 0x02, 0x01, 0x02, 0x03, 0x65, 0x20,
            0x00, 0x04, 0x01, 0x30, 0x81, 0x59, 0x50, 0x4B};
}

class judge
{
  public:
    judge() { ipmi_sel_ctx_set_separator(context_, "; "); }
    ~judge() { ipmi_sel_ctx_destroy(context_); }
    judge(const judge &) = delete;
    judge &operator=(const judge &) = delete;

    json details(const bytes &record) const
    {
        return {{"id", number<uint16_t>(record, ipmi_sel_parse_read_record_id)},
                {"time", time(record)},
                {"sensor_type", text(record, "%T")},
                {"sensor", number<uint8_t>(record, ipmi_sel_parse_read_sensor_number)},
                {"direction", direction(record)},
                {"event", event(record)},
                {"record_type", number<uint8_t>(record, ipmi_sel_parse_read_record_type)},
                {"generator", number<uint8_t>(record, ipmi_sel_parse_read_generator_id)},
                {"event_type", number<uint8_t>(record, ipmi_sel_parse_read_event_type_code)},
                {"record", hex(record)}};
    }

  private:
    template <typename Number>
    using reader = int (*)(ipmi_sel_ctx_t, const void *, unsigned, Number *);

    template <typename Number>
    std::optional<Number> read(const bytes &record, reader<Number> function) const
    {
        Number value = 0;
        if (function(context_, record.data(), sel_record_size, &value) < 0)
            return std::nullopt;
        return value;
    }

    template <typename Number>
    json number(const bytes &record, reader<Number> function) const
    {
        const auto value = read(record, function);
        return value ? json(hex(*value)) : json();
    }

    json time(const bytes &record) const
    {
        const auto stamp = read(record, ipmi_sel_parse_read_timestamp);
        return stamp ? json(format_time(*stamp, true)) : json();
    }

    json direction(const bytes &record) const
    {
        const auto value = read(record, ipmi_sel_parse_read_event_direction);
        if (!value)
            return nullptr;
        return *value == IPMI_SEL_RECORD_ASSERTION_EVENT ? "assertion" : "deassertion";
    }

    json text(const bytes &record, const char *format) const
    {
        char text[512] = "";
        const int length =
            ipmi_sel_parse_read_record_string(context_, format, record.data(), sel_record_size,
                                              text, sizeof text - 1, IPMI_SEL_STRING_FLAGS_DEFAULT);
        return length < 0 ? json() : json(printable(text));
    }

    json event(const bytes &record) const
    {
        switch (ipmi_sel_record_type_class(record[2])) {
        case IPMI_SEL_RECORD_TYPE_CLASS_SYSTEM_EVENT_RECORD:
            return text(record, "%E");
        case IPMI_SEL_RECORD_TYPE_CLASS_TIMESTAMPED_OEM_RECORD:
            return text(record, "%m; %o");
        case IPMI_SEL_RECORD_TYPE_CLASS_NON_TIMESTAMPED_OEM_RECORD:
            return text(record, "%o");
        default:
            return "record of unknown type " + hex(record[2]);
        }
    }

    ipmi_sel_ctx_t context_ = ipmi_sel_ctx_create(nullptr, nullptr);
};

void expect_freeipmis_reading(const bytes &record)
{
    static const judge freeipmi;
    EXPECT_EQ(entry_details(record.data(), true), freeipmi.details(record)) << hex(record);
}

bytes event_with(uint8_t sensor_type, uint8_t direction_and_type, uint8_t data)
{
    bytes record = event_record();
    record[10] = sensor_type;
    record[12] = direction_and_type;
    record[13] = data;
    return record;
}

} // namespace

TEST(sel_entry, is_read_like_freeipmi_reads_it_whatever_its_type)
{
    bytes record = event_record();
    for (unsigned type = 0; type <= 0xFF; ++type) {
        record[2] = static_cast<uint8_t>(type);
        expect_freeipmis_reading(record);
    }
}

TEST(sel_entry, is_read_like_freeipmi_reads_it_for_every_sensor_type)
{
    for (unsigned sensor_type = 0; sensor_type <= 0xFF; ++sensor_type)
        for (const uint8_t event_type : bytes{0x01, 0x6F, 0x70})
            for (const uint8_t data : bytes{0x00, 0x01, 0xA7})
                expect_freeipmis_reading(
                    event_with(static_cast<uint8_t>(sensor_type), event_type, data));
}

TEST(sel_entry, is_read_like_freeipmi_reads_it_for_every_event_type_and_direction)
{
    for (unsigned event_type = 0; event_type <= 0xFF; ++event_type)
        for (const uint8_t offset : bytes{0, 1, 2, 9, 15})
            expect_freeipmis_reading(event_with(0x04, static_cast<uint8_t>(event_type),
                                                static_cast<uint8_t>(0x50 | offset)));
}

TEST(sel_entry, is_read_like_freeipmi_reads_it_whoever_generated_it)
{
    bytes record = event_record();
    for (unsigned generator = 0; generator <= 0xFF; ++generator) {
        record[7] = static_cast<uint8_t>(generator);
        record[8] = static_cast<uint8_t>(generator * 3);
        expect_freeipmis_reading(record);
    }
}

// So that a text that is remembered is another record's in nothing but what both have.
TEST(sel_entry, tells_records_apart_by_every_byte)
{
    for (const uint8_t type : bytes{0x02, 0xC0, 0xDF, 0xE0, 0xFF})
        for (size_t changed = 0; changed < sel_record_size; ++changed) {
            bytes record = event_record();
            record[2] = type;
            expect_freeipmis_reading(record);
            record[changed] ^= 0x01;
            expect_freeipmis_reading(record);
        }
}
