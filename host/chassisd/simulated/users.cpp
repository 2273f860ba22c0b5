#include "chassisd/simulated/users.h"

#include <array>

#include "chassisd/simulated/lan.h"
#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

constexpr size_t user_count = 10;
constexpr size_t name_size = 16;
constexpr size_t short_password = 16;
constexpr size_t long_password = 20;

// The lower six bits of a byte that names a user, and the lower four of one that names a channel.
constexpr uint8_t id_mask = 0x3F;
constexpr uint8_t channel_mask = 0x0F;

enum privilege : uint8_t { callback = 1, administrator = 4, oem = 5, no_access = 15 };

// What a user may do on the channel: authenticate, and message.
constexpr uint8_t access_bits = 0x70;
constexpr uint8_t messaging = 0x10;
constexpr uint8_t link_authentication = 0x20;

struct user {
    bytes name = bytes(name_size);
    bytes password = bytes(long_password); // zeros behind it
    size_t password_size = short_password; // as it was set
    bool enabled = false;
    uint8_t access = 0;
    uint8_t limit = no_access; // of privilege
};

bytes padded(const std::string &characters, size_t size)
{
    bytes field(characters.begin(), characters.end());
    field.resize(size);
    return field;
}

} // namespace

// Numbered from 1. The first has no name, by which it can log in without one.
class user_list
{
  public:
    user_list() { reset(); }

    void reset()
    {
        users_ = {};
        constexpr uint8_t first_named = 2;
        at(first_named) = {padded("admin", name_size),
                           padded("changeme", long_password),
                           short_password,
                           true,
                           messaging | link_authentication,
                           administrator};
    }

    bytes set_access(const bytes &request)
    {
        constexpr uint8_t change_access = 0x80;
        demand_channel(request[0]);
        user &changed = at(request[1]);
        const auto limit = static_cast<uint8_t>(request[2] & 0x0F);
        refuse_if((limit < callback || limit > oem) && limit != no_access, invalid_field);
        changed.limit = limit;
        if (request[0] & change_access)
            changed.access = request[0] & access_bits;
        return success();
    }

    bytes get_access(const bytes &request) const
    {
        constexpr int is_enabled = 0x40;
        constexpr int is_disabled = 0x80;
        constexpr int with_fixed_names = 1;
        demand_channel(request[0]);
        const user &asked = at(request[1]);
        const auto enabled = std::count_if(users_.begin(), users_.end(),
                                           [](const user &each) { return each.enabled; });
        return success(static_cast<int>(user_count),
                       (asked.enabled ? is_enabled : is_disabled) | static_cast<int>(enabled),
                       with_fixed_names, asked.access | asked.limit);
    }

    bytes set_name(const bytes &request)
    {
        user &named = at(request[0]);
        refuse_if(&named == &users_.front(), invalid_field);
        named.name.assign(request.begin() + 1, request.end());
        return success();
    }

    bytes get_name(const bytes &request) const { return success(at(request[0]).name); }

    // Who is meant, with a bit that says which of two lengths the password has; what to do; the
    // password, which enabling and disabling may go without.
    bytes set_password(const bytes &request)
    {
        enum operation : uint8_t { disable, enable, set, test };
        constexpr uint8_t is_long = 0x80;
        constexpr size_t head = 2;
        user &changed = at(request[0]);
        const size_t size = (request[0] & is_long) != 0 ? long_password : short_password;
        const int asked = request[1] & 0x03;
        const bool may_go_without = asked == disable || asked == enable;
        refuse_if(request.size() != head + size && !(may_go_without && request.size() == head),
                  wrong_request_length);

        bytes password(request.begin() + head, request.end());
        password.resize(long_password);
        if (asked == set) {
            changed.password = password;
            changed.password_size = size;
        } else if (asked == test) {
            refuse_if(size != changed.password_size, wrong_password_size);
            refuse_if(password != changed.password, wrong_password);
        } else {
            changed.enabled = asked == enable;
        }
        return success();
    }

    // Whoever is enabled and has the password is let in, and nobody without one. Behind the
    // password there is room that nobody uses. The answer is a number for the login, and what its
    // user may do.
    bytes log_in(const bytes &request)
    {
        const bytes password(request.begin(), request.begin() + long_password);
        const auto found = std::find_if(users_.begin(), users_.end(), [&](const user &each) {
            return each.enabled && each.limit != no_access && each.password == password;
        });
        refuse_if(found == users_.end() || password == bytes(long_password),
                  insufficient_privilege);
        return success(le32{++logins_}, found->limit);
    }

  private:
    static void demand_channel(uint8_t byte)
    {
        refuse_if((byte & channel_mask) != lan_channel, invalid_field);
    }

    static size_t index_of(uint8_t byte)
    {
        const size_t id = byte & id_mask;
        refuse_if(id == 0 || id > user_count, out_of_range);
        return id - 1;
    }

    user &at(uint8_t id) { return users_[index_of(id)]; }
    const user &at(uint8_t id) const { return users_[index_of(id)]; }

    std::array<user, user_count> users_;
    uint32_t logins_ = 0;
};

std::shared_ptr<user_list> make_users()
{
    return std::make_shared<user_list>();
}

void reset_to_defaults(user_list &users)
{
    users.reset();
}

command_table user_commands(const std::shared_ptr<user_list> &users)
{
    constexpr size_t login_size = 36;
    return {
        {netfn_app, 0x43, {3, 4}, on(users, &user_list::set_access)},
        {netfn_app, 0x44, 2, on(users, &user_list::get_access)},
        {netfn_app, 0x45, 1 + name_size, on(users, &user_list::set_name)},
        {netfn_app, 0x46, 1, on(users, &user_list::get_name)},
        {netfn_app, 0x47, {2, 2 + long_password}, on(users, &user_list::set_password)},
        {netfn_manager, 0x96, login_size, on(users, &user_list::log_in)},
    };
}

} // namespace chassisd::simulated
