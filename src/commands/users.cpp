#include "ruk_ipmi/users.h"

#include "commands/short_command.h"

using namespace ruk;

namespace
{

enum password_operation : uint8_t { disable_user = 0, enable_user = 1, set_password = 2 };

} // namespace

int location_set_user_name(const blade_location *location, uint8_t user_id, const char *name,
                           uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    return command(location, 0x0645, user_id, text_field{name, 16}).fetch(out);
}

int set_user_name(int blade_num, uint8_t user_id, const char *name, uint8_t *out)
{
    return by_number<location_set_user_name>(blade_num, user_id, name, out);
}

int location_set_user_password(const blade_location *location, uint8_t user_id,
                               const char *password, uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    return command(location, 0x0647, user_id, set_password, text_field{password, 20}).fetch(out);
}

int set_user_password(int blade_num, uint8_t user_id, const char *password, uint8_t *out)
{
    return by_number<location_set_user_password>(blade_num, user_id, password, out);
}

int location_enable_disable_user(const blade_location *location, uint8_t user_id, uint32_t enable,
                                 uint8_t *out)
{
    if (enable > enable_user)
        return invalid_param();
    return short_command(location, 0x0647, user_id, enable == 0 ? disable_user : enable_user)
        .fetch(out);
}

int enable_disable_user(int blade_num, uint8_t user_id, uint32_t enable, uint8_t *out)
{
    return by_number<location_enable_disable_user>(blade_num, user_id, enable, out);
}

int location_set_user_access(const blade_location *location, uint8_t user_id,
                             uint8_t privilege_limit, uint8_t session_limit, uint8_t *out)
{
    constexpr uint8_t channel_1_access_unchanged = 0x01;
    return short_command(location, 0x0643, channel_1_access_unchanged, user_id, privilege_limit,
                         session_limit)
        .fetch(out);
}

int set_user_access(int blade_num, uint8_t user_id, uint8_t privilege_limit, uint8_t session_limit,
                    uint8_t *out)
{
    return by_number<location_set_user_access>(blade_num, user_id, privilege_limit, session_limit,
                                               out);
}
