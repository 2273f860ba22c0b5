#include "chassisd/simulated/lan.h"

#include "chassisd/simulated/app.h"

namespace chassisd::simulated
{

namespace
{

bytes set_parameter(standard_parameters &lan, const bytes &request)
{
    enum source : uint8_t { by_hand = 1, by_other_protocol = 4 }; // and DHCP and BIOS between
    refuse_if(request[0] != lan_channel, invalid_field);
    refuse_if(request[1] == lan_address_source && request.size() == 3 &&
                  (request[2] < by_hand || request[2] > by_other_protocol),
              invalid_field);
    lan.set(request[1], {request.begin() + 2, request.end()});
    return success();
}

// The channel, a parameter's number, its set, and a block that none of them has.
bytes get_parameter(const standard_parameters &lan, const bytes &request)
{
    refuse_if((request[0] & ~revision_only) != lan_channel, invalid_field);
    if (request[0] & revision_only)
        return success(parameter_revision);
    return success(parameter_revision, lan.get(request[1], request[2]));
}

} // namespace

// An address of the network that is set aside for documentation, after the blade's place.
standard_parameters default_lan(const environment &env)
{
    constexpr uint8_t sets = 5; // destinations of alerts, the first of them a volatile one
    const auto host = static_cast<uint8_t>(env.slot + env.sub_slot * 32);
    bytes community(18);
    const std::string name = "public";
    std::copy(name.begin(), name.end(), community.begin());
    return standard_parameters({
        {1, {0x15}, access::read_only},              // authentication: none, MD5, password
        {2, bytes(5, 0x14)},                         // the same by privilege, MD5 and password
        {lan_address, {192, 0, 2, host}},            //
        {lan_address_source, {1}},                   // by hand
        {5, mac_address(env, 0), access::read_only}, //
        {6, {255, 255, 255, 0}},                     // subnet mask
        {7, {64, 0x40, 0x10}},                       // IPv4 header: time to live, flags, service
        {8, record_of(le16(623))},                   // primary port
        {9, record_of(le16(664))},                   // secondary port
        {10, {0x02}},                                // ARP: answers
        {11, {4}},                                   // ARP interval, half seconds
        {12, {192, 0, 2, 254}},                      // default gateway
        {13, bytes(6)},                              // its MAC address
        {14, bytes(4)},                              // backup gateway
        {15, bytes(6)},                              // its MAC address
        {16, community},                             //
        {17, {sets - 1}, access::read_only},         // non-volatile destinations
        {18, bytes(4), access::writable, sets},      // destination types
        {19, bytes(13), access::writable, sets},     // destination addresses
        {20, bytes(2)},                              // VLAN
        {21, bytes(1)},                              // VLAN priority
        {22, {2}, access::read_only},                // number of cipher suites
        {23, record_of(0, 3, 17, bytes(14)), access::read_only}, // which, behind a reserved byte
        {24, {0, 0x44, 0, 0, 0, 0, 0, 0, 0}},                    // up to which privilege
    });
}

command_table lan_commands(const std::shared_ptr<standard_parameters> &lan)
{
    return {
        {netfn_transport,
         0x01,
         {3, 255},
         [lan](const bytes &request) { return set_parameter(*lan, request); }},
        {netfn_transport, 0x02, 4,
         [lan](const bytes &request) { return get_parameter(*lan, request); }},
    };
}

} // namespace chassisd::simulated
