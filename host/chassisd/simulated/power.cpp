#include "chassisd/simulated/power.h"

#include <utility>

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

} // namespace

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

    bytes status(identification identified) const
    {
        constexpr uint8_t always_powers_up = 0x40;
        constexpr uint8_t tells_identification = 0x40;
        constexpr uint8_t panel_is_locked = 0x02; // as IPMI has it: both of these buttons are
        constexpr uint8_t lock_out = power_button | reset_button;
        return success(always_powers_up | (power_->on ? 0x01 : 0x00),
                       power_->by_command ? 0x10 : 0x00, // last power event
                       tells_identification | identified << 4 |
                           ((locked_ & lock_out) == lock_out ? panel_is_locked : 0x00),
                       all_buttons << 4 | locked_); // which can be locked, which are
    }

    bytes lock_buttons(const bytes &request)
    {
        refuse_if(request[0] & ~all_buttons, invalid_field);
        locked_ = request[0];
        return success();
    }

    // Bringing about what is so already is no event. What has no effect without power is refused.
    // What is done at once takes the place of what was still to come.
    bytes control(const bytes &request)
    {
        enum action : uint8_t { down, up, cycle, hard_reset, diagnostic_interrupt, soft_shutdown };
        switch (request[0]) {
        case down:
            due_.reset();
            turn_off();
            break;
        case up:
            if (!power_->on) {
                due_.reset();
                turn_on(now_());
                tell(blade_event::powered_on, unit_event(state | gone, is_off));
            }
            break;
        case cycle:
            refuse_if(!power_->on, not_in_this_state);
            power_->on = false;
            due_ = now_() + off_between;
            tell(blade_event::power_cycled, unit_event(state, was_cycled));
            break;
        case hard_reset:
            refuse_if(!power_->on, not_in_this_state);
            due_.reset();
            boot(now_());
            tell(blade_event::reset, system_event(0x1D, system_boot, state, by_hard_reset));
            break;
        case soft_shutdown:
            refuse_if(!power_->on, not_in_this_state);
            if (!due_)
                due_ = now_() + shutdown_duration;
            break;
        default: // a diagnostic interrupt among them: nothing runs here that it could stop
            throw refusal{invalid_field};
        }
        return success();
    }

    // Power that is on is to go off, by a shutdown, and power that is off to come back on, by a
    // cycle.
    bool catch_up()
    {
        if (!due_ || now_() < *due_)
            return false;
        const time_point when = *std::exchange(due_, std::nullopt);
        if (power_->on)
            turn_off();
        else
            turn_on(when);
        return true;
    }

    std::optional<time_point> next_change() const { return due_; }

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

    void turn_on(time_point when)
    {
        power_->on = true;
        power_->by_command = true;
        ++power_->times_turned_on;
        boot(when);
    }

    void boot(time_point when)
    {
        power_->booted = when;
        ++power_->boots;
    }

    const time_source now_;
    const std::shared_ptr<power_state> power_;
    const std::shared_ptr<event_log> log_;
    std::optional<time_point> due_; // when the power is to change by itself
    uint8_t locked_ = 0;            // buttons
};

std::shared_ptr<power_switch> make_power_switch(const environment &env,
                                                std::shared_ptr<power_state> power,
                                                std::shared_ptr<event_log> log)
{
    return std::make_shared<power_switch>(env.now, std::move(power), std::move(log));
}

bool catch_up(power_switch &controlled)
{
    return controlled.catch_up();
}

std::optional<time_point> next_change(const power_switch &controlled)
{
    return controlled.next_change();
}

command_table power_commands(const environment &env, std::shared_ptr<power_switch> controlled,
                             std::shared_ptr<const identify_state> identify)
{
    return {
        {netfn_chassis, 0x01, 0,
         [now = env.now, controlled, identify](const bytes &) {
             return controlled->status(identification_at(now(), *identify));
         }},
        {netfn_chassis, 0x02, 1, on(controlled, &power_switch::control)},
        {netfn_chassis, 0x0A, 1, on(controlled, &power_switch::lock_buttons)},
    };
}

} // namespace chassisd::simulated
