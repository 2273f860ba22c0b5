/**
 * The FRU (field-replaceable unit) inventory areas of a blade, read and written by stretches.
 *
 * All commands are of network function 0x0A (Storage). Results of every function: 0;
 * `IPMI_ERR_INVALID_PARAM` for an argument it refuses (nothing sent, outputs untouched; one error
 * line, unless told otherwise); a status of the message service; or the completion code
 * (0x01-0xFF) with which the blade refused, for example 0xC9 (offset beyond the area), 0xCA (more
 * bytes than one answer carries) or 0xCB (no such FRU device). The short forms take the blade's
 * number, its slot, of which the low 8 bits count.
 *
 * Outputs are overwritten by every call that was sent, successful or not: look at the result
 * first.
 */
#ifndef RUK_IPMI_FRU_H
#define RUK_IPMI_FRU_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Answer of Get FRU Inventory Area Info, 4 bytes. */
typedef struct RUK_IPMI_PACKED fru_area_info {
    uint8_t completion_code; /**< 0 */
    uint16_t size;           /**< 1-2: size of the area in bytes, host order */
    uint8_t access;          /**< 3: bit 0: 0 = the device is accessed by bytes, 1 = by words */
} fru_area_info;

/** Where Read FRU Data puts its bytes and how many there were, 11 bytes. */
typedef struct RUK_IPMI_PACKED fru_read_request {
    uint8_t completion_code; /**< 0: output */
    void *buffer;            /**< from 1: input: where the bytes go; set it before the call */
#if UINTPTR_MAX == 0xFFFFFFFFu
    uint8_t unused[4]; /**< 5-8: neither read nor written */
#endif
    uint16_t count; /**< 9-10: output: bytes copied into the buffer, host order */
} fru_read_request;

/** Bytes that one call of `ipmi_location_write_fru` can write. */
enum { FRU_WRITE_MAX = 251 };

/**
 * Get FRU Inventory Area Info: how large an area is. Waits up to 500 ticks.
 *
 * Request 0x0A 0x10, 1 byte; output 4 bytes; refuses a null location or output.
 *
 * @param location  the blade; not null
 * @param fru_id    FRU device ID, 0 for the blade's own
 * @param out       receives 4 bytes; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_get_fru_info(const blade_location *location, uint8_t fru_id,
                                            fru_area_info *out);
RUK_IPMI_API int ipmi_get_fru_info(int blade_num, uint8_t fru_id, fru_area_info *out);

/**
 * Read FRU Data: one stretch of an area. Waits up to 1000 ticks.
 *
 * Request 0x0A 0x11, 4 bytes; output 11 bytes and the buffer; refuses a null location or output.
 *
 * Copies as many bytes as the blade says it returned, `capacity` at the most, whatever the result;
 * `capacity` is all that protects the buffer. The blade's count is one byte, so a stretch never
 * exceeds 255 bytes. Writes two debug lines and a dump of the buffer.
 *
 * @param location  the blade; not null
 * @param fru_id    FRU device ID
 * @param offset    first byte (of a device accessed by words: first word) to read; sent least
 *                  significant byte first
 * @param count     bytes (words) to read
 * @param capacity  bytes that fit `out->buffer`
 * @param out       `buffer` is read, `completion_code` and `count` are written; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_read_fru(const blade_location *location, uint8_t fru_id,
                                        uint16_t offset, uint8_t count, uint32_t capacity,
                                        fru_read_request *out);
RUK_IPMI_API int ipmi_read_fru(int blade_num, uint8_t fru_id, uint16_t offset, uint8_t count,
                               uint32_t capacity, fru_read_request *out);

/**
 * Write FRU Data: one stretch of an area. Waits up to 500 ticks. How many bytes the blade took is
 * not passed back.
 *
 * Request 0x0A 0x12, 3 + `length` bytes; output 1 byte; refuses a null location or output, or a
 * `length` above 251.
 *
 * @param location  the blade; not null
 * @param fru_id    FRU device ID
 * @param offset    first byte (word) to write; sent least significant byte first
 * @param length    bytes to write, at most `FRU_WRITE_MAX`; more is refused without a log line
 * @param data      `length` bytes; not checked
 * @param out       receives 1 byte, the completion code; not null
 * @return 0, `IPMI_ERR_INVALID_PARAM`, a status of the message service, or a completion code
 */
RUK_IPMI_API int ipmi_location_write_fru(const blade_location *location, uint8_t fru_id,
                                         uint16_t offset, uint32_t length, const uint8_t *data,
                                         uint8_t *out);
RUK_IPMI_API int ipmi_write_fru(int blade_num, uint8_t fru_id, uint16_t offset, uint32_t length,
                                const uint8_t *data, uint8_t *out);

#ifdef __cplusplus
}
#endif

#endif
