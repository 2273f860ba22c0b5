/**
 * Per-blade time-out counters in the shared region (see ring.h): how often a blade's requests had
 * to be repeated with a longer time-out. Statistics, kept by whoever talks to the blades; the
 * library only keeps the table. Nothing here sends anything to a blade.
 *
 * The table has 32 entries, shared by all processes. A blade in slot s has entry s - 1; one in a
 * sub-slot u has entry (s - 1) + (u - 1) * N, N being the number of slots that the platform tells.
 * No lock is taken.
 */
#ifndef RUK_IPMI_TIMEOUTS_H
#define RUK_IPMI_TIMEOUTS_H

#include "ruk_ipmi/ring.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Counts one raised time-out of a blade and, when `retries` is above 3, one new session; both are
 * written to the debug log.
 *
 * @param shm       the region itself, from `get_ipmi_shm_ptr`.
 * @param location  the blade.
 * @param retries   how often the request was repeated; taken as a signed number.
 * @param caller    name of the calling function, for the log. Must not be null.
 * @param line      source line of the call, for the log.
 * @return 0; `IPMI_ERR_INVALID_PARAM` when `shm` or `location` is null or the table has no entry
 * for the location, and nothing is changed.
 */
RUK_IPMI_API uint32_t SetTimeout(ipmi_shm *shm, const blade_location *location, uint32_t retries,
                                 const char *caller, uint32_t line);

/**
 * Reads a blade's counters.
 *
 * @param shm       the region itself, from `get_ipmi_shm_ptr`.
 * @param location  the blade.
 * @param bumps     gets the number of raised time-outs.
 * @param sessions  gets the number of new sessions.
 * @return 0; `IPMI_ERR_INVALID_PARAM` when an argument is null or the table has no entry for the
 *         location, and nothing is written.
 */
RUK_IPMI_API uint32_t GetTimeouts(ipmi_shm *shm, const blade_location *location, uint32_t *bumps,
                                  uint32_t *sessions);

/**
 * Sets a blade's counters to 0.
 *
 * @param shm       the region itself, from `get_ipmi_shm_ptr`.
 * @param location  the blade.
 * @return 0; `IPMI_ERR_INVALID_PARAM` when `shm` or `location` is null or the table has no entry
 *         for the location, and nothing is changed.
 */
RUK_IPMI_API uint32_t ClearTimeouts(ipmi_shm *shm, const blade_location *location);

#ifdef __cplusplus
}
#endif

#endif
