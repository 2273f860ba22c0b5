#include "chassisd/simulated/power.h"

#include "chassisd/simulated/system_event.h"

namespace chassisd::simulated
{

namespace
{

// What the power unit's sensor tells besides being on.
enum power_event : uint8_t { is_off = 0x00, was_cycled = 0x01 };

// Buttons of the front panel that can be locked, a bit each.
enum button : uint8_t { power_button = 0x01, reset_button = 0x02, all_buttons = 0x0F };

constexpr uint8_t by_hard_reset = 0x01; // why the system booted

class power_switch
{
  public:
    power_switch(time_source now, std::shared_ptr<power_state> power,
                 std::shared_ptr<event_log> log)
        : now_(std::move(now)),
          power_(std::move(power)),
          log_(std::move(log))
    {
    }

    bytes status() const
    {
        constexpr uint8_t always_powers_up = 0x40;
        constexpr uint8_t panel_is_locked = 0x02; // as IPMI has it: both of these buttons are
        constexpr uint8_t lock_out = power_button | reset_button;
        return success(always_powers_up | (power_->on ? 0x01 : 0x00),
                       power_->by_command ? 0x10 : 0x00, // last power event
                       (locked_ & lock_out) == lock_out ? panel_is_locked : 0x00,
                       all_buttons << 4 | locked_); // which can be locked, which are
    }

    bytes lock_buttons(const bytes &request)
    {
        refuse_if(request[0] & ~all_buttons, invalid_field);
        locked_ = request[0];
        return success();
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
            boot_by_command();
            tell(blade_event::power_cycled, unit_event(state, was_cycled));
            break;
        case hard_reset:
            refuse_if(!power_->on, not_in_this_state);
            power_->booted = now_();
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
        boot_by_command();
        tell(blade_event::powered_on, unit_event(state | gone, is_off));
    }

    void boot_by_command() { *power_ = {true, true, now_()}; }

    const time_source now_;
    const std::shared_ptr<power_state> power_;
    const std::shared_ptr<event_log> log_;
    uint8_t locked_ = 0; // buttons
};

} // namespace

command_table power_commands(const environment &env, std::shared_ptr<power_state> power,
                             std::shared_ptr<event_log> log)
{
    const auto controlled =
        std::make_shared<power_switch>(env.now, std::move(power), std::move(log));
    return {
        {netfn_chassis, 0x01, 0, on(controlled, &power_switch::status)},
        {netfn_chassis, 0x02, 1, on(controlled, &power_switch::control)},
        {netfn_chassis, 0x0A, 1, on(controlled, &power_switch::lock_buttons)},
    };
}

} // namespace chassisd::simulated
