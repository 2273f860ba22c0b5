#include "cli/power_draw.h"

#include <cstring>

namespace cli
{

namespace
{

const request_name get_draw = {0x308F, "Blade Power Consumption"};

constexpr size_t size = 14; // completion code first

// The library has turned them to host byte order.
uint16_t word(const uint8_t *from)
{
    uint16_t value = 0;
    memcpy(&value, from, sizeof value);
    return value;
}

} // namespace

power_draw ask_power_draw(const blade &at)
{
    uint8_t answer[size] = {};
    call(get_draw, at, location_blade_power_consumption, answer);
    if (answer[size - 1] == 0)
        exchange(get_draw, at, {}, size - 1);
    return {word(answer + 1),  word(answer + 3), word(answer + 5), word(answer + 8),
            word(answer + 10), answer[7],        answer[12],       answer[13]};
}

} // namespace cli
