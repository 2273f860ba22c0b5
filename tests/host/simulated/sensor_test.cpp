// The readings and thresholds of the sensors that the SDRs describe.

#include "sdr_blade.h"

namespace chassisd::simulated
{

namespace
{

class sensor_blade : public sdr_blade
{
  public:
    using sdr_blade::sdr_blade;

    bytes reading(uint8_t number) { return ask(0x04, 0x2D, {number}); }
    bytes thresholds(uint8_t number) { return ask(0x04, 0x27, {number}); }
};

TEST(simulated_sensors, read_within_their_normal_range)
{
    sensor_blade blade;
    for (const bytes &record : blade.records_of_type(0x01)) {
        const bytes answer = blade.reading(record[7]);
        SCOPED_TRACE(parsed_sdr(record).sensor_name());
        ASSERT_EQ(answer.size(), 4u);
        EXPECT_GE(answer[1], record[33]) << "normal minimum";
        EXPECT_LE(answer[1], record[32]) << "normal maximum";
        EXPECT_EQ(answer[2], 0xC0) << "scanning, events enabled, reading available";
        EXPECT_EQ(answer[3], 0xC0) << "no threshold reached";
    }
}

TEST(simulated_sensors, move_as_time_goes_by)
{
    sensor_blade blade;
    const bytes before = blade.reading(0x10);
    blade.let_pass(std::chrono::seconds(10));
    EXPECT_NE(blade.reading(0x10), before);
}

TEST(simulated_sensors, differ_between_blades)
{
    EXPECT_NE(sensor_blade({}, 1).reading(0x10), sensor_blade({}, 2).reading(0x10));
}

TEST(simulated_sensors, tell_states_that_their_records_say_are_possible)
{
    sensor_blade blade;
    for (const bytes &record : blade.records_of_type(0x02)) {
        const bytes answer = blade.reading(record[7]);
        SCOPED_TRACE(parsed_sdr(record).sensor_name());
        ASSERT_EQ(answer.size(), 5u);
        const uint16_t states = word_at(3, answer);
        EXPECT_EQ(states & 0x8000, 0x8000);
        EXPECT_EQ(states & ~word_at(18, record) & 0x7FFF, 0);
    }
}

TEST(simulated_sensors, say_that_both_power_supplies_are_present)
{
    sensor_blade blade;
    EXPECT_EQ(blade.reading(0x40), (bytes{0x00, 0x00, 0xC0, 0x01, 0x80}));
    EXPECT_EQ(blade.reading(0x41), (bytes{0x00, 0x00, 0xC0, 0x01, 0x80}));
}

TEST(simulated_sensors, have_the_thresholds_of_their_records)
{
    sensor_blade blade;
    for (const bytes &record : blade.records_of_type(0x01)) {
        const bytes answer = blade.thresholds(record[7]);
        ASSERT_EQ(answer.size(), 8u);
        EXPECT_EQ(answer[1], record[18]) << "readable thresholds";
        EXPECT_EQ(bytes(answer.rbegin(), answer.rbegin() + 6), part(36, 6, record));
    }
}

TEST(simulated_sensors, that_do_not_exist_are_refused)
{
    sensor_blade blade;
    EXPECT_EQ(blade.reading(0xEE), (bytes{0xCB}));
    EXPECT_EQ(blade.thresholds(0xEE), (bytes{0xCB}));
}

TEST(simulated_sensors, that_have_states_have_no_thresholds)
{
    EXPECT_EQ(sensor_blade().thresholds(0x40), (bytes{0xCB}));
}

} // namespace

} // namespace chassisd::simulated
