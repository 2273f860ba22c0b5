// The system boot options.

#include "blade_under_test.h"

namespace chassisd::simulated
{

namespace
{

class booting_blade : public blade_under_test
{
  public:
    bytes set(const bytes &request) { return ask(0x00, 0x08, request); }
    bytes get(uint8_t number, uint8_t set = 0) { return ask(0x00, 0x09, {number, set, 0}); }
    bytes value(uint8_t number, uint8_t set = 0) { return from(3, get(number, set)); }
    void reset_system() { ask(0x00, 0x02, {0x03}); }
};

const bytes pxe_once = {0x80, 0x04, 0, 0, 0};
const bytes pxe_always = {0xC0, 0x04, 0, 0, 0};

TEST(simulated_boot_options, are_zeros_at_the_start)
{
    booting_blade blade;
    EXPECT_EQ(blade.get(0), (bytes{0x00, 0x01, 0x00, 0x00}));
    EXPECT_EQ(blade.get(5), (bytes{0x00, 0x01, 0x05, 0, 0, 0, 0, 0}));
}

TEST(simulated_boot_options, are_kept_each_in_its_size)
{
    booting_blade blade;
    constexpr size_t sizes[] = {1, 1, 1, 1, 2, 5, 9};
    for (uint8_t number = 1; size_t{number} < std::size(sizes); ++number) {
        const bytes value(sizes[number], number);
        EXPECT_EQ(blade.set(joined({number}, value)), (bytes{0x00}));
        EXPECT_EQ(blade.set(joined({number}, joined(value, {9}))), (bytes{0xC7}));
        EXPECT_EQ(blade.value(number), value);
    }
}

TEST(simulated_boot_options, that_the_standard_does_not_have_are_not_supported)
{
    booting_blade blade;
    EXPECT_EQ(blade.get(8), (bytes{0x80}));
    EXPECT_EQ(blade.set({8, 0}), (bytes{0x80}));
    EXPECT_EQ(blade.set({0x88}), (bytes{0x80}));
}

TEST(simulated_boot_options, have_a_mailbox_of_numbered_blocks)
{
    booting_blade blade;
    const bytes block = joined({4}, bytes(16, 0xAB));
    EXPECT_EQ(blade.set(joined({7}, block)), (bytes{0x00}));
    EXPECT_EQ(blade.value(7, 4), block);
    EXPECT_EQ(blade.value(7, 3), joined({3}, bytes(16)));
    EXPECT_EQ(blade.get(7, 5), (bytes{0xC9}));
    EXPECT_EQ(blade.set(joined({7, 5}, bytes(16))), (bytes{0xC9}));
}

TEST(simulated_boot_options, can_be_marked_invalid_with_a_value_or_without)
{
    booting_blade blade;
    EXPECT_EQ(blade.set({0x85}), (bytes{0x00}));
    EXPECT_EQ(blade.get(5).at(2), 0x85);
    blade.set(joined({0x05}, pxe_once));
    EXPECT_EQ(blade.get(5).at(2), 0x05);
    blade.set({0x81, 3});
    EXPECT_EQ(blade.get(1), (bytes{0x00, 0x01, 0x81, 3}));
}

TEST(simulated_boot_options, are_set_by_one_at_a_time)
{
    booting_blade blade;
    EXPECT_EQ(blade.set({0, 1}), (bytes{0x00}));
    EXPECT_EQ(blade.set({0, 1}), (bytes{0x81}));
    EXPECT_EQ(blade.value(0), (bytes{1}));
    EXPECT_EQ(blade.set({0, 0}), (bytes{0x00}));
    EXPECT_EQ(blade.set({0, 1}), (bytes{0x00}));
    EXPECT_EQ(blade.set({0, 2}), (bytes{0xCC}));
}

TEST(simulated_boot_flags, hold_for_the_next_boot_alone)
{
    booting_blade blade;
    blade.set(joined({5}, pxe_once));
    EXPECT_EQ(blade.value(5), pxe_once);
    blade.reset_system();
    EXPECT_EQ(blade.value(5), (bytes{0x00, 0x04, 0, 0, 0}));
}

TEST(simulated_boot_flags, hold_for_all_boots_when_they_say_so)
{
    booting_blade blade;
    blade.set(joined({5}, pxe_always));
    blade.reset_system();
    EXPECT_EQ(blade.value(5), pxe_always);
}

} // namespace

} // namespace chassisd::simulated
