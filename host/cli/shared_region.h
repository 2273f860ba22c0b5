// The memory that the IPMI component shares with every process: the interrupt ring and the
// time-out counters.
#ifndef RUK_HOST_CLI_SHARED_REGION_H
#define RUK_HOST_CLI_SHARED_REGION_H

#include "ruk_ipmi/ring.h"

namespace cli
{

// The region; throws why it cannot be had.
ipmi_shm *shared_region();

// What the region holds at one instant. Any process may have written any number there.
ipmi_shm shared_region_copy();

// The number of the interrupt that was written last, read without a lock.
uint32_t last_interrupt_number();

} // namespace cli

#endif
