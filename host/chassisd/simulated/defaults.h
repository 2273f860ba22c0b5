// Setting the blade's configuration back to what it was when the blade was new.
#ifndef RUK_HOST_CHASSISD_SIMULATED_DEFAULTS_H
#define RUK_HOST_CHASSISD_SIMULATED_DEFAULTS_H

#include "chassisd/simulated/boot_options.h"
#include "chassisd/simulated/standard_parameter.h"
#include "chassisd/simulated/users.h"

namespace chassisd::simulated
{

command_table defaults_commands(std::shared_ptr<boot_options> boot,
                                std::shared_ptr<standard_parameters> lan,
                                std::shared_ptr<user_list> users);

} // namespace chassisd::simulated

#endif
