#include "chassisd/simulated/features.h"

namespace chassisd::simulated
{

namespace
{

// Sub-functions of the queries that share a command.
enum query : uint8_t { status_query = 0x12, rebrand_query = 0x14 };

// What the chassis manager told: a value of six bytes and a block of eight.
class told_features
{
  public:
    // A version, whether value and block were told, and how the block begins.
    bytes info() const
    {
        constexpr int version = 1;
        constexpr int has_value = 0x01;
        constexpr int has_block = 0x02;
        return success(version, (value_told_ ? has_value : 0) | (block_told_ ? has_block : 0),
                       stretch(block_, 0, 4));
    }

    // The value stands behind two zeros, and zeros behind it.
    bytes tell_value(const bytes &request)
    {
        constexpr size_t value_at = 2;
        constexpr size_t value_size = 6;
        const bytes value = stretch(request, value_at, value_size);
        refuse_if(request != record_of(bytes(value_at), value,
                                       bytes(request.size() - value_at - value_size)),
                  invalid_field);
        value_told_ = true;
        return success();
    }

    bytes tell_block(const bytes &block)
    {
        block_ = block;
        block_told_ = true;
        return success();
    }

  private:
    bytes block_ = bytes(8);
    bool value_told_ = false;
    bool block_told_ = false;
};

// The blade was found; where it is; its address and how it came by it.
bytes discovery(const environment &env, const standard_parameters &lan, const bytes &request)
{
    constexpr int is_enabled = 1;
    constexpr int was_found = 1;
    refuse_if(request[0] != status_query, invalid_field);
    return success(is_enabled, was_found, env.slot, env.sub_slot, lan.get(lan_address),
                   lan.get(lan_address_source));
}

// Behind the sub-function asked for there is a zero: what follows is there to be read.
bytes power_management(const environment &env, const budget_state &budget, const power_state &power,
                       const bytes &request)
{
    constexpr int is_on = 0x01;
    constexpr int cpu_is_throttled = 0x02;
    constexpr int memory_is_throttled = 0x04;
    constexpr size_t rebrand_size = 15;
    bytes rebrand(env.name.begin(), env.name.end());
    rebrand.resize(rebrand_size);
    switch (request[0]) {
    case status_query:
        return success(status_query, 0x00,
                       (power.on ? is_on : 0) | (budget.cpu_throttle ? cpu_is_throttled : 0) |
                           (budget.memory_throttle ? memory_is_throttled : 0));
    case rebrand_query:
        return success(rebrand_query, 0x00, rebrand);
    default:
        throw refusal{invalid_field};
    }
}

} // namespace

command_table feature_commands(const environment &env,
                               std::shared_ptr<const standard_parameters> lan,
                               std::shared_ptr<const budget_state> budget,
                               std::shared_ptr<const power_state> power)
{
    const auto told = std::make_shared<told_features>();
    return {
        {netfn_manager, 0xBD, 0, on(told, &told_features::info)},
        {netfn_manager, 0xC9, 32, on(told, &told_features::tell_value)},
        {netfn_manager, 0xC3, 8, on(told, &told_features::tell_block)},
        {netfn_manager, 0xA3, 1,
         [env, lan](const bytes &request) { return discovery(env, *lan, request); }},
        {netfn_manager, 0xA9, 4,
         [env, budget, power](const bytes &request) {
             return power_management(env, *budget, *power, request);
         }},
    };
}

} // namespace chassisd::simulated
