// Information about chassis and storage that the chassis manager passes on.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

class informed_blade : public parameter_blade
{
  public:
    bytes pass_on(uint8_t command, uint8_t sub_command, const bytes &data, size_t offset = 0)
    {
        return manager(0xCB, joined(head(command, sub_command, data.size(), offset), data));
    }

    bytes look_up(uint8_t command, uint8_t sub_command, size_t count = 256, size_t offset = 0)
    {
        return manager(0xCB, head(command, sub_command, count, offset));
    }
};

TEST(simulated_information, is_what_was_passed_on_behind_a_head_like_the_requests)
{
    informed_blade blade;
    EXPECT_EQ(blade.pass_on(2, 5, {'a', 'b', 'c'}), (bytes{0x00, 5, 3, 0, 0, 0, 'a', 'b', 'c'}));
    EXPECT_EQ(blade.look_up(2, 5), (bytes{0x00, 5, 3, 0, 0, 0, 'a', 'b', 'c'}));
    EXPECT_EQ(blade.look_up(2, 5, 1, 1), (bytes{0x00, 5, 1, 0, 1, 0, 'b'}));
}

TEST(simulated_information, is_nothing_where_nothing_was_passed_on)
{
    informed_blade blade;
    EXPECT_EQ(blade.look_up(2, 5), (bytes{0x00, 5, 0, 0, 0, 0}));
    EXPECT_EQ(blade.look_up(2, 5, 256, 1), (bytes{0xC9}));
}

TEST(simulated_information, is_kept_by_command_and_sub_command)
{
    informed_blade blade;
    blade.pass_on(2, 5, {'a'});
    blade.pass_on(2, 6, {'b'});
    blade.pass_on(3, 5, {'c'});
    EXPECT_EQ(blade.look_up(2, 5).back(), 'a');
    EXPECT_EQ(blade.look_up(2, 6).back(), 'b');
    EXPECT_EQ(blade.look_up(3, 5).back(), 'c');
}

TEST(simulated_information, comes_in_parts_up_to_256_bytes)
{
    informed_blade blade;
    blade.pass_on(2, 5, bytes(200, 1));
    EXPECT_EQ(blade.pass_on(2, 5, bytes(57, 2), 200), (bytes{0xC9}));
    EXPECT_EQ(blade.pass_on(2, 5, bytes(56, 2), 200).at(0), 0x00);
    EXPECT_EQ(blade.look_up(2, 5).size(), 262u);
    EXPECT_EQ(blade.pass_on(2, 5, {9}).at(0), 0x00) << "begins anew";
    EXPECT_EQ(blade.look_up(2, 5), (bytes{0x00, 5, 1, 0, 0, 0, 9}));
}

TEST(simulated_information, that_is_not_as_long_as_it_says_is_refused)
{
    informed_blade blade;
    EXPECT_EQ(blade.manager(0xCB, {2, 5, 2, 0, 0, 0, 'a'}), (bytes{0xC7}));
    EXPECT_EQ(blade.manager(0xCB, {2, 5, 2, 0, 0}), (bytes{0xC7}));
    EXPECT_EQ(blade.look_up(2, 5), (bytes{0x00, 5, 0, 0, 0, 0}));
}

TEST(simulated_information, has_room_for_sixty_four_pieces)
{
    informed_blade blade;
    for (uint8_t sub_command = 0; sub_command < 64; ++sub_command)
        EXPECT_EQ(blade.pass_on(2, sub_command, {1}).at(0), 0x00);
    EXPECT_EQ(blade.pass_on(2, 64, {1}), (bytes{0xC4}));
    EXPECT_EQ(blade.pass_on(2, 63, {2}).at(0), 0x00);
}

TEST(simulated_information, does_not_mix_with_the_maps_of_mac_addresses)
{
    informed_blade blade;
    const bytes map = {3, 2, 0xAA, 0xBB};
    EXPECT_EQ(blade.pass_on(0, 8, map), (bytes{0x00})) << "a map";
    EXPECT_EQ(blade.pass_on(2, 8, {1}).at(0), 0x00);
    EXPECT_EQ(blade.pass_on(1, 8, {3}), joined({0x00}, map));
    EXPECT_EQ(blade.look_up(0, 7).size(), 6u);
}

} // namespace

} // namespace chassisd::simulated
