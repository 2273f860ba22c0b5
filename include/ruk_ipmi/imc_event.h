/** The miscellaneous IMC event record of a blade. */
#ifndef RUK_IPMI_IMC_EVENT_H
#define RUK_IPMI_IMC_EVENT_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A miscellaneous IMC event, 42 bytes, in host byte order. */
typedef struct misc_imc_event {
    uint16_t payload_len;  /**< 0-1: length of the record, itself included: 5 to 42 */
    uint16_t feature_bits; /**< 2-3 */
    uint8_t fru_id;        /**< 4 */
    uint8_t data[37];      /**< 5-41: `payload_len` - 5 bytes, then zeros */
} misc_imc_event;

/**
 * Reads a blade's miscellaneous IMC event (parameter group 0x1B), waiting up to 500 ticks.
 *
 * Request 0x30 0xD0, 6 bytes; output 42 bytes; refuses a null location, or an answer above 42
 * bytes.
 *
 * @param location  the blade.
 * @param event     cleared before anything else, then filled; must not be null. Its `data` is empty
 *                  when the blade's `payload_len` is below 5.
 * @return 0; `IPMI_ERR_INVALID_PARAM` when `location` is null (nothing sent), and when the blade's
 *         `payload_len` is above 42 (the fields before `data` are filled all the same); a status of
 *         the message service; or the completion code (0x01-0xFF) with which the blade refused. All
 *         but the message service's statuses are written to the error log.
 */
RUK_IPMI_API int location_blade_get_miscellaneous_imc_event(const blade_location *location,
                                                            misc_imc_event *event);

#ifdef __cplusplus
}
#endif

#endif
