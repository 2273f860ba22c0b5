// The System Event Log: what it starts with, how it is read, grows and overflows.

#include <freeipmi/freeipmi.h>
#include <set>

#include "sel_blade.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint32_t never = 0xFFFFFFFF;

bool has_time_stamp(const bytes &record)
{
    return record[2] < 0xE0;
}

TEST(simulated_sel, starts_with_as_many_entries_as_configured)
{
    for (const uint16_t entries : std::vector<uint16_t>{0, 1, 12, 512})
        EXPECT_EQ(sel_blade(entries).count(), entries);
}

TEST(simulated_sel, starts_with_512_entries_at_the_most)
{
    EXPECT_EQ(sel_blade(513).count(), 512);
}

TEST(simulated_sel, walks_from_the_first_record_to_the_last)
{
    sel_blade blade(512);
    const std::vector<bytes> records = blade.walk();
    ASSERT_EQ(records.size(), 512u);
    EXPECT_EQ(records.back(), blade.record(0xFFFF));
    std::set<uint16_t> ids;
    for (const bytes &record : records)
        ids.insert(word_at(0, record));
    EXPECT_EQ(ids.size(), 512u);
}

TEST(simulated_sel, starts_with_time_stamps_that_increase_up_to_the_present)
{
    uint32_t last = start_time - 14 * 24 * 3600;
    for (const bytes &record : sel_blade(512).walk()) {
        if (!has_time_stamp(record))
            continue;
        EXPECT_GT(long_at(3, record), last);
        last = long_at(3, record);
    }
    EXPECT_LE(last, start_time);
    EXPECT_GT(last, start_time - 3600);
}

TEST(simulated_sel, starts_with_events_of_many_kinds)
{
    std::set<uint8_t> record_types;
    std::set<uint8_t> sensor_types;
    for (const bytes &record : sel_blade(12).walk()) {
        record_types.insert(record[2]);
        if (record[2] == 0x02)
            sensor_types.insert(record[10]);
    }
    EXPECT_EQ(record_types, (std::set<uint8_t>{0x02, 0xC0, 0xE0}));
    EXPECT_EQ(sensor_types, (std::set<uint8_t>{0x01, 0x07, 0x08, 0x0C, 0x0F, 0x10, 0x1D, 0x23}));
}

TEST(simulated_sel, starts_with_events_that_freeipmi_reads)
{
    ipmi_sel_ctx_t sel = ipmi_sel_ctx_create(nullptr, nullptr);
    ASSERT_NE(sel, nullptr);
    for (const bytes &record : sel_blade(20).walk()) {
        char event[256] = "";
        EXPECT_GT(ipmi_sel_parse_read_record_string(sel, record[2] == 0x02 ? "%T: %e" : "%o",
                                                    record.data(), 16, event, sizeof event,
                                                    IPMI_SEL_STRING_FLAGS_IGNORE_UNAVAILABLE_FIELD),
                  0)
            << ipmi_sel_ctx_errormsg(sel);
        EXPECT_STRNE(event, "");
        EXPECT_EQ(std::string(event).find("Unknown"), std::string::npos) << event;
    }
    ipmi_sel_ctx_destroy(sel);
}

TEST(simulated_sel, tells_version_entries_free_space_and_what_it_supports)
{
    const bytes info = sel_blade(12).info();
    ASSERT_EQ(info.size(), 15u);
    EXPECT_EQ(info[0], 0x00);
    EXPECT_EQ(info[1], 0x51);
    EXPECT_EQ(word_at(2, info), 12);
    EXPECT_EQ(word_at(4, info), 500 * 16);
    EXPECT_EQ(info[14], 0x0B);
}

TEST(simulated_sel, does_not_know_when_nothing_was_ever_added_or_erased)
{
    const bytes info = sel_blade(0).info();
    EXPECT_EQ(long_at(6, info), never);
    EXPECT_EQ(long_at(10, info), never);
}

TEST(simulated_sel, tells_its_allocation_in_records)
{
    EXPECT_EQ(sel_blade(12).storage(0x41),
              (bytes{0x00, 0x00, 0x02, 0x10, 0x00, 0xF4, 0x01, 0xF4, 0x01, 0x01}));
}

TEST(simulated_sel, hands_out_a_new_reservation_each_time_and_never_0)
{
    sel_blade blade;
    uint16_t last = blade.reserve();
    for (int i = 0; i < 0x10000; i++) {
        const uint16_t next = blade.reserve();
        ASSERT_NE(next, last);
        ASSERT_NE(next, 0);
        last = next;
    }
}

TEST(simulated_sel, refuses_a_record_that_is_not_there)
{
    EXPECT_EQ(sel_blade(12).entry(0x1234), (bytes{0xCB}));
}

TEST(simulated_sel, has_neither_first_nor_last_record_when_empty)
{
    sel_blade blade(0);
    EXPECT_EQ(blade.entry(0x0000), (bytes{0xCB}));
    EXPECT_EQ(blade.entry(0xFFFF), (bytes{0xCB}));
}

TEST(simulated_sel, reads_a_whole_record_without_a_reservation)
{
    sel_blade blade;
    const bytes answer = blade.entry(0x0000);
    EXPECT_EQ(answer.size(), 19u);
    EXPECT_EQ(blade.entry(0x0000, 0, 16), answer);
}

TEST(simulated_sel, reads_the_head_of_a_record_without_a_reservation)
{
    sel_blade blade;
    const bytes whole = blade.entry(0x0000);
    EXPECT_EQ(blade.entry(0x0000, 0, 3), part(0, 6, whole));
    EXPECT_EQ(blade.entry(0x0000, 0, 0), part(0, 3, whole));
}

TEST(simulated_sel, reads_on_in_a_record_under_a_reservation)
{
    sel_blade blade;
    const uint16_t reservation = blade.reserve();
    const bytes record = blade.record(0x0000);
    EXPECT_EQ(from(3, blade.entry(0x0000, 7, 2, reservation)), (bytes{record[7], record[8]}));
    EXPECT_EQ(from(3, blade.entry(0x0000, 10, 0xFF, reservation)), from(10, record));
    EXPECT_EQ(from(3, blade.entry(0x0000, 15, 1, reservation)), (bytes{record[15]}));
}

TEST(simulated_sel, does_not_read_on_without_a_valid_reservation)
{
    sel_blade blade;
    EXPECT_EQ(blade.entry(0x0000, 1, 1, 0), (bytes{0xC5}));
    const uint16_t older = blade.reserve();
    const uint16_t newer = blade.reserve();
    EXPECT_EQ(blade.entry(0x0000, 1, 1, older), (bytes{0xC5}));
    EXPECT_EQ(blade.entry(0x0000, 1, 1, newer)[0], 0x00);
}

TEST(simulated_sel, refuses_an_offset_behind_the_record)
{
    sel_blade blade;
    const uint16_t reservation = blade.reserve();
    EXPECT_EQ(blade.entry(0x0000, 16, 1, reservation), (bytes{0xC9}));
    EXPECT_EQ(blade.entry(0x0000, 0xFF, 0xFF, reservation), (bytes{0xC9}));
}

TEST(simulated_sel, refuses_to_return_more_than_the_record_has)
{
    sel_blade blade;
    EXPECT_EQ(blade.entry(0x0000, 0, 17), (bytes{0xCA}));
    EXPECT_EQ(blade.entry(0x0000, 10, 7, blade.reserve()), (bytes{0xCA}));
}

TEST(simulated_sel, gives_an_added_record_an_id_and_the_present_time)
{
    sel_blade blade;
    const bytes answer = blade.add(record_of_type(0x02));
    ASSERT_EQ(answer.size(), 3u);
    const bytes record = blade.record(word_at(1, answer));
    EXPECT_EQ(word_at(0, record), word_at(1, answer));
    EXPECT_EQ(long_at(3, record), start_time);
    EXPECT_EQ(from(7, record), from(7, record_of_type(0x02)));
    EXPECT_EQ(blade.record(0xFFFF), record);
}

TEST(simulated_sel, stamps_the_oem_records_that_have_a_time_and_leaves_the_others_alone)
{
    sel_blade blade;
    for (const uint8_t stamped : bytes{0x02, 0xC0, 0xDF})
        EXPECT_EQ(long_at(3, blade.record(word_at(1, blade.add(record_of_type(stamped))))),
                  start_time);
    for (const uint8_t plain : bytes{0xE0, 0xFF})
        EXPECT_EQ(from(2, blade.record(word_at(1, blade.add(record_of_type(plain))))),
                  from(2, record_of_type(plain)));
}

TEST(simulated_sel, refuses_a_record_type_it_does_not_keep)
{
    sel_blade blade;
    for (const uint8_t type : bytes{0x00, 0x01, 0x03, 0xBF})
        EXPECT_EQ(blade.add(record_of_type(type)), (bytes{0x80}));
    EXPECT_EQ(blade.count(), 12);
}

TEST(simulated_sel, counts_and_dates_what_is_added)
{
    sel_blade blade;
    blade.let_pass(std::chrono::seconds(90));
    blade.add(record_of_type(0xE0));
    EXPECT_EQ(blade.count(), 13);
    EXPECT_EQ(word_at(4, blade.info()), 499 * 16);
    EXPECT_EQ(long_at(6, blade.info()), start_time + 90);
}

TEST(simulated_sel, has_no_space_for_more_than_512_entries_and_remembers_the_overflow)
{
    sel_blade blade(511);
    EXPECT_EQ(blade.add(record_of_type(0x02))[0], 0x00);
    EXPECT_EQ(blade.info()[14], 0x0B) << "full, but nothing was lost yet";
    EXPECT_EQ(blade.add(record_of_type(0x02)), (bytes{0xC4}));
    EXPECT_EQ(blade.info()[14], 0x8B);
    EXPECT_EQ(word_at(4, blade.info()), 0) << "free space";
    EXPECT_EQ(blade.count(), 512);
}

TEST(simulated_sel, gives_no_id_twice_when_the_ids_come_round)
{
    sel_blade blade(512);
    const uint16_t oldest = word_at(0, blade.record(0x0000));
    for (int i = 0; i < 0x10000; i++) {
        blade.remove(0xFFFF, blade.reserve());
        const uint16_t id = word_at(1, blade.add(record_of_type(0xE0)));
        ASSERT_NE(id, 0x0000);
        ASSERT_NE(id, 0xFFFF);
        ASSERT_NE(id, oldest);
    }
}

TEST(simulated_sel, loses_the_reservation_when_an_entry_is_added)
{
    sel_blade blade;
    const uint16_t reservation = blade.reserve();
    blade.add(record_of_type(0x02));
    EXPECT_EQ(blade.entry(0x0000, 1, 1, reservation), (bytes{0xC5}));
}

TEST(simulated_sel, keeps_the_reservation_when_an_entry_is_refused)
{
    sel_blade blade(512);
    const uint16_t reservation = blade.reserve();
    blade.add(record_of_type(0x02));
    EXPECT_EQ(blade.entry(0x0000, 1, 1, reservation)[0], 0x00);
}

} // namespace

} // namespace chassisd::simulated
