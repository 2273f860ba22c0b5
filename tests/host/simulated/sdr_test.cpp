// The Sensor Data Record repository: how it is read, and what FreeIPMI makes of its records.

#include <map>
#include <memory>
#include <set>

#include "sdr_blade.h"

namespace chassisd::simulated
{

namespace
{

TEST(simulated_sdr, tells_version_records_free_space_and_what_it_supports)
{
    sdr_blade blade;
    const bytes info = blade.storage(0x20);
    ASSERT_EQ(info.size(), 15u);
    EXPECT_EQ(info[1], 0x51);
    EXPECT_EQ(word_at(2, info), blade.walk().size());
    EXPECT_EQ(word_at(4, info), word_at(5, blade.storage(0x21)) * 16);
    EXPECT_EQ(info[14], 0x03);
}

TEST(simulated_sdr, keeps_its_dates_so_that_caches_of_it_stay_good)
{
    sdr_blade blade;
    const bytes before = blade.storage(0x20);
    blade.let_pass(std::chrono::hours(24));
    EXPECT_EQ(blade.storage(0x20), before);
    EXPECT_LT(long_at(6, before), start_time);
}

TEST(simulated_sdr, accounts_for_its_space_in_units_of_16_bytes)
{
    sdr_blade blade;
    size_t used = 0;
    size_t largest = 0;
    for (const bytes &record : blade.walk()) {
        used += (record.size() + 15) / 16;
        largest = std::max(largest, (record.size() + 15) / 16);
    }
    const bytes answer = blade.storage(0x21);
    ASSERT_EQ(answer.size(), 10u);
    EXPECT_EQ(word_at(1, answer), 256);
    EXPECT_EQ(word_at(3, answer), 16);
    EXPECT_EQ(word_at(5, answer), 256 - used);
    EXPECT_EQ(word_at(7, answer), 256 - used);
    EXPECT_GE(answer[9], largest);
}

TEST(simulated_sdr, tells_the_present_time)
{
    sdr_blade blade;
    blade.let_pass(std::chrono::seconds(8));
    EXPECT_EQ(long_at(1, blade.storage(0x28)), start_time + 8);
}

TEST(simulated_sdr, hands_out_a_new_reservation_each_time)
{
    sdr_blade blade;
    EXPECT_NE(blade.reserve(), blade.reserve());
}

TEST(simulated_sdr, walks_from_the_first_record_to_the_last)
{
    sdr_blade blade;
    const std::vector<bytes> records = blade.walk();
    EXPECT_GE(records.size(), 12u);
    EXPECT_EQ(records.back(), from(3, blade.get(0xFFFF)));
    std::set<uint16_t> ids;
    for (const bytes &record : records)
        ids.insert(word_at(0, record));
    EXPECT_EQ(ids.size(), records.size());
}

TEST(simulated_sdr, has_records_as_long_as_their_headers_say)
{
    for (const bytes &record : sdr_blade().walk()) {
        ASSERT_GE(record.size(), 5u);
        EXPECT_EQ(record[2], 0x51);
        EXPECT_EQ(record.size(), 5u + record[4]);
    }
}

TEST(simulated_sdr, refuses_a_record_that_is_not_there)
{
    EXPECT_EQ(sdr_blade().get(0x7777), (bytes{0xCB}));
}

TEST(simulated_sdr, reads_a_whole_record_without_a_reservation)
{
    sdr_blade blade;
    const bytes whole = blade.get(0x0000);
    EXPECT_EQ(whole[0], 0x00);
    EXPECT_EQ(blade.get(0x0000, 0, static_cast<uint8_t>(whole.size() - 3)), whole);
}

TEST(simulated_sdr, reads_a_record_in_parts_under_a_reservation)
{
    sdr_blade blade;
    const uint16_t reservation = blade.reserve();
    const bytes whole = from(3, blade.get(0x0000));
    const bytes head = from(3, blade.get(0x0000, 0, 5, reservation));
    const bytes middle = from(3, blade.get(0x0000, 5, 7, reservation));
    const bytes rest = from(3, blade.get(0x0000, 12, 0xFF, reservation));
    EXPECT_EQ(joined(joined(head, middle), rest), whole);
}

TEST(simulated_sdr, goes_on_inside_a_record_under_a_valid_reservation_only)
{
    sdr_blade blade;
    EXPECT_EQ(blade.get(0x0000, 0, 5).at(0), 0x00);
    EXPECT_EQ(blade.get(0x0000, 5, 0xFF), (bytes{0xC5}));
    const uint16_t older = blade.reserve();
    blade.reserve();
    EXPECT_EQ(blade.get(0x0000, 5, 7, older), (bytes{0xC5}));
}

TEST(simulated_sdr, refuses_an_offset_behind_the_record)
{
    sdr_blade blade;
    const uint8_t length = static_cast<uint8_t>(blade.get(0x0000).size() - 3);
    EXPECT_EQ(blade.get(0x0000, length, 1, blade.reserve()), (bytes{0xC9}));
    EXPECT_EQ(blade.get(0x0000, 0xFF, 0xFF, blade.reserve()), (bytes{0xC9}));
}

TEST(simulated_sdr, refuses_to_return_more_than_the_record_has)
{
    sdr_blade blade;
    EXPECT_EQ(blade.get(0x0000, 0, 0xFE), (bytes{0xCA}));
    EXPECT_EQ(blade.get(0x0000, 5, 0xFE, blade.reserve()), (bytes{0xCA}));
}

TEST(simulated_sdr, has_records_of_every_kind)
{
    std::map<uint8_t, int> kinds;
    for (const bytes &record : sdr_blade().walk())
        kinds[record[3]]++;
    EXPECT_EQ(kinds, (std::map<uint8_t, int>{{0x01, 10}, {0x02, 10}, {0x11, 3}, {0x12, 1}}));
}

TEST(simulated_sdr, names_every_sensor_and_owns_it)
{
    sdr_blade blade;
    std::set<std::string> names;
    std::set<uint8_t> numbers;
    for (const uint8_t type : bytes{0x01, 0x02})
        for (const bytes &record : blade.records_of_type(type)) {
            const parsed_sdr sensor(record);
            uint8_t owner_type = 0xFF;
            uint8_t owner = 0;
            sensor.read(ipmi_sdr_parse_sensor_owner_id, &owner_type, &owner);
            EXPECT_EQ(owner_type, 0) << "a controller on the IPMB";
            EXPECT_EQ(owner << 1, 0x20);
            EXPECT_FALSE(sensor.sensor_name().empty());
            names.insert(sensor.sensor_name());
            numbers.insert(sensor.sensor_number());
        }
    EXPECT_EQ(names.size(), 20u);
    EXPECT_EQ(numbers.size(), 20u);
}

using owned_double = std::unique_ptr<double, decltype(&free)>;

TEST(simulated_sdr, describes_the_inlet_temperature)
{
    const parsed_sdr sensor(sdr_blade().records_of_type(0x01).at(0));
    EXPECT_EQ(sensor.sensor_name(), "Inlet Temp");
    EXPECT_DOUBLE_EQ(sensor.value(24), 24.0);
    uint8_t percentage, modifier, rate, unit, modifier_unit;
    sensor.read(ipmi_sdr_parse_sensor_units, &percentage, &modifier, &rate, &unit, &modifier_unit);
    EXPECT_EQ(unit, IPMI_SENSOR_UNIT_DEGREES_C);
    uint8_t entity, instance, instance_type;
    sensor.read(ipmi_sdr_parse_entity_id_instance_type, &entity, &instance, &instance_type);
    EXPECT_EQ(entity, IPMI_ENTITY_ID_AIR_INLET);
}

TEST(simulated_sdr, tells_the_thresholds_of_the_12_volt_input)
{
    const parsed_sdr sensor(sdr_blade().records_of_type(0x01).at(4));
    EXPECT_EQ(sensor.sensor_name(), "12V Input");
    double *limits[6] = {};
    sensor.read(ipmi_sdr_parse_thresholds, &limits[0], &limits[1], &limits[2], &limits[3],
                &limits[4], &limits[5]);
    constexpr double expected[6] = {11.34, 10.98, 0, 12.66, 13.02, 0};
    for (int i = 0; i < 6; i++) {
        const owned_double limit(limits[i], free);
        if (expected[i] != 0) {
            ASSERT_NE(limit, nullptr);
            EXPECT_NEAR(*limit, expected[i], 0.001);
        }
    }
}

TEST(simulated_sdr, marks_the_readable_thresholds_of_the_12_volt_input)
{
    const parsed_sdr sensor(sdr_blade().records_of_type(0x01).at(4));
    uint8_t readable[6] = {};
    sensor.read(ipmi_sdr_parse_threshold_readable, &readable[0], &readable[1], &readable[2],
                &readable[3], &readable[4], &readable[5]);
    EXPECT_EQ(bytes(readable, readable + 6), (bytes{1, 1, 0, 1, 1, 0}));
    uint8_t low[6] = {};
    uint8_t high[6] = {};
    sensor.read(ipmi_sdr_parse_threshold_assertion_supported, &low[0], &high[0], &low[1], &high[1],
                &low[2], &high[2], &low[3], &high[3], &low[4], &high[4], &low[5], &high[5]);
    EXPECT_EQ(bytes(low, low + 6), (bytes{1, 1, 0, 0, 0, 0})) << "events going low";
    EXPECT_EQ(bytes(high, high + 6), (bytes{0, 0, 0, 1, 1, 0})) << "events going high";
}

TEST(simulated_sdr, has_nominal_values_within_the_normal_range_and_the_thresholds)
{
    for (const bytes &record : sdr_blade().records_of_type(0x01)) {
        const parsed_sdr sensor(record);
        SCOPED_TRACE(sensor.sensor_name());
        double *ranges[5] = {};
        sensor.read(ipmi_sdr_parse_sensor_reading_ranges, &ranges[0], &ranges[1], &ranges[2],
                    &ranges[3], &ranges[4]);
        const owned_double nominal(ranges[0], free), maximum(ranges[1], free),
            minimum(ranges[2], free), sensor_maximum(ranges[3], free),
            sensor_minimum(ranges[4], free);
        ASSERT_TRUE(nominal && maximum && minimum && sensor_maximum && sensor_minimum);
        EXPECT_LT(*sensor_minimum, *minimum);
        EXPECT_LT(*minimum, *nominal);
        EXPECT_LT(*nominal, *maximum);
        EXPECT_LT(*maximum, *sensor_maximum);
    }
}

TEST(simulated_sdr, describes_the_power_supplies_as_sensors_of_states)
{
    const parsed_sdr sensor(sdr_blade().records_of_type(0x02).at(0));
    EXPECT_EQ(sensor.sensor_name(), "Power Supply 1");
    uint8_t type = 0;
    sensor.read(ipmi_sdr_parse_sensor_type, &type);
    EXPECT_EQ(type, IPMI_SENSOR_TYPE_POWER_SUPPLY);
    uint8_t reading_type = 0;
    sensor.read(ipmi_sdr_parse_event_reading_type_code, &reading_type);
    EXPECT_EQ(reading_type, IPMI_EVENT_READING_TYPE_CODE_SENSOR_SPECIFIC);
    uint8_t share_count, modifier_type, modifier_offset, entity_sharing;
    sensor.read(ipmi_sdr_parse_sensor_record_sharing, &share_count, &modifier_type,
                &modifier_offset, &entity_sharing);
    EXPECT_LE(share_count, 1);
}

TEST(simulated_sdr, locates_the_fru_devices_behind_the_controller)
{
    sdr_blade blade(named("Payroll Node"));
    uint8_t expected_device = 0;
    for (const bytes &record : blade.records_of_type(0x11)) {
        const parsed_sdr locator(record);
        uint8_t address, device, bus, lun, logical, channel;
        locator.read(ipmi_sdr_parse_fru_device_locator_parameters, &address, &device, &bus, &lun,
                     &logical, &channel);
        EXPECT_EQ(address << 1, 0x20);
        EXPECT_EQ(device, expected_device++);
        EXPECT_EQ(logical, 1);
        EXPECT_EQ(blade.storage(0x10, {device})[0], 0x00) << "the device it speaks of is there";
    }
    EXPECT_EQ(parsed_sdr(blade.records_of_type(0x11).at(0)).device_name(), "Payroll Node");
}

TEST(simulated_sdr, locates_the_controller_and_what_it_can_do)
{
    const parsed_sdr locator(sdr_blade().records_of_type(0x12).at(0));
    uint8_t address, channel, skipped[6], sensors, sdrs, sel, frus, receiver, generator, bridge,
        chassis;
    locator.read(ipmi_sdr_parse_management_controller_device_locator_parameters, &address, &channel,
                 &skipped[0], &skipped[1], &skipped[2], &skipped[3], &skipped[4], &skipped[5],
                 &sensors, &sdrs, &sel, &frus, &receiver, &generator, &bridge, &chassis);
    EXPECT_EQ(address << 1, 0x20);
    EXPECT_EQ((bytes{sensors, sdrs, sel, frus}), (bytes{1, 1, 1, 1}));
    EXPECT_EQ((bytes{receiver, generator, bridge, chassis}), (bytes{0, 0, 0, 0}));
    EXPECT_EQ(locator.device_name(), "Blade 7");
}

TEST(simulated_sdr, cuts_names_that_exceed_an_id_string)
{
    sdr_blade blade(named(std::string(100, 'n')));
    EXPECT_EQ(parsed_sdr(blade.records_of_type(0x12).at(0)).device_name(), std::string(16, 'n'));
}

TEST(simulated_sdr, names_the_sub_slot_of_a_blade_that_has_one)
{
    sdr_blade blade({}, 3, 2);
    EXPECT_EQ(parsed_sdr(blade.records_of_type(0x12).at(0)).device_name(), "Blade 3.2");
}

} // namespace

} // namespace chassisd::simulated
