// The controller's own state, and what it offers at a distance.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

using namespace std::chrono_literals;

class status_blade : public parameter_blade
{
  public:
    bytes status() { return manager(0x90, {}); }
    bytes enter_update() { return ask(0x2E, 0x18); }
    void power(uint8_t action) { ask(0x00, 0x02, {action}); }
};

TEST(simulated_controller_status, tells_how_long_it_runs_and_whether_the_system_is_on)
{
    status_blade blade;
    EXPECT_EQ(blade.status(), (bytes{0x00, 0, 0, 0, 0, 0, 1}));
    blade.let_pass(70000s);
    blade.power(0x00);
    EXPECT_EQ(blade.status(), (bytes{0x00, 0, 0x70, 0x11, 0x01, 0x00, 0}));
}

TEST(simulated_firmware_update, is_waited_for_five_seconds)
{
    status_blade blade;
    EXPECT_EQ(blade.enter_update(), (bytes{0x00}));
    EXPECT_EQ(blade.status().at(1), 1);
    blade.let_pass(4999ms);
    EXPECT_EQ(blade.enter_update(), (bytes{0xD5}));
    EXPECT_EQ(blade.status().at(1), 1);
    blade.let_pass(1ms);
    EXPECT_EQ(blade.status().at(1), 0);
    EXPECT_EQ(blade.enter_update(), (bytes{0x00}));
}

TEST(simulated_remote_console, is_there_while_the_system_is_on)
{
    status_blade blade;
    EXPECT_EQ(blade.manager(0x8D, {}), (bytes{0x00, 1, 0, 0x0C, 0x17, 1, 4}));
    blade.power(0x00);
    EXPECT_EQ(blade.manager(0x8D, {}), (bytes{0x00, 0, 0, 0x0C, 0x17, 1, 4}));
}

TEST(simulated_remote_media, are_enabled_and_not_attached)
{
    EXPECT_EQ(status_blade().manager(0x8E, {}), (bytes{0x00, 1, 0, 0, 1}));
}

TEST(simulated_staging_area, has_a_monitors_data_in_the_block_of_its_number)
{
    status_blade blade;
    EXPECT_EQ(blade.manager(0x92, joined({3}, bytes(128, 0x5A))), (bytes{0x00}));
    EXPECT_EQ(blade.manager(0x93, {3}), joined({0x00}, joined(bytes(128, 0x5A), bytes(128))));
    EXPECT_EQ(blade.manager(0x93, {4}), joined({0x00}, bytes(256)));
    EXPECT_EQ(blade.manager(0x92, joined({3}, bytes(127))), (bytes{0xC7}));
}

} // namespace

} // namespace chassisd::simulated
