// Readings that are set, and the thresholds they cross. The inlet temperature's upper thresholds
// are 38, 42 and 46 degrees, the 12 volt input's 189 and 183 below and 211 and 217 above; either is
// back when it is beyond a threshold by more than 1.

#include "sdr_blade.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint8_t inlet = 0x10;
constexpr uint8_t input_12v = 0x20;
constexpr uint8_t power_supply = 0x40;

constexpr uint8_t write_reading = 0x01;

class set_blade : public sdr_blade
{
  public:
    using sdr_blade::sdr_blade;

    bytes set(uint8_t sensor, uint8_t reading) { return operate(sensor, write_reading, reading); }

    bytes operate(uint8_t sensor, uint8_t operation, uint8_t reading)
    {
        return ask(0x04, 0x30, {sensor, operation, reading});
    }

    bytes reading(uint8_t sensor) { return ask(0x04, 0x2D, {sensor}); }
};

using events = std::vector<blade_event>;

TEST(simulated_sensor_setting, gives_a_sensor_a_reading_that_stays)
{
    set_blade blade;
    EXPECT_EQ(blade.set(inlet, 30), (bytes{0x00}));
    EXPECT_EQ(blade.reading(inlet), (bytes{0x00, 30, 0xC0, 0xC0}));
    blade.let_pass(std::chrono::hours(1));
    EXPECT_EQ(blade.reading(inlet), (bytes{0x00, 30, 0xC0, 0xC0}));
}

TEST(simulated_sensor_setting, leaves_other_sensors_and_other_blades_alone)
{
    set_blade blade;
    const bytes before = blade.reading(input_12v);
    blade.set(inlet, 30);
    EXPECT_EQ(blade.reading(input_12v), before);
    EXPECT_NE(set_blade({}, 8).reading(inlet).at(1), 30);
}

TEST(simulated_sensor_setting, within_the_thresholds_is_no_event)
{
    set_blade blade;
    blade.set(inlet, 37);
    blade.set(input_12v, 190);
    EXPECT_EQ(blade.events(), events{});
    EXPECT_EQ(word_at(2, blade.storage(0x40)), 12) << "entries in the log";
}

TEST(simulated_sensor_setting, shows_the_thresholds_that_the_reading_has_reached)
{
    set_blade blade;
    blade.set(inlet, 42);
    EXPECT_EQ(blade.reading(inlet).at(3), 0xD8) << "upper critical and non-critical";
    blade.set(input_12v, 183);
    EXPECT_EQ(blade.reading(input_12v).at(3), 0xC3) << "lower critical and non-critical";
}

TEST(simulated_sensor_setting, alerts_once_when_a_threshold_is_crossed)
{
    set_blade blade;
    blade.set(inlet, 38);
    EXPECT_EQ(blade.events(), (events{blade_event::non_critical_crossed}));
    blade.set(inlet, 41);
    blade.set(inlet, 38);
    EXPECT_EQ(blade.events(), events{});
}

TEST(simulated_sensor_setting, alerts_to_every_threshold_that_a_reading_jumps_over)
{
    set_blade blade;
    blade.set(inlet, 255);
    EXPECT_EQ(blade.events(),
              (events{blade_event::non_critical_crossed, blade_event::critical_crossed,
                      blade_event::non_recoverable_crossed}));
    blade.set(inlet, 0);
    EXPECT_EQ(blade.events(),
              (events{blade_event::non_recoverable_restored, blade_event::critical_restored,
                      blade_event::non_critical_restored}));
}

TEST(simulated_sensor_setting, goes_back_from_one_side_before_it_crosses_the_other)
{
    set_blade blade;
    blade.set(input_12v, 211);
    blade.events();
    blade.set(input_12v, 183);
    EXPECT_EQ(blade.events(),
              (events{blade_event::non_critical_restored, blade_event::non_critical_crossed,
                      blade_event::critical_crossed}));
}

TEST(simulated_sensor_setting, restores_an_upper_threshold_beyond_the_hysteresis_only)
{
    set_blade blade;
    blade.set(inlet, 38);
    blade.events();
    blade.set(inlet, 37);
    EXPECT_EQ(blade.events(), events{});
    EXPECT_EQ(blade.reading(inlet).at(3), 0xC0) << "what the reading is compared with now";
    blade.set(inlet, 36);
    EXPECT_EQ(blade.events(), (events{blade_event::non_critical_restored}));
}

TEST(simulated_sensor_setting, restores_a_lower_threshold_beyond_the_hysteresis_only)
{
    set_blade blade;
    blade.set(input_12v, 189);
    blade.events();
    blade.set(input_12v, 190);
    EXPECT_EQ(blade.events(), events{});
    blade.set(input_12v, 191);
    EXPECT_EQ(blade.events(), (events{blade_event::non_critical_restored}));
}

TEST(simulated_sensor_setting, uses_the_hysteresis_that_the_sensors_records_promise)
{
    for (const bytes &record : set_blade().records_of_type(0x01))
        EXPECT_EQ(part(42, 2, record), (bytes{1, 1})) << parsed_sdr(record).sensor_name();
}

TEST(simulated_sensor_setting, leaves_an_entry_in_the_log_for_a_threshold_crossed_and_restored)
{
    set_blade blade;
    blade.set(inlet, 39);
    const bytes crossed = blade.last_entry();
    EXPECT_EQ(long_at(3, crossed), start_time);
    EXPECT_EQ(from(7, crossed), (bytes{0x20, 0x00, 0x04, 0x01, inlet, 0x01, 0x57, 39, 38}));
    blade.set(inlet, 36);
    EXPECT_EQ(from(10, blade.last_entry()), (bytes{0x01, inlet, 0x81, 0x57, 36, 38}));
}

TEST(simulated_sensor_setting, alerts_the_chassis_with_the_entry_of_the_log)
{
    set_blade blade;
    blade.let_pass(std::chrono::seconds(70));
    blade.set(input_12v, 189);
    const std::vector<alert> alerts = blade.alerts();
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].record, blade.last_entry());
    EXPECT_EQ(from(10, alerts[0].record), (bytes{0x02, input_12v, 0x01, 0x50, 189, 189}));
}

TEST(simulated_sensor_setting, alerts_the_chassis_also_when_the_log_has_no_room)
{
    set_blade blade(with_entries(512));
    blade.set(inlet, 38);
    const std::vector<alert> alerts = blade.alerts();
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(word_at(0, alerts[0].record), 0) << "not in the log";
    EXPECT_EQ(long_at(3, alerts[0].record), start_time);
    EXPECT_EQ(blade.storage(0x40).at(14) & 0x80, 0x80) << "the log has overflowed";
}

TEST(simulated_sensor_setting, may_carry_what_it_does_not_use)
{
    set_blade blade;
    const bytes request = {inlet, write_reading, 38, 0, 0, 0, 0, 0x57, 1, 2};
    EXPECT_EQ(blade.ask(0x04, 0x30, request), (bytes{0x00}));
    EXPECT_EQ(from(13, blade.last_entry()), (bytes{0x57, 38, 38})) << "the event's own data";
}

TEST(simulated_sensor_setting, of_nothing_changes_nothing)
{
    set_blade blade;
    const bytes before = blade.reading(inlet);
    EXPECT_EQ(blade.operate(inlet, 0x00, 99), (bytes{0x00}));
    EXPECT_EQ(blade.operate(power_supply, 0x00, 99), (bytes{0x00}));
    EXPECT_EQ(blade.reading(inlet), before);
}

TEST(simulated_sensor_setting, refuses_a_sensor_that_does_not_exist)
{
    EXPECT_EQ(set_blade().set(0xEE, 1), (bytes{0xCB}));
}

TEST(simulated_sensor_setting, refuses_readings_of_sensors_of_states)
{
    EXPECT_EQ(set_blade().set(power_supply, 1), (bytes{0x80}));
}

TEST(simulated_sensor_setting, refuses_to_set_the_status_of_events)
{
    set_blade blade;
    for (const uint8_t operation : bytes{0x04, 0x08, 0x0C, 0x10, 0x20, 0x30, 0x11})
        EXPECT_EQ(blade.operate(inlet, operation, 99), (bytes{0x80}));
    EXPECT_NE(blade.reading(inlet).at(1), 99);
}

TEST(simulated_sensor_setting, refuses_to_set_the_data_of_events)
{
    set_blade blade;
    for (const uint8_t operation : bytes{0x40, 0x80, 0x41, 0x81})
        EXPECT_EQ(blade.operate(inlet, operation, 99), (bytes{0x81}));
    EXPECT_NE(blade.reading(inlet).at(1), 99);
}

TEST(simulated_sensor_setting, refuses_operations_that_are_reserved)
{
    set_blade blade;
    for (const uint8_t operation : bytes{0x02, 0x03, 0xC0, 0xC1})
        EXPECT_EQ(blade.operate(inlet, operation, 99), (bytes{0xCC}));
    EXPECT_NE(blade.reading(inlet).at(1), 99);
}

TEST(simulated_sensor_setting, is_promised_by_the_records_of_just_the_sensors_that_can_be_set)
{
    set_blade blade;
    for (const uint8_t type : bytes{0x01, 0x02})
        for (const bytes &record : blade.records_of_type(type)) {
            const bool settable = record.at(10) & 0x80;
            EXPECT_EQ(blade.set(record.at(7), 1)[0] == 0x00, settable);
        }
}

} // namespace

} // namespace chassisd::simulated
