#include "cli/lan_parameters.h"

#include <algorithm>
#include <arpa/inet.h>

#include "cli/names.h"
#include "cli/output.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const name_table address_sources = {
    {0, "unspecified"}, {1, "static"}, {2, "dhcp"}, {3, "bios"}, {4, "other"}};
const name_table progress_states = {{0, "complete"}, {1, "in progress"}, {2, "commit"}};
const std::vector<const char *> authentication_types = {"none",  "MD2",      "MD5",
                                                        nullptr, "password", "OEM"};

std::string address(const bytes &value)
{
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, value.data(), text, sizeof text);
    return text;
}

bytes typed_address(const std::string &text)
{
    bytes value(4);
    if (inet_pton(AF_INET, text.c_str(), value.data()) != 1)
        throw usage_failure("\"" + text + "\" is not an address like 192.0.2.7");
    return value;
}

std::string mac(const bytes &value)
{
    std::string text = hex(value);
    std::replace(text.begin(), text.end(), ' ', ':');
    return text;
}

bytes typed_mac(const std::string &text)
{
    std::string digits = text;
    std::replace(digits.begin(), digits.end(), ':', ' ');
    bytes value = parse_hex(digits);
    check_length(value.size(), 6);
    return value;
}

std::string source(const bytes &value)
{
    return name_of(address_sources, value[0] & 0x0F);
}

bytes typed_source(const std::string &text)
{
    return {number_named(address_sources, text)};
}

constexpr size_t community_size = 18;

std::string community(const bytes &value)
{
    const std::string text(value.begin(), value.end());
    return printable(text.substr(0, text.find('\0')));
}

bytes typed_community(const std::string &text)
{
    check_room(text.size(), community_size);
    bytes value(text.begin(), text.end());
    value.resize(community_size);
    return value;
}

constexpr uint8_t vlan_is_used = 0x80;

std::string vlan(const bytes &value)
{
    if ((value[1] & vlan_is_used) == 0)
        return "off";
    return std::to_string(value[0] | (value[1] & 0x0F) << 8);
}

bytes typed_vlan(const std::string &text)
{
    if (text == "off")
        return {0, 0};
    const auto id = number_from_to<uint16_t, 1, 4094>(text);
    return {static_cast<uint8_t>(id), static_cast<uint8_t>(id >> 8 | vlan_is_used)};
}

std::string vlan_priority(const bytes &value)
{
    return std::to_string(value[0] & 0x07);
}

bytes typed_vlan_priority(const std::string &text)
{
    return {number_from_to<uint8_t, 0, 7>(text)};
}

std::string set_progress(const bytes &value)
{
    return name_of(progress_states, value[0] & 0x03);
}

std::string authentication(const bytes &value)
{
    return value_text(names_of_bits(value[0], authentication_types));
}

} // namespace

const std::vector<lan_parameter> &lan_parameters()
{
    static const std::vector<lan_parameter> all = {
        {0, "progress", "set_in_progress", 1, set_progress, nullptr},
        {1, "auth", "authentication", 1, authentication, nullptr},
        {3, "ipaddr", "ip_address", 4, address, typed_address},
        {4, "ipsrc", "ip_address_source", 1, source, typed_source},
        {5, "macaddr", "mac_address", 6, mac, typed_mac},
        {6, "netmask", "netmask", 4, address, typed_address},
        {12, "defgw", "default_gateway", 4, address, typed_address},
        {13, "defgw-mac", "default_gateway_mac", 6, mac, typed_mac},
        {14, "bakgw", "backup_gateway", 4, address, typed_address},
        {15, "bakgw-mac", "backup_gateway_mac", 6, mac, typed_mac},
        {16, "community", "snmp_community", community_size, community, typed_community},
        {20, "vlan", "vlan", 2, vlan, typed_vlan},
        {21, "priority", "vlan_priority", 1, vlan_priority, typed_vlan_priority},
    };
    return all;
}

const lan_parameter *lan_parameter_numbered(uint8_t number)
{
    for (const lan_parameter &each : lan_parameters())
        if (each.number == number)
            return &each;
    return nullptr;
}

uint8_t lan_parameter_number(const std::string &text)
{
    name_table names;
    for (const lan_parameter &each : lan_parameters())
        names.push_back({each.number, each.name});
    return number_or_named(names, text);
}

std::vector<std::string> lan_parameter_names()
{
    return all_names(lan_parameters());
}

std::vector<std::string> settable_lan_parameter_names()
{
    std::vector<std::string> names;
    for (const lan_parameter &each : lan_parameters())
        if (each.typed)
            names.emplace_back(each.name);
    return names;
}

} // namespace cli
