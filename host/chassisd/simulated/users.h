// The users of the blade: their names, passwords and privileges.
#ifndef RUK_HOST_CHASSISD_SIMULATED_USERS_H
#define RUK_HOST_CHASSISD_SIMULATED_USERS_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

class user_list;

std::shared_ptr<user_list> make_users();

void reset_to_defaults(user_list &users);

command_table user_commands(const std::shared_ptr<user_list> &users);

} // namespace chassisd::simulated

#endif
