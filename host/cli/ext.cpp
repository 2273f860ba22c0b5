// Extended parameters: long values of a blade's controller.

#include <algorithm>

#include "cli/content.h"

namespace cli
{

namespace
{

const request_name get_extended = {0x2E02, "Get Extended Parameter"};
const request_name set_extended = {0x2E03, "Set Extended Parameter"};

constexpr size_t longest = UINT16_MAX; // the pieces' offsets have 16 bits

struct extended_choice {
    uint8_t command = 0;
    uint8_t index = 0;
};

// The value stands behind its length in the stream that the blade sends; it is written without.
report get(const blade &at, const extended_choice &chosen)
{
    constexpr size_t length_size = 2;
    const auto found = ask<ext_cmd_data>(get_extended, at, ipmi_location_get_ext_cmd_indexed,
                                         chosen.command, chosen.index);
    const size_t length = std::max<size_t>(found.total, length_size) - length_size;
    const size_t kept = std::min(length, sizeof found.data - length_size);
    const bytes value(found.data + length_size, found.data + length_size + kept);
    report told = tell({{"command", hex(chosen.command)},
                        {"index", chosen.index},
                        {"length", length},
                        {"value", hex(value)}},
                       value);
    if (kept < length)
        told.ended =
            failure(exit_refused, "of " + std::to_string(length) + " bytes only the first " +
                                      std::to_string(kept) + " are kept");
    return told;
}

struct set_choice : extended_choice, content_choice {
};

report set(const blade &at, const set_choice &chosen)
{
    const bytes data = chosen.content("value");
    ask<uint8_t>(set_extended, at, ipmi_location_set_ext_cmd_indexed, chosen.command, chosen.index,
                 data.data(), static_cast<uint32_t>(data.size()));
    return tell(
        {{"command", hex(chosen.command)}, {"index", chosen.index}, {"bytes", data.size()}});
}

template <typename Choice>
verb<Choice> with_place(verb<Choice> verb)
{
    verb.argument("COMMAND", &extended_choice::command, number<uint8_t>, "Which, 0 to 255")
        .option("--index", "N", &extended_choice::index, number<uint8_t>,
                "Which of several, 0 when not given");
    return verb;
}

} // namespace

void add_ext(const noun &root)
{
    const noun ext = root.noun_below("ext", "Extended parameters of the blade's controller");
    with_place(ext.verb("get", "Read a parameter", get)).binary();
    with_content<longest>(with_place(ext.verb("set", "Write a parameter", set)),
                          "Its value, up to 65535 bytes; - is standard input. That "
                          "a piece before the last did not get through is only in the log: -v "
                          "shows it");
}

} // namespace cli
