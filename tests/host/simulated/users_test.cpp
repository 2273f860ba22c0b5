// The users of the blade, who may log in, and what brings the first of them back.

#include "blade_under_test.h"

namespace chassisd::simulated
{

namespace
{

enum operation : uint8_t { disable, enable, set, test };

bytes padded(const std::string &characters, size_t size)
{
    bytes field(characters.begin(), characters.end());
    field.resize(size);
    return field;
}

class users_blade : public blade_under_test
{
  public:
    bytes set_name(uint8_t id, const std::string &name)
    {
        return ask(0x06, 0x45, joined({id}, padded(name, 16)));
    }

    bytes name(uint8_t id) { return ask(0x06, 0x46, {id}); }

    bytes password(uint8_t id, uint8_t operation, const std::string &characters, size_t size = 20)
    {
        const auto who = static_cast<uint8_t>(id | (size == 20 ? 0x80 : 0x00));
        return ask(0x06, 0x47, joined({who, operation}, padded(characters, size)));
    }

    bytes enable_or_disable(uint8_t id, uint8_t operation)
    {
        return ask(0x06, 0x47, {id, operation});
    }

    bytes set_access(const bytes &request) { return ask(0x06, 0x43, request); }
    bytes access(uint8_t id) { return ask(0x06, 0x44, {0x01, id}); }
    bytes log_in(const std::string &password) { return ask(0x30, 0x96, padded(password, 36)); }
};

TEST(simulated_users, are_ten_with_an_administrator_among_them)
{
    users_blade blade;
    EXPECT_EQ(blade.name(1), joined({0x00}, bytes(16)));
    EXPECT_EQ(blade.name(2), joined({0x00}, padded("admin", 16)));
    EXPECT_EQ(blade.access(2), (bytes{0x00, 10, 0x41, 1, 0x34}));
    EXPECT_EQ(blade.access(10), (bytes{0x00, 10, 0x81, 1, 0x0F}));
    EXPECT_EQ(blade.access(0), (bytes{0xC9}));
    EXPECT_EQ(blade.access(11), (bytes{0xC9}));
}

TEST(simulated_users, have_the_names_that_they_are_given_but_for_the_first)
{
    users_blade blade;
    EXPECT_EQ(blade.set_name(3, "sixteen-letters!"), (bytes{0x00}));
    EXPECT_EQ(blade.name(3), joined({0x00}, padded("sixteen-letters!", 16)));
    EXPECT_EQ(blade.set_name(1, "somebody"), (bytes{0xCC}));
    EXPECT_EQ(blade.name(1), joined({0x00}, bytes(16)));
}

TEST(simulated_users, are_enabled_and_disabled_with_a_password_or_without)
{
    users_blade blade;
    EXPECT_EQ(blade.enable_or_disable(3, enable), (bytes{0x00}));
    EXPECT_EQ(blade.access(3).at(2), 0x42) << "enabled, one of two";
    EXPECT_EQ(blade.password(3, disable, "", 16), (bytes{0x00}));
    EXPECT_EQ(blade.access(3).at(2), 0x81) << "disabled, another is enabled";
}

TEST(simulated_users, keep_what_they_may_do_unless_it_is_changed)
{
    users_blade blade;
    EXPECT_EQ(blade.set_access({0x91, 3, 4, 0}), (bytes{0x00}));
    EXPECT_EQ(blade.access(3).at(4), 0x14);
    EXPECT_EQ(blade.set_access({0x01, 3, 2, 0}), (bytes{0x00}));
    EXPECT_EQ(blade.access(3).at(4), 0x12) << "the limit alone";
    EXPECT_EQ(blade.set_access({0x01, 3, 0x0F}), (bytes{0x00}));
    EXPECT_EQ(blade.set_access({0x01, 3, 6, 0}), (bytes{0xCC}));
    EXPECT_EQ(blade.set_access({0x02, 3, 2, 0}), (bytes{0xCC}));
    EXPECT_EQ(blade.access(3).at(4), 0x1F);
}

TEST(simulated_password, is_right_when_it_is_the_one_that_was_set)
{
    users_blade blade;
    EXPECT_EQ(blade.password(3, set, "correct horse"), (bytes{0x00}));
    EXPECT_EQ(blade.password(3, test, "correct horse"), (bytes{0x00}));
    EXPECT_EQ(blade.password(3, test, "correct house"), (bytes{0x80}));
    EXPECT_EQ(blade.password(4, test, "correct horse", 16), (bytes{0x80}));
}

TEST(simulated_password, is_wrong_in_another_size)
{
    users_blade blade;
    blade.password(3, set, "short", 16);
    EXPECT_EQ(blade.password(3, test, "short", 16), (bytes{0x00}));
    EXPECT_EQ(blade.password(3, test, "short", 20), (bytes{0x81}));
    blade.password(3, set, "short", 20);
    EXPECT_EQ(blade.password(3, test, "short", 16), (bytes{0x81}));
}

TEST(simulated_password, has_the_length_that_its_users_number_says)
{
    users_blade blade;
    EXPECT_EQ(blade.ask(0x06, 0x47, joined({3, set}, bytes(20))), (bytes{0xC7}));
    EXPECT_EQ(blade.ask(0x06, 0x47, joined({0x83, set}, bytes(16))), (bytes{0xC7}));
    EXPECT_EQ(blade.ask(0x06, 0x47, {3, set}), (bytes{0xC7}));
    EXPECT_EQ(blade.ask(0x06, 0x47, {3, test}), (bytes{0xC7}));
}

TEST(simulated_login, is_for_who_is_enabled_and_has_a_password)
{
    users_blade blade;
    EXPECT_EQ(blade.log_in("changeme"), (bytes{0x00, 1, 0, 0, 0, 4}));
    EXPECT_EQ(blade.log_in("changeme"), (bytes{0x00, 2, 0, 0, 0, 4}));
    EXPECT_EQ(blade.log_in("admin"), (bytes{0xD4}));
    EXPECT_EQ(blade.log_in(""), (bytes{0xD4}));
    blade.enable_or_disable(2, disable);
    EXPECT_EQ(blade.log_in("changeme"), (bytes{0xD4}));
}

TEST(simulated_login, is_refused_without_a_password_also_to_users_that_have_none)
{
    users_blade blade;
    blade.enable_or_disable(1, enable);
    blade.set_access({0x01, 1, 4, 0});
    EXPECT_EQ(blade.log_in(""), (bytes{0xD4}));
}

TEST(simulated_defaults, bring_back_each_part_of_the_configuration_by_itself)
{
    users_blade blade;
    const auto change_all = [&] {
        blade.ask(0x00, 0x08, {1, 0x5A});
        blade.ask(0x0C, 0x01, {1, 21, 5});
        blade.set_name(2, "root");
    };
    const auto changed = [&] {
        return bytes{blade.ask(0x00, 0x09, {1, 0, 0}).at(3) != 0,
                     blade.ask(0x0C, 0x02, {1, 21, 0, 0}).at(2) != 0, blade.name(2).at(1) != 'a'};
    };
    const std::pair<uint8_t, bytes> resets[] = {
        {0x01, {0, 1, 1}}, {0x02, {1, 0, 1}}, {0x04, {1, 1, 0}}, {0xFF, {0, 0, 0}}};
    for (const auto &[parts, left] : resets) {
        change_all();
        EXPECT_EQ(blade.ask(0x30, 0x21, {parts}), (bytes{0x00}));
        EXPECT_EQ(changed(), left);
    }
    EXPECT_EQ(blade.ask(0x30, 0x21, {0x00}), (bytes{0xCC}));
    EXPECT_EQ(blade.ask(0x30, 0x21, {0x08}), (bytes{0xCC}));
}

} // namespace

} // namespace chassisd::simulated
