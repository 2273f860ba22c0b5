// What the blade tells of its alerts, and alerts to test the way to the chassis.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

class alerting_blade : public parameter_blade
{
  public:
    bytes status() { return manager(0x51, {}); }
    bytes block(uint8_t number, uint8_t queue = 0) { return manager(0x94, {queue, number}); }

    bytes test_alert(uint8_t event, const bytes &told = {1, 2, 3, 4})
    {
        return manager(0x97, joined(joined({event}, told), bytes(4)));
    }

    void power(uint8_t action) { ask(0x00, 0x02, {action}); }
};

TEST(simulated_test_alert, is_an_event_and_an_entry_in_the_log)
{
    alerting_blade blade;
    EXPECT_EQ(blade.test_alert(40), (bytes{0x00}));
    const std::vector<alert> alerts = blade.alerts();
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(static_cast<uint32_t>(alerts[0].event), 40u);
    EXPECT_EQ(alerts[0].record, blade.last_entry());
    EXPECT_EQ(blade.last_entry().at(2), 0xC0);
    EXPECT_EQ(long_at(3, blade.last_entry()), start_time);
    EXPECT_EQ(from(7, blade.last_entry()), (bytes{0xD9, 0x7E, 0x00, 40, 1, 2, 3, 4, 0}));
}

TEST(simulated_test_alert, is_one_of_the_events_that_there_are)
{
    alerting_blade blade;
    EXPECT_EQ(blade.test_alert(0), (bytes{0xC9}));
    EXPECT_EQ(blade.test_alert(65), (bytes{0xC9}));
    EXPECT_TRUE(blade.alerts().empty());
    EXPECT_EQ(blade.test_alert(64), (bytes{0x00}));
}

TEST(simulated_host_event_status, counts_alerts_and_tells_the_last)
{
    alerting_blade blade;
    EXPECT_EQ(blade.status(), (bytes{0x00, 0, 0, 0, 1, 0xAA}));
    blade.power(0x00);
    EXPECT_EQ(blade.status(), (bytes{0x00, 1, 0, 10, 0, 0x00}));
    blade.power(0x01);
    EXPECT_EQ(blade.status(), (bytes{0x00, 2, 0, 9, 1, 0x01}));
}

TEST(simulated_alert_queue, has_the_records_of_the_alerts_in_blocks_of_sixteen)
{
    alerting_blade blade;
    EXPECT_EQ(blade.block(0), joined({0x00}, bytes(256)));
    bytes first_records;
    for (uint8_t event = 1; event <= 17; ++event) {
        blade.test_alert(event);
        if (event <= 16)
            first_records = joined(first_records, blade.last_entry());
    }
    EXPECT_EQ(blade.block(0), joined({0x00}, first_records));
    EXPECT_EQ(blade.block(1), joined({0x00}, joined(blade.last_entry(), bytes(240))));
}

TEST(simulated_alert_queue, is_one_and_ends_where_its_records_end)
{
    alerting_blade blade;
    EXPECT_EQ(blade.block(1), (bytes{0xC9}));
    EXPECT_EQ(blade.block(0, 1), (bytes{0xCC}));
}

TEST(simulated_alert_queue, forgets_the_oldest_of_more_than_sixty_four)
{
    alerting_blade blade;
    for (uint8_t event = 1; event <= 64; ++event)
        blade.test_alert(event);
    blade.test_alert(64);
    EXPECT_EQ(blade.block(0).at(11), 2) << "the event of the oldest record";
    EXPECT_EQ(blade.block(3).size(), 257u);
    EXPECT_EQ(blade.block(4), (bytes{0xC9}));
}

} // namespace

} // namespace chassisd::simulated
