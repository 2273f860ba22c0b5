// The user accounts of a blade's controller, and what they may do on its LAN channel.

#include "cli/command_tree.h"
#include "cli/names.h"
#include "cli/output.h"
#include "cli/readers.h"
#include "cli/secret.h"

namespace cli
{

namespace
{

const request_name get_access = {0x0644, "Get User Access"};
const request_name set_access = {0x0643, "Set User Access"};
const request_name get_name = {0x0646, "Get User Name"};
const request_name set_name = {0x0645, "Set User Name"};
const request_name set_password = {0x0647, "Set User Password"};

constexpr uint8_t lan_channel = 1;
constexpr uint8_t id_mask = 0x3F;
constexpr size_t longest_name = 16;

const name_table privileges = {{1, "callback"}, {2, "user"}, {3, "operator"}, {4, "administrator"},
                               {4, "admin"},    {5, "oem"},  {15, "none"}};

struct user_choice {
    uint8_t id = 0;
};

// Null where it is told not at all: older controllers leave it open.
json enabled(uint8_t status)
{
    constexpr uint8_t is_enabled = 1;
    constexpr uint8_t is_disabled = 2;
    const auto told = static_cast<uint8_t>(status >> 6);
    return told == is_enabled ? json(true) : told == is_disabled ? json(false) : json();
}

// Some controllers refuse to tell the name of a user that was never set.
json name(const blade &at, uint8_t id)
{
    return unless_refused(
        [&]() -> json {
            const bytes field = exchange(get_name, at, {id}, longest_name);
            const std::string text(field.begin(), field.begin() + longest_name);
            return printable(text.substr(0, text.find('\0')));
        },
        nullptr);
}

// The access of a user: how many there are, whether it is enabled, how many names are fixed, what
// it may do.
bytes access(const blade &at, uint8_t id)
{
    constexpr size_t length = 4;
    return exchange(get_access, at, {lan_channel, id}, length);
}

json user(const blade &at, uint8_t id, const bytes &access)
{
    return {{"id", id},
            {"name", name(at, id)},
            {"enabled", enabled(access[1])},
            {"privilege", name_of(privileges, access[3] & 0x0F)},
            {"access", names_of_bits(static_cast<uint8_t>(access[3] >> 4),
                                     {"messaging", "link authentication", "callback only"})}};
}

report list(const blade &at)
{
    report told = tell({{"users", json::array()}});
    try {
        uint8_t last = 1;
        for (uint8_t id = 1; id <= last; ++id) {
            const bytes found = access(at, id);
            last = found[0] & id_mask;
            told.fields["users"].push_back(user(at, id, found));
        }
    } catch (const failure &why) {
        told.ended = why;
    }
    return told;
}

struct name_choice : user_choice {
    std::string name;
};

report change_name(const blade &at, const name_choice &chosen)
{
    ask<uint8_t>(set_name, at, location_set_user_name, chosen.id, chosen.name.c_str());
    return tell({{"id", chosen.id}, {"name", chosen.name}});
}

struct password_choice : user_choice, secret_choice {
};

report change_password(const blade &at, const password_choice &chosen)
{
    // The library sends a field of 20 bytes, and IPMI wants to be told that it is not one of 16.
    constexpr uint8_t has_20_bytes = 0x80;
    const std::string &password = chosen.secret("password", true);
    ask<uint8_t>(set_password, at, location_set_user_password,
                 static_cast<uint8_t>(chosen.id | has_20_bytes), password.c_str());
    return tell({{"id", chosen.id}, {"password", "set"}});
}

template <uint32_t enable>
report change_enabled(const blade &at, const user_choice &chosen)
{
    ask<uint8_t>(set_password, at, location_enable_disable_user, chosen.id, enable);
    return tell({{"id", chosen.id}, {"enabled", enable != 0}});
}

struct access_choice : user_choice {
    uint8_t privilege = 0;
    uint8_t sessions = 0;
};

uint8_t privilege(const std::string &name)
{
    return number_named(privileges, name);
}

std::vector<std::string> privilege_names()
{
    return all_names(privileges);
}

report change_access(const blade &at, const access_choice &chosen)
{
    ask<uint8_t>(set_access, at, location_set_user_access, chosen.id, chosen.privilege,
                 chosen.sessions);
    return tell({{"id", chosen.id},
                 {"privilege", name_of(privileges, chosen.privilege)},
                 {"sessions", chosen.sessions}});
}

template <typename Choice>
verb<Choice> with_id(verb<Choice> verb)
{
    verb.argument("ID", &user_choice::id, number_from_to<uint8_t, 1, 63>, "User, 1 to 63");
    return verb;
}

} // namespace

void add_user(const noun &root)
{
    const noun user = root.noun_below("user", "The users of the blade's controller");
    user.verb("list", "Show all users, and what they may do on LAN channel 1", list);
    with_id(user.verb("set-name", "Give a user a name", change_name))
        .argument("NAME", &name_choice::name, text_up_to<longest_name>, "Up to 16 characters");
    with_id(user.verb("set-password", "Give a user a password, asked for without echo",
                      change_password))
        .option("--password-file", "FILE", &secret_choice::from_file, secret_in_file,
                "Its first line is the password, up to 20 characters; - is standard input");
    with_id(user.verb("enable", "Let a user log in", change_enabled<1>));
    with_id(user.verb("disable", "Let a user log in no more", change_enabled<0>));
    with_id(user.verb("set-access", "Limit what a user may do on LAN channel 1", change_access))
        .option("--privilege", "LEVEL", &access_choice::privilege, privilege,
                "callback, user, operator, administrator (or admin), oem or none")
        .choices(privilege_names)
        .required()
        .option("--sessions", "N", &access_choice::sessions, number_from_to<uint8_t, 0, 15>,
                "How many at once, 1 to 15; 0, no limit of its own, when not given");
}

} // namespace cli
