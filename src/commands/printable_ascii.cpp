// Text of a blade, in the encodings that controllers use, as printable ASCII.

#include <iterator>

#include "commands/wire.h"
#include "platform/log.h"
#include "ruk_ipmi/system_info.h"

using namespace ruk;

namespace
{

char printable(uint32_t character)
{
    return character >= 0x20 && character <= 0x7E ? static_cast<char>(character) : '*';
}

bool is_continuation(uint8_t byte)
{
    return (byte & 0xC0) == 0x80;
}

int refuse(const char *line)
{
    slog_elog(line, "UTF8_2_PrintableASCII");
    return -1;
}

} // namespace

int UTF8_2_PrintableASCII(const uint8_t *source, char *text, uint32_t text_size, uint32_t length)
{
    // What marks the lead byte behind 1, 2, ... continuation bytes, and the bits that it adds.
    struct lead_byte {
        uint8_t marks, bits;
    };
    static constexpr lead_byte lead_bytes[] = {
        {0xC0, 0x1F}, {0xE0, 0x0F}, {0xF0, 0x07}, {0xF8, 0x03}, {0xFC, 0x01}};
    constexpr uint32_t longest_run = std::size(lead_bytes);
    if (text_size < length)
        return refuse("%s(): Insufficient Buffer \n");
    memset(text, 0, text_size);
    char *next = text;
    for (uint32_t at = 0; at < length;) {
        uint32_t character = 0;
        uint32_t run = 0;
        if (source[at] < 0x80) {
            character = source[at];
        } else {
            // Continuation bytes come first, the least significant ahead.
            for (; at + run < length && is_continuation(source[at + run]); ++run)
                if (run < longest_run)
                    character |= static_cast<uint32_t>(source[at + run] & 0x3F) << 6 * run;
            if (run == 0 || run > longest_run || at + run == length)
                return refuse("%s () :ERROR Invalid UTF-8 Encoding \n");
            const lead_byte lead = lead_bytes[run - 1];
            const uint8_t byte = source[at + run];
            if ((byte & lead.marks) != lead.marks)
                return refuse("%s () :ERROR Invalid MSB Encoded UTF-8 Format\n");
            character |= static_cast<uint32_t>(byte & lead.bits) << 6 * run;
        }
        *next++ = printable(character);
        at += run + 1;
    }
    text[length] = '\0';
    return 0;
}

int Unicode16_2_PrintableASCII(char *text, uint32_t text_size, const uint8_t *source,
                               uint32_t length)
{
    const uint32_t units = length / 2;
    if (units >= text_size) {
        slog_elog("%s(): Failed,Insufficient Buffer  \n", "Unicode16_2_PrintableASCII");
        return -1;
    }
    memset(text, 0, text_size);
    for (size_t unit = 0; unit < units; ++unit)
        text[unit] = printable(load_le16(source + 2 * unit));
    text[text_size] = '\0';
    return 0;
}
