/**
 * The Sensor Data Record (SDR) repository of a blade.
 *
 * All commands are of network function 0x0A (Storage) and wait up to 500 ticks. Results of every
 * function: 0; `IPMI_ERR_INVALID_PARAM` for a null argument it refuses (one error line, nothing
 * sent, output untouched); a status of the message service; or the completion code (0x01-0xFF)
 * with which the blade refused, for example 0xC5 (reservation lost: reserve again) or 0xCB (no
 * such record). The short form takes the blade's number, its slot, of which the low 8 bits count.
 *
 * The output is overwritten by every call that was sent, successful or not: look at the result
 * first.
 */
#ifndef RUK_IPMI_SDR_H
#define RUK_IPMI_SDR_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Answer of Get SDR Repository Info, 15 bytes. */
typedef struct RUK_IPMI_PACKED sdr_repository_info {
    uint8_t completion_code; /**< 0 */
    uint8_t version;         /**< 1: SDR version, BCD with the low digit in the high nibble: 0x51 */
    uint16_t records;        /**< 2-3: number of records, host order on success */
    uint16_t free_space;     /**< 4-5: bytes, host order on success */
    uint32_t addition_time;  /**< 6-9: most recent addition, seconds since 1970, host order on
                                  success */
    uint32_t erase_time;     /**< 10-13: most recent erase, likewise */
    uint8_t
        operation_support; /**< 14: bit 7 overflow, bits 6-5 modal and non-modal update,
                                3 delete, 2 partial add, 1 reserve, 0 get allocation information */
} sdr_repository_info;

/** Answer of Reserve SDR Repository, 3 bytes. */
typedef struct RUK_IPMI_PACKED sdr_reservation {
    uint8_t completion_code; /**< 0 */
    uint16_t reservation_id; /**< 1-2: host order on success */
} sdr_reservation;

/** Answer of Get SDR, 258 bytes. */
typedef struct RUK_IPMI_PACKED sdr_record {
    uint8_t completion_code; /**< 0 */
    uint16_t next_record_id; /**< 1-2: host order on success; 0xFFFF after the last record */
    uint8_t data[255]; /**< 3-257: the record as received. Its 5-byte header (ID, version, type,
                            length of the rest in byte 4) tells how much of it counts. */
} sdr_record;

/**
 * Get SDR Repository Info: the summary of the repository.
 *
 * Request 0x0A 0x20, 0 bytes; output 15 bytes; refuses a null location or output.
 *
 * @param location  the blade; not null
 * @param out       receives 15 bytes; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_get_sdr_info(const blade_location *location,
                                            sdr_repository_info *out);

/**
 * Reserve SDR Repository: a reservation for reading records.
 *
 * Request 0x0A 0x22, 0 bytes; output 3 bytes; refuses a null output.
 *
 * @param location  the blade; not checked: a null pointer is dereferenced
 * @param out       receives 3 bytes; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_reserve_sdr(const blade_location *location, sdr_reservation *out);
RUK_IPMI_API int ipmi_reserve_sdr(int blade_num, sdr_reservation *out);

/**
 * Get SDR: one whole record. To walk the repository, start with record 0x0000 and follow
 * `next_record_id` until it is 0xFFFF.
 *
 * Request 0x0A 0x23, 6 bytes; output 258 bytes; refuses a null location or output.
 *
 * @param location        the blade; not null
 * @param reservation_id  of `ipmi_location_reserve_sdr`
 * @param record_id       0x0000 the first record
 * @param out             receives 258 bytes, whatever the record's own length; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_get_sdr(const blade_location *location, uint16_t reservation_id,
                                       uint16_t record_id, sdr_record *out);

#ifdef __cplusplus
}
#endif

#endif
