#include "ruk_ipmi/system_info.h"

#include <algorithm>
#include <cstddef>

#include "commands/frame.h"

using namespace ruk;

static_assert(sizeof(sys_info_value) == 259 && offsetof(sys_info_value, value) == 3);
static_assert(sizeof(sys_info_param) == 261 && offsetof(sys_info_param, length) == 5 &&
              offsetof(sys_info_param, data) == 6);

namespace
{

constexpr uint32_t set_system_info = 0x0658;
constexpr uint32_t get_system_info = 0x0659;

// How the value of a parameter travels.
enum class layout {
    blocks,         // a text: the first block with its length, then 16 bytes with each
    counted_blocks, // the same with a counter of the blocks besides
    oem,            // one block: bytes behind their count
    plain,          // one block: bytes alone
    counted,        // one block whose length is asked for first
    sets,           // a value for each of several sets
    unknown
};

bool is_among(uint8_t parameter, uint8_t first, uint8_t last)
{
    return first <= parameter && parameter <= last;
}

// Of those that are read and written alike.
layout common_layout(uint8_t parameter)
{
    if (parameter <= 0x02 || parameter == 0xD1 || is_among(parameter, 0xDC, 0xE0))
        return layout::blocks;
    if (parameter == 0xD0)
        return layout::counted_blocks;
    if (is_among(parameter, 0xC0, 0xC7))
        return layout::oem;
    return layout::unknown;
}

layout written_layout(uint8_t parameter)
{
    if (is_among(parameter, 0xF2, 0xF3))
        return layout::blocks;
    if (parameter == 0xE2 || parameter == 0xE5 || parameter == 0xFA)
        return layout::plain;
    return common_layout(parameter);
}

layout read_layout(uint8_t parameter)
{
    if (is_among(parameter, 0x03, 0x04))
        return layout::blocks;
    if (parameter == 0xDA)
        return layout::counted;
    if (is_among(parameter, 0xD4, 0xD5))
        return layout::sets;
    return common_layout(parameter);
}

constexpr uint32_t block_size = 16;

// What a text in blocks has before its first bytes, and how many of them the first block takes.
struct text_layout {
    uint32_t selector;         // byte of the request that counts the blocks
    uint32_t bytes;            // byte of the request where those of a later block are
    uint32_t length_of_answer; // byte of the first answer that tells the length
    uint32_t in_first;         // bytes of the text in the first block

    explicit text_layout(layout kind)
        : selector(kind == layout::counted_blocks ? 2 : 1),
          bytes(selector + 1),
          length_of_answer(selector + 3),
          in_first(block_size - 1 - selector)
    {
    }
};

} // namespace

// Writing.

int location_set_sys_info(const blade_location *location, uint8_t parameter, const uint8_t *value,
                          uint32_t length, uint8_t *out)
{
    if (!location || !out)
        return invalid_param();
    const layout kind = written_layout(parameter);
    const text_layout text(kind);
    command set(location, set_system_info, parameter);
    ipmi_request &request = set.request;
    uint32_t sent = length;
    switch (kind) {
    case layout::oem:
        append(request, static_cast<uint8_t>(length), block{value, length});
        break;
    case layout::plain:
        append(request, block{value, length});
        break;
    case layout::blocks:
    case layout::counted_blocks: // selectors, encoding and length before the first bytes
        sent = std::min(length, text.in_first);
        append(request, zeros{text.bytes}, static_cast<uint8_t>(length), block{value, sent});
        break;
    default:
        return invalid_param();
    }
    int result = set.exchange();
    while (sent < length) {
        if (set.refused())
            return result;
        const uint32_t count = std::min(length - sent, block_size);
        ++request.data[text.selector];
        memcpy(request.data + text.bytes, value + sent, count); // the request stays as long
        result = set.exchange();
        sent += count;
    }
    *out = set.response.data[0];
    return result;
}

int set_sys_info(int blade_num, uint8_t parameter, const uint8_t *value, uint32_t length,
                 uint8_t *out)
{
    return by_number<location_set_sys_info>(blade_num, parameter, value, length, out);
}

// Reading.

namespace
{

// Bytes of an answer before the value: two that are handed over as they are.
constexpr uint32_t answer_head = 2;

// A request for a parameter, and what its answers put together. Its request's bytes 1 to 3 are the
// parameter, the set selector and the block selector.
struct system_info_read : command {
    sys_info_value *out;

    system_info_read(const blade_location *location, uint8_t parameter, sys_info_value *into)
        : command(location, get_system_info, 0x00, parameter, 0x00, 0x00),
          out(into)
    {
    }

    uint8_t &set_selector() { return request.data[2]; }

    void begin_value(uint8_t length)
    {
        out->revision = response.data[0];
        out->set_selector = response.data[1];
        out->length = length;
    }

    // Keeps what fits the caller's record.
    void keep(uint32_t at, uint32_t from, uint32_t count)
    {
        constexpr uint32_t room = sizeof out->value; // an answer has more behind any `from`
        if (at < room)
            memcpy(out->value + at, response.data + from, std::min(count, room - at));
    }

    int read_text(layout kind)
    {
        const text_layout text(kind);
        const uint8_t total = response.data[text.length_of_answer];
        begin_value(total);
        uint32_t kept = std::min<uint32_t>(total, text.in_first);
        keep(0, text.length_of_answer + 1, kept);
        for (; kept < total; kept += block_size) {
            ++set_selector();
            if (const int result = exchange())
                return result;
            keep(kept, 3, block_size);
        }
        return 0;
    }

    // The second request tells the length that the first answer gave.
    int read_counted()
    {
        const uint8_t count = response.data[answer_head];
        begin_value(static_cast<uint8_t>(count + 1));
        request.data[4] = out->length;
        request.data[5] = count;
        const int result = exchange();
        if (result == 0)
            keep(0, answer_head, out->length);
        return result;
    }

    void read_one_block()
    {
        begin_value(static_cast<uint8_t>(response.data_len - answer_head));
        keep(0, answer_head, out->length);
    }

    // The first value's first byte tells how many sets there are.
    int read_sets()
    {
        const uint8_t sets = response.data[answer_head];
        read_one_block();
        uint32_t kept = out->length;
        for (uint32_t set = 2; set <= sets; ++set) {
            set_selector() = static_cast<uint8_t>(set);
            if (const int result = exchange())
                return result;
            const uint32_t count = std::max(response.data_len, answer_head) - answer_head;
            keep(kept, answer_head, count);
            kept += count;
            out->length = static_cast<uint8_t>(kept);
        }
        return 0;
    }

    int read_value(layout kind)
    {
        switch (kind) {
        case layout::oem:
            memcpy(out, response.data, std::min<size_t>(response.data_len, sizeof *out));
            return 0;
        case layout::blocks:
        case layout::counted_blocks:
            return read_text(kind);
        case layout::counted:
            return read_counted();
        case layout::sets:
            return read_sets();
        default:
            read_one_block();
            return 0;
        }
    }
};

// Makes the text of a value printable. That it could not all be converted only the log tells. Its
// own text is not to be on the stack while a blade is asked.
[[gnu::noinline]] void make_printable(sys_info_value *value, uint8_t encoding)
{
    static constexpr char name[] = "location_get_sys_info";
    constexpr uint32_t text_size = sizeof value->value;
    enum encodings : uint8_t { ascii = 0, utf_8 = 1, utf_16 = 2 };
    char text[text_size + 1] = {};
    switch (encoding) {
    case ascii:
        return;
    case utf_8:
        UTF8_2_PrintableASCII(value->value, text, text_size, value->length);
        slog_dlog("%s () UTF Resp Param %s \n", name, text);
        break;
    case utf_16:
        Unicode16_2_PrintableASCII(text, text_size, value->value, value->length);
        slog_dlog("%s () Unicode Resp Param %s \n", name, text);
        break;
    default:
        slog_dlog("%s(): Unhandled Character Encoding specified %d \n", name, encoding);
        return;
    }
    memcpy(value->value, text, text_size);
}

} // namespace

int location_get_sys_info(const blade_location *location, uint8_t parameter, sys_info_value *out)
{
    if (!location || !out)
        return invalid_param();
    *out = {};
    const layout kind = read_layout(parameter);
    system_info_read get(location, parameter, out);
    if (kind == layout::counted)
        append(get.request, le16{0});
    if (kind == layout::sets)
        get.set_selector() = 1;
    int result = get.exchange();
    if (result != 0)
        return result;
    const uint8_t encoding = get.response.data[3];
    result = get.read_value(kind);
    if (result == 0 && is_among(parameter, 0x01, 0x04))
        make_printable(out, encoding);
    return result;
}

int get_sys_info(int blade_num, uint8_t parameter, sys_info_value *out)
{
    return by_number<location_get_sys_info>(blade_num, parameter, out);
}

int location_get_sys_info_ex(const blade_location *location, sys_info_param *param)
{
    static constexpr char name[] = "location_get_sys_info_ex";
    if (!location || !param) {
        slog_elog("%s: NULL parameter found.\n", name);
        return IPMI_ERR_INVALID_PARAM;
    }
    command get(location, get_system_info, 0x00, param->parameter, param->set_selector,
                param->block_selector, block{param->data, param->length});
    get.exchange();
    if (get.failed())
        return get.tell_failure(name);
    const uint8_t *answer = get.response.data;
    param->revision = answer[0];
    param->second = answer[1];
    param->length = static_cast<uint8_t>(get.response.data_len - answer_head);
    memcpy(param->data, answer + answer_head, param->length);
    return 0;
}
