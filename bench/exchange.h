// The command that the bench sends to blades: Get Device ID, which a simulated blade answers at
// once.
#ifndef RUK_BENCH_EXCHANGE_H
#define RUK_BENCH_EXCHANGE_H

#include "processes.h"
#include "ruk_ipmi.h"

namespace bench
{

// Attaches, asks the blade in that slot, takes its answer and detaches.
inline void ask_blade(uint8_t slot)
{
    ipmi_request request{};
    request.location.slot_id = slot;
    request.netfn_cmd = 0x0601;
    ipmi_response response{};
    response.data_len = 483;
    check(get_ruk_ipmi_response(&request, &response, 500) == 0 && response.comp_code == 0 &&
              response.data_len == 16,
          "get_ruk_ipmi_response");
}

} // namespace bench

#endif
