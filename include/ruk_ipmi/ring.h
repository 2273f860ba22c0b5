/**
 * The interrupt ring: 200 slots in the memory that the IPMI component shares with every process.
 * Producers append interrupts; each reader has a position of its own and sees whatever the ring
 * still holds behind it. Nothing here sends anything to a blade.
 *
 * A process that only wants to be told of events registers for them (events.h) and needs nothing
 * of this.
 *
 * The named mutex "ruk_mutex_ipmi" guards the region; each function here that reads or writes the
 * ring holds it for the length of the call, after waiting up to 100 operating-system ticks (10 ms
 * each on the host platform). Producers and readers may be any threads of any processes; a holder
 * (see `get_ipmi_shm_ptr`) belongs to one thread until it points at the region.
 */
#ifndef RUK_IPMI_RING_H
#define RUK_IPMI_RING_H

#include "ruk_ipmi/events.h"
#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Slots of the ring. */
enum { IPMI_RING_SLOTS = 200 };

/** Rows of the table of time-out counters. */
enum { IPMI_TIMEOUT_ENTRIES = 32 };

/** An interrupt: one slot of the ring, 212 bytes. The words are in host byte order. */
typedef struct ipmi_interrupt {
    uint32_t int_num;        /**< 0x00: the interrupt's number */
    uint32_t prev_num;       /**< 0x04: its number before the ring was last renumbered */
    uint32_t producer_08;    /**< 0x08: the producer's */
    blade_location location; /**< 0x0C: the blade */
    uint32_t producer_10;    /**< 0x10: the producer's */
    imc_event_set ies;       /**< 0x14: the events that this interrupt asserts */
    uint8_t producer_1c[16]; /**< 0x1C: the producer's */
    uint32_t data_len;       /**< 0x2C: how many bytes of `data` are valid */
    uint8_t data[164];       /**< 0x30: interrupt data */
} ipmi_interrupt;

/** A blade's time-out counters; see timeouts.h. */
typedef struct ipmi_timeouts {
    uint32_t timeout_bumps; /**< 0x00: how often the blade's time-out was raised */
    uint32_t new_sessions;  /**< 0x04: how often that began a new session */
} ipmi_timeouts;

/** The shared region, 42,668 bytes. The words are in host byte order. Any process may have written
 *  anything there. */
typedef struct ipmi_shm {
    uint32_t last_int_num; /**< 0x0000: number of the interrupt that was written last */
    uint32_t renumbered;   /**< 0x0004: 1 when that write renumbered the ring, else 0 */
    uint32_t next_slot;    /**< 0x0008: slot that is written next, the oldest; above 199: slot 0 */
    ipmi_interrupt ring[IPMI_RING_SLOTS];         /**< 0x000C */
    ipmi_timeouts timeouts[IPMI_TIMEOUT_ENTRIES]; /**< 0xA5AC */
} ipmi_shm;

/**
 * Makes a holder point at the shared region. The process stays attached to the message service.
 *
 * @param holder  where the region's address goes; what is not null there is taken as the address.
 * @return 0; -1 (0xFFFFFFFF) when `holder` is null; any other value is the message service's
 *         status, and `*holder` stays null. Failures are written to the error log.
 */
RUK_IPMI_API uint32_t get_ipmi_shm_ptr(void **holder);

/**
 * As `get_ipmi_shm_ptr`; afterwards "ruk_mutex_ipmi" is looked up anew at the next access.
 *
 * @param holder  as for `get_ipmi_shm_ptr`.
 * @return as `get_ipmi_shm_ptr`.
 */
RUK_IPMI_API uint32_t get_shm_ptr(void **holder);

/**
 * Empties the ring and the time-out counters; the numbering goes on where it was.
 *
 * @param holder  as for `get_ipmi_shm_ptr`.
 * @return 0; `IPMI_ERR_RESOURCE` when `holder` is null; any other value is the platform's status
 *         for finding the region or locking it. Failures are written to the error log.
 */
RUK_IPMI_API uint32_t init_shm_ptr(void **holder);

/**
 * Appends an interrupt, over the oldest one when the ring is full. The producer then posts
 * notification 0x15 to wake the readers, by means of the platform.
 *
 * @param new_num  the interrupt's number, as a rule one more than the last; `rec->int_num` is to
 *                 be the same. A number below the last one renumbers the interrupts in the ring
 *                 from 1 on, oldest first, keeping their old numbers in `prev_num`.
 * @param holder   as for `get_ipmi_shm_ptr`.
 * @param rec      the interrupt; copied, after its `prev_num` was set.
 * @return 0; `IPMI_ERR_RESOURCE` when `rec` is null; 0xFFFFFFFF when `holder` is null; any other
 *         value is the platform's status for finding the region or locking it. Failures are
 *         written to the error log.
 */
RUK_IPMI_API uint32_t put_next_interrupt(uint32_t new_num, void **holder, ipmi_interrupt *rec);

/**
 * Takes the next interrupt behind a position.
 *
 * @param last_num    the position: the number of the interrupt that was read last, 0 before the
 *                    oldest. On return that of the interrupt in `out`; unchanged when there is
 *                    nothing new.
 * @param holder      as for `get_ipmi_shm_ptr`.
 * @param out         gets the interrupt; as it was when there is nothing new.
 * @param continuing  0 for the first call of a row, else 1: a reader whose position is not behind
 *                    the last number (the numbering was set back) looks for its place by the old
 *                    numbers in the first call only.
 * @return 0, also when there is nothing new; `IPMI_ERR_RESOURCE` when `out` or `last_num` is null;
 *         0xFFFFFFFF when `holder` is null; any other value is the platform's status for finding
 *         the region or locking it. Failures are written to the error log.
 */
RUK_IPMI_API uint32_t get_next_interrupt(uint32_t *last_num, void **holder, ipmi_interrupt *out,
                                         uint32_t continuing);

#ifdef __cplusplus
}
#endif

#endif
