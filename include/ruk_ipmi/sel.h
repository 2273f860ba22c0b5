/**
 * The System Event Log (SEL) of a blade: its clock, its summary, its entries, its erasure.
 *
 * All commands are of network function 0x0A (Storage) and wait up to 500 ticks. Results of every
 * function: 0; `IPMI_ERR_INVALID_PARAM` for an argument it refuses (one error line, nothing sent,
 * output untouched); a status of the message service; or the completion code (0x01-0xFF) with
 * which the blade refused, for example 0xC5 (reservation lost) or 0xCB (no such record). The short
 * form takes the blade's number, its slot, of which the low 8 bits count.
 *
 * The output is overwritten by every call that was sent, successful or not: look at the result
 * first.
 */
#ifndef RUK_IPMI_SEL_H
#define RUK_IPMI_SEL_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Answer of Reserve SEL, 3 bytes. */
typedef struct RUK_IPMI_PACKED sel_reservation {
    uint8_t completion_code; /**< 0 */
    uint16_t reservation_id; /**< 1-2: host order on success */
} sel_reservation;

/** Answer of Get SEL Info, 15 bytes. */
typedef struct RUK_IPMI_PACKED sel_info {
    uint8_t completion_code; /**< 0 */
    uint8_t version;         /**< 1: SEL version, BCD with the low digit in the high nibble: 0x51 */
    uint16_t entries;        /**< 2-3: number of entries, host order on success */
    uint16_t free_space;     /**< 4-5: bytes, host order on success; 0xFFFF: 65535 or more */
    uint8_t addition_time[4];  /**< 6-9: most recent addition, seconds since 1970, as received:
                                    least significant byte first on every host */
    uint8_t erase_time[4];     /**< 10-13: most recent erase, likewise */
    uint8_t operation_support; /**< 14: bit 7 overflow, 3 delete, 2 partial add, 1 reserve,
                                    0 get allocation information */
} sel_info;

/** Answer of Get SEL Entry, 19 bytes. */
typedef struct RUK_IPMI_PACKED sel_entry {
    uint8_t completion_code; /**< 0 */
    uint16_t next_record_id; /**< 1-2: host order on success; 0xFFFF after the last record */
    uint8_t record[16];      /**< 3-18: the SEL record as the blade keeps it */
} sel_entry;

/** Answer of Clear SEL, 2 bytes. */
typedef struct RUK_IPMI_PACKED sel_clear_status {
    uint8_t completion_code; /**< 0 */
    uint8_t progress;        /**< 1: low nibble 0: erasure in progress, 1: completed */
} sel_clear_status;

/** What `ipmi_location_clear_sel` is to do. */
enum {
    SEL_CLEAR_GET_STATUS = 0x00, /**< tell how far the erasure is */
    SEL_CLEAR_INITIATE = 0xAA    /**< start erasing */
};

/**
 * Set SEL Time: sets the clock that stamps the blade's events.
 *
 * Request 0x0A 0x49, 4 bytes; output 1 byte; refuses a null location or output.
 *
 * Writes a debug line with the time, or an error line with the completion code.
 *
 * @param location  the blade; not null
 * @param time      seconds since 1970-01-01 00:00 UTC, sent as 4 bytes, least significant first
 * @param out       receives 1 byte, the completion code; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_set_sel_time(const blade_location *location, uint32_t time,
                                            uint8_t *out);
RUK_IPMI_API int ipmi_set_sel_time(int blade_num, uint32_t time, uint8_t *out);

/**
 * Set SEL Time UTC Offset.
 *
 * Request 0x0A 0x5D, 2 bytes; output 1 byte; refuses a null location or output.
 *
 * Writes a debug line with the offset; a refusal adds an error line and a dump of the request.
 *
 * @param location  the blade; not null
 * @param offset    minutes east of UTC, negative to the west; 2047 (0x07FF) says "not specified".
 *                  Its low 16 bits are sent in two's complement, 2 bytes, least significant first;
 *                  no range is checked.
 * @param out       receives 1 byte, the completion code; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_set_sel_time_offset(const blade_location *location, int offset,
                                                   uint8_t *out);

/**
 * Reserve SEL: a reservation for `ipmi_location_clear_sel`.
 *
 * Request 0x0A 0x42, 0 bytes; output 3 bytes; refuses a null location or output.
 *
 * @param location  the blade; not null
 * @param out       receives 3 bytes; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_reserve_sel(const blade_location *location, sel_reservation *out);

/**
 * Get SEL Info: the summary of the log.
 *
 * Request 0x0A 0x40, 0 bytes; output 15 bytes; refuses a null location or output.
 *
 * @param location  the blade; not null
 * @param out       receives 15 bytes; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_get_sel_info(const blade_location *location, sel_info *out);

/**
 * Get SEL Entry: one whole record. No reservation is needed. To walk the log, start with record
 * 0x0000 and follow `next_record_id` until it is 0xFFFF.
 *
 * Request 0x0A 0x43, 6 bytes; output 19 bytes; refuses a null output.
 *
 * @param location   the blade; not checked: a null pointer is dereferenced
 * @param record_id  0x0000 the first record, 0xFFFF the last
 * @param out        receives 19 bytes; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_get_sel_entry(const blade_location *location, uint16_t record_id,
                                             sel_entry *out);

/**
 * Clear SEL: one step of erasing the log. Reserve it, call this once with `SEL_CLEAR_INITIATE`,
 * then with `SEL_CLEAR_GET_STATUS` until the progress is 1.
 *
 * Request 0x0A 0x47, 6 bytes; output 2 bytes; refuses a null location or output, or another
 * action.
 *
 * @param location        the blade; not null
 * @param reservation_id  of `ipmi_location_reserve_sel`
 * @param action          `SEL_CLEAR_INITIATE` or `SEL_CLEAR_GET_STATUS`; all else is refused
 * @param out             receives 2 bytes; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_clear_sel(const blade_location *location, uint16_t reservation_id,
                                         uint8_t action, sel_clear_status *out);

#ifdef __cplusplus
}
#endif

#endif
