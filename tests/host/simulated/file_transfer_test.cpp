// Files that the blade copies, by the clock, and what it is told of updates and log bundles.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

using namespace std::chrono_literals;

constexpr uint8_t notices = 0x16, log_bundle = 0x20;

bytes bytes_of(const std::string &text)
{
    return {text.begin(), text.end()};
}

class file_blade : public parameter_blade
{
  public:
    bytes set_path(uint8_t selector, const std::string &path)
    {
        bytes field = bytes_of(path);
        field.resize(30);
        return write(notices, joined({selector}, field));
    }

    char copy_status(uint8_t selector)
    {
        const bytes value = from(6, read(notices, 3, {selector}));
        EXPECT_EQ(part(0, 2, value), (bytes{3, 0}));
        EXPECT_EQ(value.size(), 3u);
        return static_cast<char>(value.at(2));
    }

    // The outcome of the last update, and whether one timed out.
    bytes told_of_updates() { return from(1, fields(notices, {0})); }
};

TEST(simulated_file, is_not_copied_before_its_path_is_known)
{
    file_blade blade;
    blade.let_pass(1h);
    EXPECT_EQ(blade.copy_status(1), '0');
}

TEST(simulated_file, is_copied_by_the_clock)
{
    file_blade blade;
    EXPECT_EQ(blade.set_path(1, "/images/blade.bin"), (bytes{0x00}));
    EXPECT_EQ(blade.copy_status(1), '0');
    blade.let_pass(250ms);
    EXPECT_EQ(blade.copy_status(1), '1');
    blade.let_pass(749ms);
    EXPECT_EQ(blade.copy_status(1), '1');
    blade.let_pass(1ms);
    EXPECT_EQ(blade.copy_status(1), '2');
}

TEST(simulated_file, without_a_path_cannot_be_copied)
{
    file_blade blade;
    blade.set_path(1, "");
    EXPECT_EQ(blade.copy_status(1), 'F');
    blade.let_pass(1h);
    EXPECT_EQ(blade.copy_status(1), 'F');
}

TEST(simulated_file, is_copied_on_its_own_and_again_when_its_path_comes_again)
{
    file_blade blade;
    blade.set_path(3, "/one");
    blade.let_pass(1s);
    blade.set_path(4, "/other");
    EXPECT_EQ(blade.copy_status(3), '2');
    EXPECT_EQ(blade.copy_status(4), '0');
    blade.set_path(3, "/one");
    EXPECT_EQ(blade.copy_status(3), '0');
}

TEST(simulated_notice, of_a_firmware_update_is_kept)
{
    file_blade blade;
    EXPECT_EQ(blade.told_of_updates(), (bytes{0, 0}));
    EXPECT_EQ(blade.write(notices, {0x03, 0x5A}), (bytes{0x00}));
    EXPECT_EQ(blade.told_of_updates(), (bytes{0x5A, 0}));
    EXPECT_EQ(blade.write(notices, {0x04}), (bytes{0x00}));
    EXPECT_EQ(blade.told_of_updates(), (bytes{0x5A, 1}));
}

TEST(simulated_notice, that_it_does_not_know_is_refused)
{
    file_blade blade;
    EXPECT_EQ(blade.write(notices, {0x04, 0x5A}), (bytes{0xCC}));
    EXPECT_EQ(blade.write(notices, {0x03}), (bytes{0xCC}));
    EXPECT_EQ(blade.write(notices, {0x03, 0x5A, 0x00}), (bytes{0xC7}));
    EXPECT_EQ(blade.write(notices, bytes(30, 'x')), (bytes{0xC7}));
    EXPECT_EQ(blade.write(notices, bytes(32, 'x')), (bytes{0xC7}));
    EXPECT_EQ(blade.told_of_updates(), (bytes{0, 0}));
}

TEST(simulated_log_bundle, is_kept_with_its_status_and_name)
{
    file_blade blade;
    const bytes told = joined({0, 0, 1, 8}, bytes_of("logs.zip"));
    EXPECT_EQ(blade.fields(log_bundle), bytes(4));
    EXPECT_EQ(blade.write(log_bundle, told), (bytes{0x00}));
    EXPECT_EQ(blade.fields(log_bundle), told);
}

TEST(simulated_log_bundle, whose_name_is_not_as_long_as_it_says_is_refused)
{
    file_blade blade;
    EXPECT_EQ(blade.write(log_bundle, joined({0, 0, 1, 9}, bytes_of("logs.zip"))), (bytes{0xC7}));
    EXPECT_EQ(blade.write(log_bundle, joined({0, 0, 1, 7}, bytes_of("logs.zip"))), (bytes{0xC7}));
    EXPECT_EQ(blade.write(log_bundle, {0, 0, 1}), (bytes{0xC7}));
    EXPECT_EQ(blade.fields(log_bundle), bytes(4));
}

} // namespace

} // namespace chassisd::simulated
