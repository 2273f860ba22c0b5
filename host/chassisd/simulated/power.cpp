#include "chassisd/simulated/power.h"

#include "chassisd/simulated/system_event.h"

namespace chassisd::simulated
{

namespace
{

// What the power unit's sensor tells besides being on.
enum power_event : uint8_t { is_off = 0x00, was_cycled = 0x01 };

constexpr uint8_t by_hard_reset = 0x01; // why the system booted

class power_switch
{
  public:
    power_switch(std::shared_ptr<power_state> power, std::shared_ptr<event_log> log)
        : power_(std::move(power)),
          log_(std::move(log))
    {
    }

    bytes status() const
    {
        constexpr uint8_t always_powers_up = 0x40;
        return success(always_powers_up | (power_->on ? 0x01 : 0x00),
                       power_->by_command ? 0x10 : 0x00, // last power event
                       0x00);                            // nothing locked, nothing failed
    }

    // Bringing about what is so already is no event. What has no effect without power is refused.
    bytes control(const bytes &request)
    {
        enum action : uint8_t { down, up, cycle, hard_reset, diagnostic_interrupt, soft_shutdown };
        switch (request[0]) {
        case down:
            turn_off();
            break;
        case up:
            turn_on();
            break;
        case cycle:
            refuse_if(!power_->on, not_in_this_state);
            power_->by_command = true;
            tell(blade_event::power_cycled, unit_event(state, was_cycled));
            break;
        case hard_reset:
            refuse_if(!power_->on, not_in_this_state);
            tell(blade_event::reset, system_event(0x1D, system_boot, state, by_hard_reset));
            break;
        case soft_shutdown:
            refuse_if(!power_->on, not_in_this_state);
            turn_off();
            break;
        default: // a diagnostic interrupt among them: nothing runs here that it could stop
            throw refusal{invalid_field};
        }
        return success();
    }

  private:
    static bytes unit_event(int type, power_event event)
    {
        return system_event(0x09, power_unit, type, event);
    }

    void tell(blade_event event, const bytes &record) { report(*log_, event, record); }

    void turn_off()
    {
        if (!power_->on)
            return;
        power_->on = false;
        tell(blade_event::powered_off, unit_event(state, is_off));
    }

    void turn_on()
    {
        if (power_->on)
            return;
        *power_ = {true, true};
        tell(blade_event::powered_on, unit_event(state | gone, is_off));
    }

    const std::shared_ptr<power_state> power_;
    const std::shared_ptr<event_log> log_;
};

} // namespace

command_table power_commands(std::shared_ptr<power_state> power, std::shared_ptr<event_log> log)
{
    const auto controlled = std::make_shared<power_switch>(std::move(power), std::move(log));
    return {
        {netfn_chassis, 0x01, 0, on(controlled, &power_switch::status)},
        {netfn_chassis, 0x02, 1, on(controlled, &power_switch::control)},
    };
}

} // namespace chassisd::simulated
