// The switches of a sled: their configuration, their links, their map of MAC addresses.

#include <charconv>
#include <cstring>

#include "cli/content.h"
#include "cli/output.h"

namespace cli
{

namespace
{

const request_name set_config = {0x30D0, "Set Sled Switch Configuration"};
const request_name get_config = {0x30D0, "Get Sled Switch Configuration"};
const request_name get_links = {0x30D0, "Get Sled Switch Link Status"};
const request_name set_mac_map = {0x30CB, "Set Dynamic MAC Map"};

constexpr size_t longest_name = 16; // of the record's 32 bytes the others do not travel
constexpr size_t longest_map = 128;

struct config_choice {
    std::string name;
    uint32_t crc = 0;
    uint8_t length = 0;
};

// Always hexadecimal, so that eight digits without a letter are not taken for a decimal number.
uint32_t crc(const std::string &text)
{
    const bool prefixed = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
    const char *const start = text.data() + (prefixed ? 2 : 0);
    const char *const end = text.data() + text.size();
    uint32_t value = 0;
    const auto [stop, error] = std::from_chars(start, end, value, 16);
    if (start == end || stop != end || error != std::errc())
        throw usage_failure("\"" + text + "\" is not 32 bits in hexadecimal, like 0xcbf43926");
    return value;
}

report set(const blade &at, const config_choice &chosen)
{
    sled_switch_config config{};
    config.len = chosen.length;
    config.crc = chosen.crc;
    memcpy(config.name, chosen.name.data(), chosen.name.size());
    call(set_config, at, ipmi_set_sled_switch_configuration, &config);
    return tell({{"name", chosen.name}, {"crc", hex(chosen.crc)}, {"length", chosen.length}});
}

report get(const blade &at)
{
    constexpr uint8_t untold = 0xFF;
    sled_switch_config config{};
    config.status = untold;
    call(get_config, at, ipmi_get_sled_switch_configuration, &config);
    if (config.status == untold) { // the library does not tell that the blade refused twice
        bytes status_alone = {0x01, 0x0C, 4, 0, 0, 0};
        status_alone.resize(status_alone.size() + 25);
        exchange(get_config, at, status_alone);
    }
    const char *name = ipmi_switch_config_status_to_str(config.status);
    json fields = {{"status", name ? name : "unknown"},
                   {"status_code", hex(config.status)},
                   {"name", nullptr},
                   {"length", nullptr}};
    if (config.len != 0) {
        fields["name"] = printable(config.name);
        fields["length"] = config.len;
    }
    return tell(std::move(fields));
}

report links(const blade &at)
{
    const byte_pair link = ask_pair(get_links, at, ipmi_location_get_sled_switch_link_status,
                                    {0x01, 0x0D, 4, 0, 0, 0});
    return tell({{"link_a", hex(link.a)}, {"link_b", hex(link.b)}});
}

struct map_choice : content_choice {
    uint8_t id = 0;
};

report set_map(const blade &at, const map_choice &chosen)
{
    const bytes map = chosen.content("map");
    call(set_mac_map, at, ipmi_set_dynamic_mac_iom_map, chosen.id, map.data(),
         static_cast<uint32_t>(map.size()));
    return tell({{"map", chosen.id}, {"bytes", map.size()}});
}

} // namespace

void add_sled(const noun &root)
{
    const noun sled = root.noun_below("sled", "The switches of a sled");
    const noun config = sled.noun_below("config", "The switches' configuration file");
    config.verb("set", "Tell the blade which configuration to apply", set)
        .option("--name", "NAME", &config_choice::name, text_up_to<longest_name>,
                "File name, up to 16 characters")
        .required()
        .option("--crc", "HEX", &config_choice::crc, crc,
                "CRC of the file in hexadecimal, e.g. 0xcbf43926")
        .required()
        .option("--length", "N", &config_choice::length, (number_from_to<uint8_t, 1, 255>),
                "Length value of the file, 1 to 255")
        .required();
    config.verb("get", "Show the configuration, and how far the blade is", get);

    sled.verb("links", "Show the state of both switch links", links);

    const noun map = sled.noun_below("mac-map", "The map of dynamic MAC addresses to I/O modules");
    with_content<longest_map>(map.verb("set", "Give the blade a map", set_map),
                              "The map, up to 128 bytes; - is standard input")
        .option("--id", "N", &map_choice::id, number<uint8_t>, "Which map")
        .required();
}

} // namespace cli
