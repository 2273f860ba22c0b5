// The configuration of the LAN channel.

#include "blade_under_test.h"

namespace chassisd::simulated
{

namespace
{

class lan_blade : public blade_under_test
{
  public:
    using blade_under_test::blade_under_test;

    bytes set(uint8_t number, const bytes &value, uint8_t channel = 1)
    {
        return ask(0x0C, 0x01, joined({channel, number}, value));
    }

    bytes get(uint8_t number, uint8_t set = 0, uint8_t channel = 1)
    {
        return ask(0x0C, 0x02, {channel, number, set, 0});
    }

    bytes value(uint8_t number, uint8_t set = 0) { return from(2, get(number, set)); }
};

TEST(simulated_lan, has_an_address_and_a_mac_address_of_the_blades_place)
{
    EXPECT_EQ(lan_blade().get(3), (bytes{0x00, 0x11, 192, 0, 2, 7}));
    EXPECT_EQ(lan_blade().value(5), (bytes{0x02, 0x52, 0x55, 0x4B, 7, 0}));
    EXPECT_EQ(lan_blade({}, 7, 2).value(3), (bytes{192, 0, 2, 71}));
    EXPECT_EQ(lan_blade({}, 7, 2).value(5), (bytes{0x02, 0x52, 0x55, 0x4B, 7, 2}));
}

TEST(simulated_lan, keeps_what_is_set)
{
    const std::vector<std::pair<uint8_t, bytes>> values = {
        {3, {10, 1, 2, 3}},
        {4, {2}},
        {6, {255, 255, 0, 0}},
        {12, {10, 1, 2, 254}},
        {16, bytes(18, 'c')},
        {20, {0x2A, 0x80}},
        {21, {5}},
        {24, bytes(9, 0x44)},
    };
    lan_blade blade;
    for (const auto &[number, value] : values) {
        EXPECT_EQ(blade.set(number, value), (bytes{0x00}));
        EXPECT_EQ(blade.value(number), value) << +number;
    }
}

TEST(simulated_lan, refuses_values_of_a_wrong_length_and_keeps_the_one_it_has)
{
    lan_blade blade;
    EXPECT_EQ(blade.set(3, {10, 1, 2}), (bytes{0xC7}));
    EXPECT_EQ(blade.set(3, {10, 1, 2, 3, 4}), (bytes{0xC7}));
    EXPECT_EQ(blade.set(3, {}), (bytes{0xC7}));
    EXPECT_EQ(blade.set(3, bytes(253)), (bytes{0xC7}));
    EXPECT_EQ(blade.value(3), (bytes{192, 0, 2, 7}));
}

TEST(simulated_lan, does_not_let_its_own_facts_be_written)
{
    lan_blade blade;
    for (const uint8_t number : bytes{1, 5, 17, 22, 23})
        EXPECT_EQ(blade.set(number, blade.value(number)), (bytes{0x82}));
}

TEST(simulated_lan, refuses_parameters_channels_and_address_sources_that_there_are_not)
{
    lan_blade blade;
    EXPECT_EQ(blade.get(25), (bytes{0x80}));
    EXPECT_EQ(blade.set(192, {0}), (bytes{0x80}));
    EXPECT_EQ(blade.get(3, 0, 2), (bytes{0xCC}));
    EXPECT_EQ(blade.set(3, {10, 1, 2, 3}, 2), (bytes{0xCC}));
    EXPECT_EQ(blade.set(4, {0}), (bytes{0xCC}));
    EXPECT_EQ(blade.set(4, {5}), (bytes{0xCC}));
}

TEST(simulated_lan, tells_the_revision_of_a_parameter_alone)
{
    EXPECT_EQ(lan_blade().get(3, 0, 0x81), (bytes{0x00, 0x11}));
}

TEST(simulated_lan, has_a_volatile_and_four_other_destinations)
{
    lan_blade blade;
    EXPECT_EQ(blade.value(17), (bytes{4}));
    EXPECT_EQ(blade.set(18, {4, 0, 3, 2}), (bytes{0x00}));
    EXPECT_EQ(blade.value(18, 4), (bytes{4, 0, 3, 2}));
    EXPECT_EQ(blade.value(18, 3), (bytes{3, 0, 0, 0}));
    EXPECT_EQ(blade.set(18, {5, 0, 3, 2}), (bytes{0xC9}));
    EXPECT_EQ(blade.get(19, 5), (bytes{0xC9}));
}

TEST(simulated_lan, is_set_by_one_at_a_time)
{
    lan_blade blade;
    EXPECT_EQ(blade.set(0, {1}), (bytes{0x00}));
    EXPECT_EQ(blade.set(0, {1}), (bytes{0x81}));
    EXPECT_EQ(blade.value(0), (bytes{1}));
    EXPECT_EQ(blade.set(0, {0}), (bytes{0x00}));
    EXPECT_EQ(blade.value(0), (bytes{0}));
}

} // namespace

} // namespace chassisd::simulated
