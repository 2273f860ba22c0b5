// The places of the chassis.
#ifndef RUK_HOST_CLI_PLACES_H
#define RUK_HOST_CLI_PLACES_H

#include <vector>

#include "ruk_ipmi/types.h"

namespace cli
{

// How many slots the platform says that there are.
uint32_t slot_count();

// Where blades may stand: each slot, and behind it its sub-slots 1 to 4.
std::vector<blade_location> all_places();

} // namespace cli

#endif
