// The system boot options: how the system is to boot next, and what is known of it.
#ifndef RUK_HOST_CHASSISD_SIMULATED_BOOT_OPTIONS_H
#define RUK_HOST_CHASSISD_SIMULATED_BOOT_OPTIONS_H

#include "chassisd/simulated/power.h"

namespace chassisd::simulated
{

class boot_options;

std::shared_ptr<boot_options> make_boot_options(std::shared_ptr<const power_state> power);

void reset_to_defaults(boot_options &options);

command_table boot_options_commands(const std::shared_ptr<boot_options> &options);

} // namespace chassisd::simulated

#endif
