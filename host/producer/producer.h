// How interrupts get into the ring on ordinary Linux: the daemon's blades, the tool and the tests
// all post them here.
#ifndef RUK_HOST_PRODUCER_PRODUCER_H
#define RUK_HOST_PRODUCER_PRODUCER_H

#include "ruk_ipmi/ring.h"

namespace ruk::host
{

// The notification that tells readers of a new interrupt.
constexpr uint32_t interrupt_posted = 0x15;

// Gives the interrupt the number behind the last one, appends it to the ring and wakes every
// registered process. Producers of all processes take turns, so no number is given twice. `holder`
// is as for get_ipmi_shm_ptr. Returns 0 or the status of what failed.
uint32_t post_interrupt(void **holder, ipmi_interrupt &interrupt);

} // namespace ruk::host

#endif
