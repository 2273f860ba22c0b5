#include "chassisd/simulated/consumption.h"

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

uint32_t input_watts(const sensor_set &sensors)
{
    constexpr uint32_t watts_per_count = 2;
    return watts_per_count * reading_of(sensors, input_power);
}

} // namespace

class power_meter
{
  public:
    power_meter(time_source now, std::shared_ptr<const sensor_set> sensors)
        : now_(std::move(now)),
          sensors_(std::move(sensors))
    {
        reset();
    }

    void reset()
    {
        since_ = sampled_ = now_();
        present_ = minimum_ = maximum_ = input_watts(*sensors_);
        energy_mj_ = 0;
    }

    void sample()
    {
        const uint64_t elapsed = elapsed_ms(sampled_, now_());
        energy_mj_ += present_ * elapsed;
        sampled_ += std::chrono::milliseconds(elapsed); // what is less than one counts next time
        present_ = input_watts(*sensors_);
        minimum_ = std::min(minimum_, present_);
        maximum_ = std::max(maximum_, present_);
    }

    // As it was sampled last, as is the record.
    uint32_t present() const { return present_; }
    uint32_t minimum() const { return minimum_; }
    uint32_t maximum() const { return maximum_; }

    // The request's two bytes choose nothing: there is one record.
    bytes record(const budget_state &budget) const
    {
        constexpr uint64_t mj_per_kj = 1000000;
        constexpr uint64_t ms_per_minute = 60000;
        const uint64_t elapsed = elapsed_ms(since_, sampled_);
        const uint64_t average = elapsed == 0 ? present_ : energy_mj_ / elapsed;
        return success(le32{present_}, le32{minimum_}, le32{maximum_},
                       le32{static_cast<uint32_t>(average)}, le16(budget.allocated_w),
                       le32{static_cast<uint32_t>(energy_mj_ / mj_per_kj)},
                       le16(std::min<uint64_t>(elapsed / ms_per_minute, UINT16_MAX)));
    }

  private:
    static uint64_t elapsed_ms(time_point from, time_point to)
    {
        using namespace std::chrono;
        return static_cast<uint64_t>(duration_cast<milliseconds>(to - from).count());
    }

    const time_source now_;
    const std::shared_ptr<const sensor_set> sensors_;
    time_point since_;
    time_point sampled_;
    uint32_t present_ = 0; // watts, as are the next two
    uint32_t minimum_ = 0;
    uint32_t maximum_ = 0;
    uint64_t energy_mj_ = 0;
};

namespace
{

// In watts. Three of the numbers come higher by the meter's own draw, which readers take off them
// again.
bytes present_power(const power_meter &meter, const budget_state &budget, const power_state &power)
{
    constexpr uint32_t meter_draw = 20;
    const uint32_t from_supplies = meter.present() * 10000 / budget.efficiency;
    const bool throttled = budget.cpu_throttle != 0 || budget.memory_throttle != 0;
    return success(le16(budget.allocated_w),                            //
                   le16(meter.present() + meter_draw),                  //
                   le16(std::min<uint32_t>(from_supplies, UINT16_MAX)), //
                   throttled,                                           //
                   le16(meter.minimum() + meter_draw),                  //
                   le16(meter.maximum() + meter_draw),                  //
                   static_cast<int>(meter_draw), power.on);
}

} // namespace

std::shared_ptr<power_meter> make_power_meter(const environment &env,
                                              std::shared_ptr<const sensor_set> sensors)
{
    return std::make_shared<power_meter>(env.now, std::move(sensors));
}

void sample(power_meter &meter)
{
    meter.sample();
}

command_table metered(const std::shared_ptr<power_meter> &meter, command_table commands)
{
    for (command &each : commands)
        each.handle = [meter, handle = std::move(each.handle)](const bytes &request) {
            bytes answer = handle(request);
            sample(*meter);
            return answer;
        };
    return commands;
}

command_table consumption_commands(const std::shared_ptr<power_meter> &meter,
                                   std::shared_ptr<const budget_state> budget,
                                   std::shared_ptr<const power_state> power)
{
    return {
        {netfn_manager, 0x8F, 0,
         [=](const bytes &) {
             sample(*meter);
             return present_power(*meter, *budget, *power);
         }},
        {netfn_manager, 0x9B, 0,
         [power](const bytes &) {
             return success(static_cast<int>(std::min<uint32_t>(power->times_turned_on, 0xFF)));
         }},
        {netfn_manager, 0x9C, 2,
         [=](const bytes &) {
             sample(*meter);
             return meter->record(*budget);
         }},
        {netfn_manager, 0x9D, 3,
         [meter](const bytes &) {
             meter->reset();
             return success();
         }},
    };
}

} // namespace chassisd::simulated
