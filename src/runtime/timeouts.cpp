// Per-blade time-out counters. They are statistics, so nobody locks: each is one word.

#include "ruk_ipmi/timeouts.h"

#include "platform/log.h"
#include "platform/platform_info.h"
#include "runtime/words.h"

static_assert(sizeof(ipmi_timeouts) == 8);

using namespace ruk;

namespace
{

// The blade's counters; null when there are none.
ipmi_timeouts *counters(ipmi_shm *shm, const blade_location *loc)
{
    if (!shm || !loc)
        return nullptr;
    uint32_t index = loc->slot_id - 1u;
    if (loc->sub_slot_id != 0)
        index += (loc->sub_slot_id - 1u) * _gPlatInfo()[PLAT_INFO_SLOTS];
    index &= 0xFF; // so it was always cut; a location without a slot ends up far outside
    return index < IPMI_TIMEOUT_ENTRIES ? &shm->timeouts[index] : nullptr;
}

} // namespace

uint32_t SetTimeout(ipmi_shm *shm, const blade_location *loc, uint32_t retries, const char *caller,
                    uint32_t line)
{
    ipmi_timeouts *blade = counters(shm, loc);
    if (!blade)
        return IPMI_ERR_INVALID_PARAM;
    slog_dlog("%s(): called from %s() line %d retries %d bumped [%d,%d] to %d\n", "SetTimeout",
              caller, line, retries, loc->slot_id, loc->sub_slot_id,
              increase(blade->timeout_bumps));
    if (static_cast<int32_t>(retries) > 3)
        slog_dlog("%s(): Starting new session for [%d,%d]!! New sessions: %d\n", "SetTimeout",
                  loc->slot_id, loc->sub_slot_id, increase(blade->new_sessions));
    return 0;
}

uint32_t GetTimeouts(ipmi_shm *shm, const blade_location *loc, uint32_t *bumps, uint32_t *sessions)
{
    ipmi_timeouts *blade = counters(shm, loc);
    if (!blade || !bumps || !sessions)
        return IPMI_ERR_INVALID_PARAM;
    *bumps = load(blade->timeout_bumps);
    *sessions = load(blade->new_sessions);
    return 0;
}

uint32_t ClearTimeouts(ipmi_shm *shm, const blade_location *loc)
{
    ipmi_timeouts *blade = counters(shm, loc);
    if (!blade)
        return IPMI_ERR_INVALID_PARAM;
    store(blade->timeout_bumps, 0u);
    store(blade->new_sessions, 0u);
    return 0;
}
