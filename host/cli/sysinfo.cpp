// The system information that a blade's controller keeps: versions and names.

#include <algorithm>

#include "cli/content.h"
#include "cli/names.h"

namespace cli
{

namespace
{

const request_name get_parameters = {0x0659, "Get System Info Parameters"};
const request_name set_parameters = {0x0658, "Set System Info Parameters"};

const name_table parameters = {
    {1, "firmware-version"},   {2, "system-name"},    {3, "primary-os"}, {4, "running-os"},
    {5, "running-os-version"}, {6, "controller-url"}, {7, "base-os-url"}};

constexpr size_t longest_text = 255; // a byte tells its length
constexpr size_t longest_plain = 487;

struct parameter_choice {
    uint8_t parameter = 0;
};

uint8_t parameter(const std::string &text)
{
    return number_or_named(parameters, text);
}

std::vector<std::string> parameter_names()
{
    return all_names(parameters);
}

bytes value(const blade &at, uint8_t parameter)
{
    const auto found = ask<sys_info_value>(get_parameters, at, location_get_sys_info, parameter);
    return bytes(found.value, found.value + found.length);
}

// Null where any byte is none of a text.
json text(const bytes &value)
{
    std::string characters(value.begin(), value.end());
    characters.resize(characters.find_last_not_of('\0') + 1);
    const bool is_text = std::all_of(characters.begin(), characters.end(),
                                     [](char each) { return each >= ' ' && each <= '~'; });
    return is_text ? json(characters) : json();
}

report get(const blade &at, const parameter_choice &chosen)
{
    const bytes found = value(at, chosen.parameter);
    return tell({{"parameter", name_of(parameters, chosen.parameter)},
                 {"text", text(found)},
                 {"data", hex(found)}},
                found);
}

report list(const blade &at)
{
    json rows = json::array();
    for (const named_number &each : parameters)
        rows.push_back(
            {{"parameter", each.name},
             {"text", unless_refused([&] { return text(value(at, each.number)); }, nullptr)}});
    return tell({{"parameters", rows}});
}

struct set_choice : parameter_choice, content_choice {
    std::optional<bytes> text;
};

std::optional<bytes> typed_text(const std::string &text)
{
    check_room(text.size(), longest_text);
    return bytes(text.begin(), text.end());
}

// Whether its length is told to the blade.
bool is_counted(uint8_t parameter)
{
    return parameter != 0xE2 && parameter != 0xE5 && parameter != 0xFA;
}

report set(const blade &at, const set_choice &chosen)
{
    const bytes data = chosen.text ? *chosen.text : chosen.content("value");
    check_room(data.size(), is_counted(chosen.parameter) ? longest_text : longest_plain);
    ask<uint8_t>(set_parameters, at, location_set_sys_info, chosen.parameter, data.data(),
                 static_cast<uint32_t>(data.size()));
    return tell({{"parameter", name_of(parameters, chosen.parameter)}, {"bytes", data.size()}});
}

struct raw_choice : parameter_choice {
    uint8_t set = 0;
    uint8_t block = 0;
    bytes data;
};

report raw(const blade &at, const raw_choice &chosen)
{
    sys_info_param param{};
    param.parameter = chosen.parameter;
    param.set_selector = chosen.set;
    param.block_selector = chosen.block;
    param.length = static_cast<uint8_t>(chosen.data.size());
    std::copy(chosen.data.begin(), chosen.data.end(), param.data);
    call(get_parameters, at, location_get_sys_info_ex, &param);
    const bytes answer(param.data, param.data + param.length);
    return tell({{"parameter", name_of(parameters, chosen.parameter)},
                 {"revision", hex(param.second)}, // the completion code stands before it
                 {"data", hex(answer)}},
                answer);
}

template <typename Choice>
verb<Choice> with_parameter(verb<Choice> verb)
{
    verb.argument("PARAMETER", &parameter_choice::parameter, parameter,
                  "A name, as list shows them, or a number, 0 to 255")
        .choices(parameter_names);
    return verb;
}

} // namespace

void add_sysinfo(const noun &root)
{
    const noun sysinfo = root.noun_below("sysinfo", "The system information: versions, names");
    sysinfo.verb("list", "Show the parameters that have names", list);
    with_parameter(sysinfo.verb("get", "Show one parameter, in bytes too", get)).binary();
    with_content<longest_plain>(with_parameter(sysinfo.verb("set", "Set one parameter", set)),
                                "Its value, up to 255 bytes; - is standard input")
        .option("--text", "TEXT", &set_choice::text, typed_text, "A text")
        .excludes("FILE")
        .excludes("--hex");
    with_parameter(sysinfo.verb("raw", "Ask for one block by its selectors", raw))
        .option("--set", "N", &raw_choice::set, number<uint8_t>, "Set selector, 0 when not given")
        .option("--block", "N", &raw_choice::block, number<uint8_t>,
                "Block selector, 0 when not given")
        .option("--data", "HEX", &raw_choice::data, hex_up_to<sizeof sys_info_param::data>,
                "Sent behind the selectors, up to 255 bytes")
        .binary();
}

} // namespace cli
