// What a blade draws. Only the blade can explain the numbers, so they are called by the places of
// their bytes in the answer.
#ifndef RUK_HOST_CLI_POWER_DRAW_H
#define RUK_HOST_CLI_POWER_DRAW_H

#include "cli/request.h"

namespace cli
{

struct power_draw {
    uint16_t word_1 = 0;
    uint16_t word_3 = 0; // as are those at 8 and 10, less what byte 12 says
    uint16_t word_5 = 0;
    uint16_t word_8 = 0;
    uint16_t word_10 = 0;
    uint8_t byte_7 = 0;
    uint8_t byte_12 = 0;
    uint8_t byte_13 = 0;
};

struct draw_word {
    const char *name;
    uint16_t power_draw::*value;
};

constexpr draw_word draw_words[] = {{"word_1", &power_draw::word_1},
                                    {"word_3", &power_draw::word_3},
                                    {"word_5", &power_draw::word_5},
                                    {"word_8", &power_draw::word_8},
                                    {"word_10", &power_draw::word_10}};

power_draw ask_power_draw(const blade &at);

} // namespace cli

#endif
