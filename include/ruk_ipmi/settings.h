/**
 * Small settings of a blade: power and thermal management, its physical location, the messages of
 * its LCD, link tuning, automatic throttling.
 *
 * All commands wait up to 500 ticks. Results of every function: 0; `IPMI_ERR_INVALID_PARAM` for a
 * null argument where its text does not say otherwise (one error line, nothing sent, output
 * untouched); a status of the message service; or the completion code (0x01-0xFF) with which the
 * blade refused. The short forms take the blade's number, its slot, of which the low 8 bits count.
 */
#ifndef RUK_IPMI_SETTINGS_H
#define RUK_IPMI_SETTINGS_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A power and thermal management request, in host byte order. What lies behind the body's `len`
 *  bytes is not read. */
typedef struct power_thermal_request {
    uint8_t op;                               /**< 0: operation */
    uint8_t param;                            /**< 1: parameter */
    uint16_t len;                             /**< 2-3: bytes in `body`, at most 482 */
    uint16_t offset;                          /**< 4-5: offset of the body in the parameter */
    uint8_t body[IPMI_REQUEST_DATA_SIZE - 6]; /**< 6: sent as it is */
} power_thermal_request;

/**
 * Sends a power and thermal management request; its two 16-bit numbers travel least significant
 * byte first.
 *
 * Request 0x30 0xCE, 6 + `len` bytes; output 10 bytes; refuses a null location, request or output.
 *
 * @param location  the blade.
 * @param req       the request. A `len` above 482 ends the process, after an error line.
 * @param resp      gets bytes 0-9 of the answer, completion code first; overwritten by every call
 *                  that was sent, successful or not.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_process_power_thermal_mgmt(const blade_location *location,
                                                          const power_thermal_request *req,
                                                          uint8_t resp[10]);
RUK_IPMI_API int ipmi_process_power_thermal_mgmt(int blade_num, const power_thermal_request *req,
                                                 uint8_t resp[10]);

/**
 * Tells a blade an attribute of its physical location (parameter 1).
 *
 * Request 0x30 0xCE, 6, 12, or 13 to 141 bytes; output none; refuses nothing.
 *
 * @param location  the blade; must not be null.
 * @param param_b   sent along with a text; passed on.
 * @param attr_id   which attribute: 637, 706, 633, 205 and 600 are texts, 513 is a decimal number,
 *                  of which the low 8 bits are sent; for any other a header alone is sent.
 * @param value     its value, a text of up to 128 characters: a longer one ends the process, after
 *                  an error line. Must not be null for the attributes named.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_physical_location(const blade_location *location,
                                                     uint8_t param_b, uint32_t attr_id,
                                                     const char *value);

/**
 * Asks whether the LCD's messages are hidden (parameter group 0x02).
 *
 * Request 0x30 0xD0, 6 bytes; output 1 + 1 byte; refuses a null output.
 *
 * @param location  the blade; must not be null.
 * @param status_a  gets the first of two bytes of the blade's, 0 where the answer is too short;
 *                  written unless the blade refused.
 * @param status_b  gets the second, likewise.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_lcd_hide_status(const blade_location *location,
                                                   uint8_t *status_a, uint8_t *status_b);
RUK_IPMI_API int ipmi_get_lcd_hide_status(int blade_num, uint8_t *status_a, uint8_t *status_b);

/**
 * Hides the LCD's messages (parameter group 0x02).
 *
 * Request 0x30 0xD0, 9 bytes; output none; refuses nothing.
 *
 * @param location  the blade; must not be null.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_hide_lcd_messages(const blade_location *location);
RUK_IPMI_API int ipmi_hide_lcd_messages(int blade_num);

/**
 * Shows the LCD's messages (parameter group 0x02).
 *
 * Request 0x30 0xD0, 9 bytes; output none; refuses nothing.
 *
 * @param location  the blade; must not be null.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_unhide_lcd_messages(const blade_location *location);
RUK_IPMI_API int ipmi_unhide_lcd_messages(int blade_num);

/**
 * Reads the version of a blade's link tuning (parameter group 0x11, item 1). The outputs are
 * written only when the result is 0.
 *
 * Request 0x30 0xD0, 7 bytes; output 4 + 4 + 1 byte; refuses a null location, or a null output but
 * `value_c`.
 *
 * @param location  the blade.
 * @param value_a   gets bytes 9-12 of the answer as they lie.
 * @param value_b   gets bytes 13-16 of the answer as they lie.
 * @param value_c   gets byte 8 of the answer; must not be null.
 * @return as all; `IPMI_ERR_BAD_RESPONSE_LENGTH` when the answer is not 17 bytes long.
 */
RUK_IPMI_API int ipmi_location_get_link_tuning_version(const blade_location *location,
                                                       uint32_t *value_a, uint32_t *value_b,
                                                       uint8_t *value_c);

/**
 * Reads the transmit status of a blade's link tuning (parameter group 0x11, item 2).
 *
 * Request 0x30 0xD0, 7 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location   the blade.
 * @param tx_status  gets byte 8 of the answer; written only when the result is 0.
 * @return as all; `IPMI_ERR_BAD_RESPONSE_LENGTH` when the answer is not 9 bytes long.
 */
RUK_IPMI_API int ipmi_location_get_link_tuning_tx_status(const blade_location *location,
                                                         uint8_t *tx_status);

/**
 * Sets the delay of automatic throttling, the one that there is (parameter group 0x1A).
 *
 * Request 0x30 0xD0, 11 bytes; output none; refuses a null location.
 *
 * @param location  the blade.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_autothrottle_delay(const blade_location *location);

#ifdef __cplusplus
}
#endif

#endif
