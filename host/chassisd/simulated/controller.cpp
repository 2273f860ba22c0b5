#include "chassisd/simulated/controller.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

#include "chassisd/simulated/alerts.h"
#include "chassisd/simulated/app.h"
#include "chassisd/simulated/boot_options.h"
#include "chassisd/simulated/budget.h"
#include "chassisd/simulated/consumption.h"
#include "chassisd/simulated/defaults.h"
#include "chassisd/simulated/extended.h"
#include "chassisd/simulated/features.h"
#include "chassisd/simulated/file_transfer.h"
#include "chassisd/simulated/fru.h"
#include "chassisd/simulated/hardware.h"
#include "chassisd/simulated/identify.h"
#include "chassisd/simulated/imc_event.h"
#include "chassisd/simulated/information.h"
#include "chassisd/simulated/lan.h"
#include "chassisd/simulated/lldp.h"
#include "chassisd/simulated/power.h"
#include "chassisd/simulated/sdr.h"
#include "chassisd/simulated/sel.h"
#include "chassisd/simulated/sensors.h"
#include "chassisd/simulated/settings.h"
#include "chassisd/simulated/sled_switch.h"
#include "chassisd/simulated/staging.h"
#include "chassisd/simulated/status.h"
#include "chassisd/simulated/system_info.h"
#include "chassisd/simulated/users.h"

namespace chassisd
{

using namespace simulated;

namespace
{

struct controller_parts {
    std::vector<command_table> families; // every one that the controller knows
    std::shared_ptr<power_switch> power; // which changes by itself, too
    std::shared_ptr<power_meter> meter;  // which looks on
};

controller_parts all_parts(environment env)
{
    const std::shared_ptr<imc_event> last_event = make_imc_event();
    const std::shared_ptr<alert_history> alerts = make_alert_history();
    env.alert = kept_by(alerts, kept_by(last_event, std::move(env.alert)));
    const std::shared_ptr<event_log> log = make_event_log(env);
    const auto power = std::make_shared<power_state>();
    const std::shared_ptr<power_switch> controlled = make_power_switch(env, power, log);
    const auto identify = std::make_shared<identify_state>();
    const std::shared_ptr<sensor_set> sensors = make_sensors(env, log, power);
    const auto budget = std::make_shared<budget_state>();
    const std::shared_ptr<power_meter> meter = make_power_meter(env, sensors);
    const std::shared_ptr<boot_options> boot = make_boot_options(power);
    const auto lan = std::make_shared<standard_parameters>(default_lan(env));
    const std::shared_ptr<user_list> users = make_users();
    const std::vector<command_table> families = {
        app_commands(env),
        metered(meter, power_commands(env, controlled, identify)),
        identify_commands(env, identify),
        boot_options_commands(boot),
        lan_commands(lan),
        user_commands(users),
        defaults_commands(boot, lan, users),
        metered(meter, sensor_commands(sensors)),
        budget_commands(budget, sensors, power),
        consumption_commands(meter, budget, power),
        sel_commands(log),
        sdr_commands(env),
        fru_commands(env),
        hardware_commands(env, power),
        settings_commands(),
        information_commands(mac_map_handler()),
        alert_commands(env, alerts, log, power),
        status_commands(env, power),
        staging_commands(),
        extended_commands(),
        feature_commands(env, lan, budget, power),
        system_info_commands(env),
        parameter_commands({
            hardware_parameters(),
            settings_parameters(),
            sled_switch_parameters(env),
            file_transfer_parameters(env),
            lldp_parameters(),
            imc_event_parameters(last_event),
        }),
    };
    return {families, controlled, meter};
}

class controller final : public blade
{
  public:
    explicit controller(const environment &env) : controller(env.now, all_parts(env)) {}

    answer execute(const request &request) override
    {
        catch_up_with_time();
        return {0, dispatch(request)};
    }

    bool answers_at_once() const override { return true; }

    void idle() override { catch_up_with_time(); }

    std::chrono::milliseconds idle_period() const override
    {
        using namespace std::chrono;
        const std::optional<time_point> next = next_change(*power_);
        if (!next)
            return {};
        return std::max(milliseconds(1), ceil<milliseconds>(*next - now_()));
    }

  private:
    controller(time_source now, controller_parts parts)
        : now_(std::move(now)),
          power_(std::move(parts.power)),
          meter_(std::move(parts.meter))
    {
        for (const command_table &family : parts.families)
            for (const command &row : family)
                if (!commands_.emplace(std::pair(row.netfn, row.number), row).second)
                    throw std::logic_error("two families of the simulated blade answer a command");
    }

    void catch_up_with_time()
    {
        if (catch_up(*power_))
            sample(*meter_);
    }

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

    const time_source now_;
    const std::shared_ptr<power_switch> power_;
    const std::shared_ptr<power_meter> meter_;
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
