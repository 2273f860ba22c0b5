// Texts of the system information, which travel in numbered blocks of 16 bytes. The first block is
// headed by the text's encoding and length.
#ifndef RUK_HOST_CHASSISD_SIMULATED_INFO_TEXT_H
#define RUK_HOST_CHASSISD_SIMULATED_INFO_TEXT_H

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

enum encoding : uint8_t { ascii = 0, utf_8 = 1, utf_16 = 2 };

struct info_text {
    uint8_t encoding = ascii;
    bytes characters;
};

info_text ascii_text(const std::string &characters);

// The controller has the bytes of a character least significant first, the lead byte last.
info_text utf_8_text(const std::string &characters);

// Of characters that one byte holds.
info_text utf_16_text(const std::string &characters);

// How many characters the first block has room for, in most texts.
constexpr size_t usual_first_block = 14;

// The first block begins a text, zeros where its others are to come. A block may be longer than the
// text has bytes for it; where it is shorter, what there is stays.
void write_block(info_text &text, size_t number, const bytes &block, size_t first_block);

// Zeros where the text ends.
bytes read_block(const info_text &text, size_t number, size_t first_block);

} // namespace chassisd::simulated

#endif
