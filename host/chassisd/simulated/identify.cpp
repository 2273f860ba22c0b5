#include "chassisd/simulated/identify.h"

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

// The interval in seconds, of which 0 turns the LED off, and whether it is to be lit for good.
void identify(identify_state &state, const bytes &request, time_point now)
{
    constexpr uint8_t default_interval_s = 15;
    constexpr uint8_t force = 0x01;
    const uint8_t interval = request.empty() ? default_interval_s : request[0];
    const uint8_t flags = request.size() < 2 ? uint8_t{0} : request[1];
    refuse_if(flags & ~force, invalid_field);
    state = {flags == force, now + std::chrono::seconds(interval)};
}

} // namespace

identification identification_at(time_point now, const identify_state &state)
{
    if (state.forced)
        return identified;
    return now < state.until ? identified_for_a_while : not_identified;
}

command_table identify_commands(const environment &env, std::shared_ptr<identify_state> state)
{
    return {
        {netfn_chassis,
         0x04,
         {0, 2},
         [now = env.now, state](const bytes &request) {
             identify(*state, request, now());
             return success();
         }},
        {netfn_manager, 0x32, 0,
         [now = env.now, state](const bytes &) {
             return success(identification_at(now(), *state));
         }},
    };
}

} // namespace chassisd::simulated
