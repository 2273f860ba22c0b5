// The user accounts of a blade's controller.

#include "ruk_ipmi/users.h"

#include "command_shape.h"

namespace
{

std::vector<command_row> user_rows()
{
    return {
        row<uint8_t>(
            "set_user_name",
            [](auto at, auto out) { return location_set_user_name(at, 3, "operator", out); },
            0x0645, {3, 'o', 'p', 'e', 'r', 'a', 't', 'o', 'r', 0, 0, 0, 0, 0, 0, 0, 0},
            {0x00, 0xEE}, 0x00)
            .by_number<uint8_t>(
                [](int blade, auto out) { return set_user_name(blade, 3, "operator", out); }),
        row<uint8_t>(
            "set_user_password",
            [](auto at, auto out) { return location_set_user_password(at, 3, "secret", out); },
            0x0647,
            {3, 0x02, 's', 'e', 'c', 'r', 'e', 't', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
            {0x00}, 0x00)
            .by_number<uint8_t>(
                [](int blade, auto out) { return set_user_password(blade, 3, "secret", out); }),
        row<uint8_t>(
            "disable_user",
            [](auto at, auto out) { return location_enable_disable_user(at, 3, 0, out); }, 0x0647,
            {3, 0x00}, {0x00}, 0x00)
            .by_number<uint8_t>(
                [](int blade, auto out) { return enable_disable_user(blade, 3, 0, out); }),
        row<uint8_t>(
            "enable_user",
            [](auto at, auto out) { return location_enable_disable_user(at, 3, 1, out); }, 0x0647,
            {3, 0x01}, {0x00}, 0x00)
            .by_number<uint8_t>(
                [](int blade, auto out) { return enable_disable_user(blade, 3, 1, out); }),
        row<uint8_t>(
            "set_user_access",
            [](auto at, auto out) { return location_set_user_access(at, 3, 0x04, 0x0F, out); },
            0x0643, {0x01, 3, 0x04, 0x0F}, {0x00}, 0x00)
            .by_number<uint8_t>(
                [](int blade, auto out) { return set_user_access(blade, 3, 0x04, 0x0F, out); }),
    };
}

INSTANTIATE_COMMAND_SHAPE(users, user_rows());

const std::string alphabet = "abcdefghijklmnopqrstuvwxyz";

class users : public scripted_test
{
  protected:
    int set_name(const std::string &name)
    {
        return location_set_user_name(&at, 0x3F, name.c_str(), out.get());
    }

    int set_password(const std::string &password)
    {
        return location_set_user_password(&at, 0x83, password.c_str(), out.get());
    }

    // The first `length` letters behind `head`.
    static bytes letters(const bytes &head, size_t length)
    {
        return joined(head, bytes_at(alphabet.data(), length));
    }

    const blade_location at = blade(5, 2);
    guarded<uint8_t> out;
};

using users_death = users;

} // namespace

TEST_F(users, a_name_of_16_characters_fills_its_field_without_a_terminator)
{
    platform.expects(at, 0x0645, letters({0x3F}, 16));
    EXPECT_EQ(set_name(alphabet.substr(0, 16)), 0);
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 17));
}

TEST_F(users, a_longer_name_is_cut_to_16_characters)
{
    for (const size_t length : {17, 18, 26}) {
        platform.expects(at, 0x0645, letters({0x3F}, 16));
        EXPECT_EQ(set_name(alphabet.substr(0, length)), 0);
    }
}

TEST_F(users, a_name_ends_where_its_text_does)
{
    platform.expects(at, 0x0645, joined({0x3F}, bytes(16)));
    EXPECT_EQ(set_name(""), 0);
    platform.expects(at, 0x0645, joined(letters({0x3F}, 15), {0x00}));
    EXPECT_EQ(set_name(alphabet.substr(0, 15)), 0);
}

TEST_F(users, a_password_of_20_characters_fills_its_field_without_a_terminator)
{
    platform.expects(at, 0x0647, letters({0x83, 0x02}, 20));
    EXPECT_EQ(set_password(alphabet.substr(0, 20)), 0);
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 22));
}

TEST_F(users, a_longer_password_is_cut_to_20_characters)
{
    for (const size_t length : {21, 25}) {
        platform.expects(at, 0x0647, letters({0x83, 0x02}, 20));
        EXPECT_EQ(set_password(alphabet.substr(0, length)), 0);
    }
}

TEST_F(users, a_password_ends_where_its_text_does)
{
    platform.expects(at, 0x0647, joined({0x83, 0x02}, bytes(20)));
    EXPECT_EQ(set_password(""), 0);
    platform.expects(at, 0x0647, joined(letters({0x83, 0x02}, 19), {0x00}));
    EXPECT_EQ(set_password(alphabet.substr(0, 19)), 0);
}

TEST_F(users, are_either_enabled_or_disabled)
{
    for (const uint32_t enable : {2u, 0x100u, 0x101u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(location_enable_disable_user(&at, 3, enable, out.get()), 0x510a);
        EXPECT_EQ(enable_disable_user(5, 3, enable, out.get()), 0x510a);
    }
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events(10, error_line("Invalid parameter to IPMI interface\n")));
}

TEST_F(users, access_is_limited_with_whatever_the_caller_gives)
{
    platform.expects(at, 0x0643, {0x01, 0xFF, 0xFE, 0xFD});
    EXPECT_EQ(location_set_user_access(&at, 0xFF, 0xFE, 0xFD, out.get()), 0);
}

TEST_F(users_death, a_missing_name_or_password_is_not_refused_but_dereferenced)
{
    EXPECT_DEATH(location_set_user_name(&at, 3, nullptr, out.get()), "");
    EXPECT_DEATH(location_set_user_password(&at, 3, nullptr, out.get()), "");
}
