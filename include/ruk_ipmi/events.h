/**
 * Blade events: sets of event numbers, and the callback that gets the events a process wants.
 * Nothing here sends anything to a blade.
 */
#ifndef RUK_IPMI_EVENTS_H
#define RUK_IPMI_EVENTS_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The highest event number; the lowest is 1. */
enum { IMC_EVENTS = 64 };

/** A set of events, 8 bytes: event e is bit (e - 1) mod 8 of byte (e - 1) / 8, the least
 *  significant bit first. */
typedef struct imc_event_set {
    uint8_t bytes[8]; /**< event 1 is bit 0 of the first */
} imc_event_set;

/** What an event callback is told. */
typedef struct imc_event_info {
    blade_location location; /**< 0x00: the blade */
    uint32_t event;          /**< 0x04: the event's number, 1 to 64 */
} imc_event_info;

/**
 * Receives one event, on the callback thread (see async.h).
 *
 * @param reserved  always 0.
 * @param info      the event, valid during the call only.
 * @return 0; anything else is written to the verbose log and has no other effect.
 */
typedef int (*imc_event_callback)(uint32_t reserved, imc_event_info *info);

/**
 * Makes a set empty.
 *
 * @param set  the set.
 */
RUK_IPMI_API void imc_event_set_init(imc_event_set *set);

/**
 * Puts an event into a set.
 *
 * @param e    the event, 1 to 64: any other touches memory outside the set.
 * @param set  the set.
 */
RUK_IPMI_API void imc_event_set_SET(uint32_t e, imc_event_set *set);

/**
 * Takes an event out of a set.
 *
 * @param e    the event, 1 to 64: any other touches memory outside the set.
 * @param set  the set.
 */
RUK_IPMI_API void imc_event_set_CLR(uint32_t e, imc_event_set *set);

/**
 * Looks for an event in a set.
 *
 * @param e    the event, 1 to 64: any other reads memory outside the set.
 * @param set  the set.
 * @return 1 when the event is in the set, else 0.
 */
RUK_IPMI_API uint32_t imc_event_set_TEST(uint32_t e, const imc_event_set *set);

/**
 * Finds the next event of a set: a loop from 0 on visits all of them.
 *
 * @param after  any number.
 * @param set    the set.
 * @return the lowest event in the set that is above `after`, 0 when there is none.
 */
RUK_IPMI_API uint32_t imc_event_set_NEXT_ASSERTED(uint32_t after, const imc_event_set *set);

/**
 * Registers this process for the events in `set`: `cb` is called on the callback thread once for
 * each such event of each interrupt, an interrupt's events in ascending order. Call
 * `ruk_ipmi_init` first. The first registration starts the callback thread, unless an asynchronous
 * command did.
 *
 * A process has one registration, which a later call replaces. The first is told what happens from
 * now on (and what the ring still holds, if more than 10,000 interrupts were ever numbered); one
 * that finds the callback thread at work or waiting is first told, in order, all that the ring
 * still holds, the next time the thread is woken. A callback may register anew.
 *
 * @param set  the events; copied. Must not be null.
 * @param cb   gets the events; null: none are delivered, and each interrupt leaves a log line.
 * @return 0, or the platform's status when the callback thread could not be started, which is
 *         written to the debug log: the registration stands all the same.
 */
RUK_IPMI_API uint32_t ruk_register_imc_event_set(const imc_event_set *set, imc_event_callback cb);

/** A row of `event_action`, 12 bytes. */
typedef struct __attribute__((aligned(4))) imc_event_action {
    uint8_t bytes[12]; /**< the client's own */
} imc_event_action;

/** A table with a row for each event number, for the clients' own use; the library never looks at
 *  it. At first row 0 begins with 0x30 0x90, byte 8 of every other row is 0xFF, all else is 0. */
extern RUK_IPMI_API imc_event_action event_action[IMC_EVENTS + 1];

#ifdef __cplusplus
}
#endif

#endif
