#include "chassisd/simulated/info_text.h"

namespace chassisd::simulated
{

namespace
{

constexpr size_t block_size = 16;
constexpr size_t head_size = 2; // of the first block: the encoding, the length

size_t start_of(size_t number, size_t first_block)
{
    return number == 0 ? 0 : first_block + block_size * (number - 1);
}

void overlay(bytes &characters, size_t at, const bytes &block)
{
    const size_t count = std::min(block.size(), characters.size() - at);
    std::copy_n(block.begin(), count, characters.begin() + static_cast<std::ptrdiff_t>(at));
}

bool is_continuation(char byte)
{
    return (static_cast<uint8_t>(byte) & 0xC0) == 0x80;
}

} // namespace

info_text ascii_text(const std::string &characters)
{
    return {ascii, {characters.begin(), characters.end()}};
}

info_text utf_8_text(const std::string &characters)
{
    info_text text{utf_8, {}};
    for (auto lead = characters.begin(); lead != characters.end();) {
        const auto next = std::find_if_not(lead + 1, characters.end(), is_continuation);
        std::reverse_copy(lead, next, std::back_inserter(text.characters));
        lead = next;
    }
    return text;
}

info_text utf_16_text(const std::string &characters)
{
    info_text text{utf_16, {}};
    for (const char character : characters)
        append(text.characters, le16(static_cast<uint8_t>(character)));
    return text;
}

void write_block(info_text &text, size_t number, const bytes &block, size_t first_block)
{
    if (number == 0) {
        refuse_if(block.size() < head_size || block.size() > head_size + first_block,
                  wrong_request_length);
        refuse_if(block[0] > utf_16, invalid_field);
        text = {block[0], bytes(block[1])};
        overlay(text.characters, 0, {block.begin() + head_size, block.end()});
    } else {
        const size_t start = start_of(number, first_block);
        refuse_if(block.empty() || block.size() > block_size, wrong_request_length);
        refuse_if(start >= text.characters.size(), out_of_range);
        overlay(text.characters, start, block);
    }
}

bytes read_block(const info_text &text, size_t number, size_t first_block)
{
    const size_t length = text.characters.size();
    const size_t start = start_of(number, first_block);
    const size_t size = number == 0 ? first_block : block_size;
    refuse_if(number != 0 && start >= length, out_of_range);
    bytes block = stretch_up_to(text.characters, start, size);
    block.resize(size);
    return number == 0 ? record_of(text.encoding, static_cast<int>(length), block) : block;
}

} // namespace chassisd::simulated
