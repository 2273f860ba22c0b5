// What the controller says of itself: the commands of network function App.
#ifndef RUK_HOST_CHASSISD_SIMULATED_APP_H
#define RUK_HOST_CHASSISD_SIMULATED_APP_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

// IPMB address of the controller, owner of all its sensors.
constexpr uint8_t controller_address = 0x20;

// The devices it has, as Get Device ID and its SDR tell: FRU inventory, SEL, SDR repository,
// sensors.
constexpr uint8_t device_support = 0x0F;

// The enterprise number that is set aside for examples.
constexpr uint32_t manufacturer_id = 32473;

// Locally administered, made of the blade's place. Interface 0 is the controller's own; the blade's
// system has the others, up to 15.
bytes mac_address(const environment &env, uint8_t interface);

command_table app_commands(const environment &env);

} // namespace chassisd::simulated

#endif
