#include "chassisd/simulated/defaults.h"

namespace chassisd::simulated
{

// The request is a bit for each part of the configuration that is to be reset.
command_table defaults_commands(std::shared_ptr<boot_options> boot,
                                std::shared_ptr<standard_parameters> lan,
                                std::shared_ptr<user_list> users)
{
    enum part : uint8_t { boot_part = 0x01, lan_part = 0x02, user_part = 0x04, all_parts = 0x07 };
    return {
        {netfn_manager, 0x21, 1,
         [=](const bytes &request) {
             refuse_if((request[0] & all_parts) == 0, invalid_field);
             if (request[0] & boot_part)
                 reset_to_defaults(*boot);
             if (request[0] & lan_part)
                 lan->reset();
             if (request[0] & user_part)
                 reset_to_defaults(*users);
             return success();
         }},
    };
}

} // namespace chassisd::simulated
