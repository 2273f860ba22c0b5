#include "chassisd/simulated/controller.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

#include "chassisd/simulated/app.h"
#include "chassisd/simulated/file_transfer.h"
#include "chassisd/simulated/fru.h"
#include "chassisd/simulated/hardware.h"
#include "chassisd/simulated/imc_event.h"
#include "chassisd/simulated/lldp.h"
#include "chassisd/simulated/power.h"
#include "chassisd/simulated/sdr.h"
#include "chassisd/simulated/sel.h"
#include "chassisd/simulated/sensors.h"
#include "chassisd/simulated/settings.h"
#include "chassisd/simulated/sled_switch.h"

namespace chassisd
{

using namespace simulated;

namespace
{

// Every family of commands that the controller knows.
std::vector<command_table> all_families(environment env)
{
    const std::shared_ptr<imc_event> last_event = make_imc_event();
    env.alert = kept_by(last_event, std::move(env.alert));
    const std::shared_ptr<event_log> log = make_event_log(env);
    const auto power = std::make_shared<power_state>();
    return {
        app_commands(env),
        power_commands(env, power, log),
        sensor_commands(env, log, power),
        sel_commands(log),
        sdr_commands(env),
        fru_commands(env),
        hardware_commands(env, power),
        settings_commands(),
        sled_switch_commands(),
        parameter_commands({
            hardware_parameters(),
            settings_parameters(),
            sled_switch_parameters(env),
            file_transfer_parameters(env),
            lldp_parameters(),
            imc_event_parameters(last_event),
        }),
    };
}

class controller final : public blade
{
  public:
    explicit controller(const environment &env)
    {
        for (const command_table &family : all_families(env))
            for (const command &row : family)
                if (!commands_.emplace(std::pair(row.netfn, row.number), row).second)
                    throw std::logic_error("two families of the simulated blade answer a command");
    }

    answer execute(const request &request) override { return {0, dispatch(request)}; }

  private:
    bytes dispatch(const request &request) const
    {
        const auto found = commands_.find({request.netfn, request.command});
        if (found == commands_.end())
            return {invalid_command};
        if (request.lun != 0)
            return {invalid_for_lun};
        const command &command = found->second;
        if (!command.request.include(request.data.size()))
            return {wrong_request_length};
        try {
            return command.handle(request.data);
        } catch (const refusal &refused) {
            return {refused.code};
        }
    }

    std::map<std::pair<uint8_t, uint8_t>, command> commands_; // by network function and number
};

// The configured name in characters that every FRU and SDR field can hold, or one that tells where
// the blade sits.
std::string display_name(std::string configured, uint8_t slot, uint8_t sub_slot)
{
    if (configured.empty())
        return "Blade " + std::to_string(slot) +
               (sub_slot == 0 ? "" : "." + std::to_string(sub_slot));
    const auto printable = [](char c) { return c >= ' ' && c <= '~'; };
    std::replace_if(configured.begin(), configured.end(), std::not_fn(printable), '?');
    return configured;
}

} // namespace

time_source free_running_clock()
{
    using namespace std::chrono;
    return [set_to = system_clock::now(), set_at = steady_clock::now()] {
        return set_to + duration_cast<system_clock::duration>(steady_clock::now() - set_at);
    };
}

std::unique_ptr<blade> make_simulated_blade(const simulated_config &config, uint8_t slot,
                                            uint8_t sub_slot, event_sink alert, time_source now)
{
    return std::make_unique<controller>(
        environment{display_name(config.name, slot, sub_slot), slot, sub_slot, config.sel_entries,
                    config.older_controller, std::move(now), std::move(alert)});
}

} // namespace chassisd
