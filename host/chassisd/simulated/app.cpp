#include "chassisd/simulated/app.h"

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

bytes device_id()
{
    return success(0x20,                    // device ID
                   0x01,                    // device revision
                   0x02, 0x14,              // firmware 2.14, in operation
                   0x02,                    // IPMI 2.0
                   device_support,          //
                   le24{manufacturer_id},   //
                   le16(0x0B1D),            // product ID
                   0x00, 0x00, 0x00, 0x00); // auxiliary firmware revision
}

bytes self_test_results()
{
    return success(0x55, 0x00); // all tests passed
}

// A time-based GUID, least significant byte first, whose node part is the controller's address.
bytes device_guid(const environment &env)
{
    bytes node = mac_address(env, 0);
    std::reverse(node.begin(), node.end());
    return success(node,                                            //
                   0x00, 0x80,                                      // clock sequence and variant
                   0xED, 0x11, 0x3A, 0x7C, 0x10, 0x5E, 0x24, 0x91); // version 1 and time
}

} // namespace

bytes mac_address(const environment &env, uint8_t interface)
{
    return record_of(0x02, 0x52, 0x55, 0x4B, env.slot, interface << 4 | env.sub_slot);
}

command_table app_commands(const environment &env)
{
    return {
        {netfn_app, 0x01, 0, [](const bytes &) { return device_id(); }},
        {netfn_app, 0x04, 0, [](const bytes &) { return self_test_results(); }},
        {netfn_app, 0x08, 0, [answer = device_guid(env)](const bytes &) { return answer; }},
    };
}

} // namespace chassisd::simulated
