#include "chassisd/simulated/budget.h"

#include <utility>

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

// Whole and ten thousandths, 16 bits each; then two bytes and ten more that mean nothing here.
bytes set_efficiency(budget_state &budget, const bytes &request)
{
    constexpr unsigned one = 10000;
    const unsigned whole = ruk::load_le16(&request[0]);
    const unsigned fraction = ruk::load_le16(&request[2]);
    refuse_if(fraction >= one, out_of_range);
    const unsigned efficiency = whole * one + fraction;
    refuse_if(efficiency == 0 || efficiency > one, out_of_range);
    budget.efficiency = static_cast<uint16_t>(efficiency);
    return success();
}

// The result, why there is none, and the watts that are granted with it; then a warning and, from
// newer chassis, another reason. The result comes back.
bytes allocate(budget_state &budget, const bytes &request)
{
    constexpr uint8_t granted = 0;
    budget.allocated_w = request[0] == granted ? ruk::load_le16(&request[2]) : uint16_t{0};
    return success(request[0]);
}

// Requests that throttle, and the one that tells the fans' status, have two idle bytes behind
// theirs.
uint8_t percentage(const bytes &request)
{
    refuse_if(request[0] > 100, out_of_range);
    return request[0];
}

// In percent: the warmer the air that comes in, the faster.
int requested_fan_speed(const sensor_set &sensors, const power_state &power)
{
    constexpr int slowest = 20;
    constexpr int from_celsius = 15;
    constexpr int per_degree = 4;
    const int inlet = reading_of(sensors, inlet_temperature);
    return power.on ? std::clamp(slowest + (inlet - from_celsius) * per_degree, slowest, 100) : 0;
}

} // namespace

command_table budget_commands(const std::shared_ptr<budget_state> &budget,
                              std::shared_ptr<const sensor_set> sensors,
                              std::shared_ptr<const power_state> power)
{
    return {
        {netfn_manager, 0xC0, 16,
         [budget](const bytes &request) { return set_efficiency(*budget, request); }},
        {netfn_manager,
         0x87,
         {5, 6},
         [budget](const bytes &request) { return allocate(*budget, request); }},
        {netfn_manager, 0x8B, 3,
         [budget](const bytes &request) {
             const uint8_t before = std::exchange(budget->cpu_throttle, percentage(request));
             return success(budget->cpu_throttle, before);
         }},
        {netfn_manager, 0x8C, 0,
         [budget, sensors = std::move(sensors), power = std::move(power)](const bytes &) {
             return success(requested_fan_speed(*sensors, *power), budget->fan_status);
         }},
        {netfn_manager, 0x95, 3,
         [budget](const bytes &request) {
             budget->fan_status = request[0];
             return success(budget->fan_status);
         }},
        {netfn_manager, 0x9A, 3,
         [budget](const bytes &request) {
             budget->memory_throttle = percentage(request);
             return success();
         }},
    };
}

} // namespace chassisd::simulated
