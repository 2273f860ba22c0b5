// The LAN configuration of a blade's controller, on channel 1.

#include "cli/command_tree.h"
#include "cli/lan_parameters.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name get_parameter = {0x0C02, "Get LAN Configuration Parameters"};
const request_name set_parameter = {0x0C01, "Set LAN Configuration Parameters"};

struct lan_choice {
    uint8_t parameter = 0;
};

// A value without any byte, or of more than there is room for, cannot be told from an answer that
// stopped short.
bytes value(const blade &at, uint8_t parameter)
{
    constexpr uint8_t channel = 1;
    constexpr size_t head = 1; // the parameter's revision
    const auto found =
        ask<lan_parameter_data>(get_parameter, at, ipmi_location_get_lan_parameters, parameter);
    if (found.length > sizeof found.data) {
        const bytes answer = exchange(get_parameter, at, {channel, parameter, 0, 0}, head);
        return bytes(answer.begin() + head, answer.end());
    }
    return bytes(found.data, found.data + found.length);
}

// As people read it; null where nobody could, or the blade's value is too short.
json shown(uint8_t parameter, const bytes &value)
{
    const lan_parameter *const known = lan_parameter_numbered(parameter);
    return known && value.size() >= known->size ? json(known->shown(value)) : json();
}

report print(const blade &at)
{
    json fields = json::object();
    for (const lan_parameter &each : lan_parameters())
        fields[each.field] =
            unless_refused([&] { return shown(each.number, value(at, each.number)); }, nullptr);
    return tell(std::move(fields));
}

report get(const blade &at, const lan_choice &chosen)
{
    const bytes found = value(at, chosen.parameter);
    return tell({{"parameter", chosen.parameter},
                 {"value", shown(chosen.parameter, found)},
                 {"data", hex(found)}},
                found);
}

struct set_choice : lan_choice {
    std::string value;
    bool is_hex = false;
};

// What the text means depends on the parameter, so it is read when both are known.
bytes typed_value(const set_choice &chosen)
{
    if (chosen.is_hex)
        return hex_up_to<LAN_PARAMETER_MAX>(chosen.value);
    const lan_parameter *const known = lan_parameter_numbered(chosen.parameter);
    if (!known || !known->typed)
        throw usage_failure("the value of this parameter is typed in bytes: say --hex");
    return known->typed(chosen.value);
}

report set(const blade &at, const set_choice &chosen)
{
    const bytes data = typed_value(chosen);
    ask<uint8_t>(set_parameter, at, ipmi_location_set_lan_parameters, chosen.parameter, data.data(),
                 static_cast<uint32_t>(data.size()));
    return tell({{"parameter", chosen.parameter},
                 {"value", shown(chosen.parameter, data)},
                 {"data", hex(data)}});
}

} // namespace

void add_lan(const noun &root)
{
    const noun lan = root.noun_below("lan", "The LAN configuration of the blade's controller");
    lan.verb("print", "Show the LAN configuration", print);
    lan.verb("get", "Show one parameter, in bytes too", get)
        .argument("PARAMETER", &lan_choice::parameter, lan_parameter_number,
                  "A name, as set has them, progress, auth, or a number, 0 to 255")
        .choices(lan_parameter_names)
        .binary();
    lan.verb("set", "Set one parameter", set)
        .argument("PARAMETER", &lan_choice::parameter, lan_parameter_number,
                  "ipaddr, ipsrc, macaddr, netmask, defgw, defgw-mac, bakgw, bakgw-mac, "
                  "community, vlan, priority, or a number, 0 to 255")
        .choices(settable_lan_parameter_names)
        .argument("VALUE", &set_choice::value, text_up_to<1024>,
                  "An address; static, dhcp, bios or other; a community's name; a VLAN, 1 to "
                  "4094, or off; its priority, 0 to 7")
        .flag("--hex", &set_choice::is_hex, "VALUE is bytes, up to 253, e.g. 01ff");
}

} // namespace cli
