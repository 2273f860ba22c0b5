// What the chassis manager asks and tells of features.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

class feature_blade : public parameter_blade
{
  public:
    using parameter_blade::parameter_blade;

    bytes info() { return manager(0xBD, {}); }
    uint8_t power_management() { return manager(0xA9, {0x12, 0, 0, 0}).at(3); }
    bytes rebrand() { return manager(0xA9, {0x14, 0, 0, 0}); }

    bytes tell_value(const bytes &value)
    {
        return manager(0xC9, joined(joined({0, 0}, value), bytes(24)));
    }
};

TEST(simulated_features, tell_whether_value_and_block_came_and_how_the_block_begins)
{
    feature_blade blade;
    EXPECT_EQ(blade.info(), (bytes{0x00, 1, 0, 0, 0, 0, 0}));
    EXPECT_EQ(blade.tell_value({1, 2, 3, 4, 5, 6}), (bytes{0x00}));
    EXPECT_EQ(blade.info(), (bytes{0x00, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(blade.manager(0xC3, {1, 2, 3, 4, 5, 6, 7, 8}), (bytes{0x00}));
    EXPECT_EQ(blade.info(), (bytes{0x00, 1, 3, 1, 2, 3, 4}));
}

TEST(simulated_features, refuse_a_value_that_stands_elsewhere)
{
    feature_blade blade;
    EXPECT_EQ(blade.manager(0xC9, joined({1}, bytes(31))), (bytes{0xCC}));
    EXPECT_EQ(blade.manager(0xC9, joined(bytes(31), {1})), (bytes{0xCC}));
    EXPECT_EQ(blade.info().at(2), 0);
}

TEST(simulated_discovery, tells_the_blades_place_and_its_address_as_it_is_now)
{
    feature_blade blade({}, 7, 2);
    EXPECT_EQ(blade.manager(0xA3, {0x12}), (bytes{0x00, 1, 1, 7, 2, 192, 0, 2, 71, 1}));
    blade.ask(0x0C, 0x01, {1, 3, 10, 1, 2, 3});
    blade.ask(0x0C, 0x01, {1, 4, 2});
    EXPECT_EQ(blade.manager(0xA3, {0x12}), (bytes{0x00, 1, 1, 7, 2, 10, 1, 2, 3, 2}));
    EXPECT_EQ(blade.manager(0xA3, {0x13}), (bytes{0xCC}));
}

TEST(simulated_power_management, tells_power_and_throttling)
{
    feature_blade blade;
    EXPECT_EQ(blade.manager(0xA9, {0x12, 0, 0, 0}), (bytes{0x00, 0x12, 0, 0x01}));
    blade.manager(0x8B, {50, 0, 0});
    EXPECT_EQ(blade.power_management(), 0x03);
    blade.manager(0x9A, {50, 0, 0});
    EXPECT_EQ(blade.power_management(), 0x07);
    blade.ask(0x00, 0x02, {0x00});
    EXPECT_EQ(blade.power_management(), 0x06);
}

TEST(simulated_power_management, tells_the_blades_name_in_fifteen_characters)
{
    EXPECT_EQ(feature_blade(named("Abc")).rebrand(),
              joined({0x00, 0x14, 0, 'A', 'b', 'c'}, bytes(12)));
    EXPECT_EQ(from(3, feature_blade(named(std::string(20, 'n'))).rebrand()), bytes(15, 'n'));
}

TEST(simulated_power_management, refuses_other_questions)
{
    EXPECT_EQ(feature_blade().manager(0xA9, {0x13, 0, 0, 0}), (bytes{0xCC}));
}

TEST(simulated_cpld_version, is_its_first_register)
{
    feature_blade blade;
    EXPECT_EQ(blade.manager(0x33, {}), (bytes{0x00, 0x12, 0, 0, 0, 0}));
    blade.manager(0xBC, {2, 0, 0, 0x13, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(blade.manager(0x33, {}), (bytes{0x00, 0x13, 0, 0, 0, 0}));
}

} // namespace

} // namespace chassisd::simulated
