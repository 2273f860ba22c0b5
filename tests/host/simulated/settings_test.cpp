// LCD messages, link tuning, automatic throttling, power and thermal management.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint8_t lcd = 0x02, link_tuning = 0x11, autothrottle = 0x1A;
enum link_tuning_item : uint8_t { version = 1, transmit_status = 2, path = 3 };

bytes path_field(const std::string &text)
{
    bytes field(text.begin(), text.end());
    field.resize(30);
    return field;
}

class thermal_blade : public parameter_blade
{
  public:
    bytes thermal(uint8_t operation, uint8_t parameter, size_t count, size_t offset,
                  const bytes &body)
    {
        return manager(0xCE, joined(head(operation, parameter, count, offset), body));
    }

    bytes set(uint8_t parameter, const bytes &body, size_t offset = 0)
    {
        return thermal(0, parameter, body.size(), offset, body);
    }

    // Four bytes of a value behind its length.
    bytes get(uint8_t parameter, size_t offset = 0)
    {
        const bytes answer = thermal(1, parameter, 4, offset, {});
        return joined(part(2, 2, answer), from(6, answer));
    }

    bytes set_location(uint8_t code, const std::string &text)
    {
        const auto length = static_cast<uint8_t>(text.size());
        const bytes fixed = {uint8_t(length + 7), 0, code, 7, 7, 0x44, length};
        return set(1, joined(fixed, bytes(text.begin(), text.end())));
    }

    // The text of an attribute, told four bytes at a time.
    std::string location(uint8_t code)
    {
        const auto told = [=](size_t offset) { return thermal(1, 1, 4, offset, {0, 0, code, 0}); };
        const size_t length = word_at(2, told(0));
        bytes value;
        while (value.size() < length)
            value = joined(value, from(6, told(value.size())));
        value.resize(length);
        const bytes text = from(7, value);
        return {text.begin(), text.end()};
    }
};

TEST(simulated_lcd, hides_its_messages_and_shows_them_again)
{
    parameter_blade blade;
    EXPECT_EQ(blade.fields(lcd), (bytes{0, 0, 0}));
    EXPECT_EQ(blade.write(lcd, {1}), (bytes{0x00}));
    EXPECT_EQ(blade.fields(lcd), (bytes{1, 1, 0}));
    EXPECT_EQ(blade.write(lcd, {0}), (bytes{0x00}));
    EXPECT_EQ(blade.fields(lcd), (bytes{0, 0, 0}));
}

TEST(simulated_lcd, refuses_what_is_neither)
{
    parameter_blade blade;
    EXPECT_EQ(blade.write(lcd, {2}), (bytes{0xCC}));
    EXPECT_EQ(blade.fields(lcd), (bytes{0, 0, 0}));
}

TEST(simulated_link_tuning, tells_its_version_in_eleven_bytes)
{
    parameter_blade blade;
    EXPECT_EQ(from(6, blade.read(link_tuning, 11, {version})),
              (bytes{11, 0, 0x01, 0x14, 0x00, 0x02, 0x00, 0x10, 0x03, 0x25, 0x20}));
}

TEST(simulated_link_tuning, is_transmitted_when_there_is_a_file)
{
    parameter_blade blade;
    EXPECT_EQ(from(6, blade.read(link_tuning, 3, {transmit_status})), (bytes{3, 0, 0}));
    EXPECT_EQ(blade.write(link_tuning, path_field("/tuning/7")), (bytes{0x00}));
    EXPECT_EQ(from(6, blade.read(link_tuning, 3, {transmit_status})), (bytes{3, 0, 1}));
    EXPECT_EQ(blade.fields(link_tuning, {path}), path_field("/tuning/7"));
    blade.write(link_tuning, path_field(""));
    EXPECT_EQ(blade.fields(link_tuning, {transmit_status}), (bytes{0}));
}

TEST(simulated_link_tuning, has_no_other_items)
{
    parameter_blade blade;
    for (const uint8_t item : bytes{0, 4, 255})
        EXPECT_EQ(blade.read(link_tuning, 11, {item}), (bytes{0xCC}));
}

TEST(simulated_autothrottle, keeps_its_delay)
{
    parameter_blade blade;
    EXPECT_EQ(blade.fields(autothrottle), (bytes{0, 0, 0}));
    EXPECT_EQ(blade.write(autothrottle, {0x00, 0x01, 0x59}), (bytes{0x00}));
    EXPECT_EQ(blade.fields(autothrottle), (bytes{0x00, 0x01, 0x59}));
}

TEST(simulated_power_thermal, answers_ten_bytes_that_tell_the_value)
{
    thermal_blade blade;
    EXPECT_EQ(blade.set(9, {1, 2, 3}), (bytes{0x00, 9, 3, 0, 0, 0, 1, 2, 3, 0}));
    EXPECT_EQ(blade.thermal(1, 9, 4, 2, {}), (bytes{0x00, 9, 3, 0, 2, 0, 3, 0, 0, 0}));
}

TEST(simulated_power_thermal, keeps_each_parameter_for_itself)
{
    thermal_blade blade;
    blade.set(9, {1, 2, 3});
    blade.set(10, {4});
    EXPECT_EQ(blade.get(9), (bytes{3, 0, 1, 2, 3, 0}));
    EXPECT_EQ(blade.get(10), (bytes{1, 0, 4, 0, 0, 0}));
    EXPECT_EQ(blade.get(11), (bytes{0, 0, 0, 0, 0, 0})) << "nobody wrote it";
}

TEST(simulated_power_thermal, goes_on_where_a_value_ended_and_leaves_no_hole)
{
    thermal_blade blade;
    blade.set(9, {1, 2, 3});
    EXPECT_EQ(blade.set(9, {9, 9}, 4), (bytes{0xC9}));
    blade.set(9, {7, 8}, 2);
    EXPECT_EQ(blade.get(9), (bytes{4, 0, 1, 2, 7, 8}));
    blade.set(9, {5});
    EXPECT_EQ(blade.get(9), (bytes{1, 0, 5, 0, 0, 0})) << "begun anew";
}

TEST(simulated_power_thermal, keeps_as_much_of_a_value_as_its_length_can_count)
{
    thermal_blade blade;
    for (size_t offset = 0; offset < 0xFFFF; offset += 255)
        ASSERT_EQ(blade.set(9, bytes(255, 0x5A), offset)[0], 0x00);
    EXPECT_EQ(blade.set(9, {1}, 0xFFFF), (bytes{0xC9}));
    EXPECT_EQ(blade.get(9, 0xFFFE), (bytes{0xFF, 0xFF, 0x5A, 0, 0, 0}));
}

TEST(simulated_power_thermal, refuses_other_operations_and_wrong_lengths)
{
    thermal_blade blade;
    EXPECT_EQ(blade.thermal(2, 9, 1, 0, {1}), (bytes{0xCC}));
    EXPECT_EQ(blade.thermal(0, 9, 2, 0, {1}), (bytes{0xC7}));
    EXPECT_EQ(blade.thermal(0, 9, 0, 0, {1}), (bytes{0xC7}));
    EXPECT_EQ(blade.get(9), (bytes{0, 0, 0, 0, 0, 0}));
}

TEST(simulated_physical_location, keeps_every_attribute)
{
    thermal_blade blade;
    EXPECT_EQ(blade.set_location(0x10, "R1")[0], 0x00);
    EXPECT_EQ(blade.set_location(0x50, std::string(128, 'x'))[0], 0x00);
    EXPECT_EQ(blade.location(0x10), "R1");
    EXPECT_EQ(blade.location(0x50), std::string(128, 'x'));
    blade.set_location(0x50, "short");
    EXPECT_EQ(blade.location(0x50), "short");
}

TEST(simulated_physical_location, keeps_the_number_without_a_code)
{
    thermal_blade blade;
    blade.set_location(0x10, "R1");
    EXPECT_EQ(blade.set(1, {6, 0, 0, 44, 7, 0x44}), (bytes{0x00, 1, 6, 0, 0, 0, 6, 0, 0, 44}));
    EXPECT_EQ(blade.get(1), (bytes{6, 0, 6, 0, 0, 44}));
}

TEST(simulated_physical_location, stays_when_a_head_comes_alone)
{
    thermal_blade blade;
    blade.set(1, {6, 0, 0, 44, 7, 0x44});
    EXPECT_EQ(blade.set(1, {})[0], 0x00);
    EXPECT_EQ(blade.get(1), (bytes{6, 0, 6, 0, 0, 44}));
}

TEST(simulated_physical_location, refuses_a_length_of_its_own_that_does_not_match_and_parts)
{
    thermal_blade blade;
    for (const bytes &body :
         {bytes{5, 0, 0, 44, 7, 0x44}, bytes{6, 1, 0, 44, 7, 0x44}, bytes{2, 0}})
        EXPECT_EQ(blade.set(1, body), (bytes{0xC7}));
    EXPECT_EQ(blade.set(1, {1}, 2), (bytes{0xC9}));
    EXPECT_EQ(blade.get(1), (bytes{0, 0, 0, 0, 0, 0}));
}

} // namespace

} // namespace chassisd::simulated
