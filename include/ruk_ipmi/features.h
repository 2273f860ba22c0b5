/**
 * What a blade's controller can do: features, versions, discovery and power management.
 *
 * All commands are of network function 0x30 and wait up to 500 ticks. Results of every function: 0;
 * `IPMI_ERR_INVALID_PARAM` for a null argument where its text does not say otherwise (one error
 * line, nothing sent, output untouched); a status of the message service; or the completion code
 * (0x01-0xFF) with which the blade refused. Where its text does not say otherwise, the output gets
 * the first bytes of the answer as they come, completion code first, from every call that was sent,
 * successful or not. The short forms take the blade's number, its slot, of which the low 8 bits
 * count.
 */
#ifndef RUK_IPMI_FEATURES_H
#define RUK_IPMI_FEATURES_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Asks for a controller's feature information.
 *
 * Request 0x30 0xBD, 0 bytes; output 7 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 7 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_feature_info(const blade_location *location, uint8_t out[7]);
RUK_IPMI_API int ipmi_get_feature_info(int blade_num, uint8_t out[7]);

/**
 * Sends a controller a value of six bytes, between two zeros and 24 more.
 *
 * Request 0x30 0xC9, 32 bytes; output 1 byte; refuses a null location, value or output.
 *
 * @param location  the blade.
 * @param value     6 bytes, sent as they are.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_send_bexal_quon(const blade_location *location,
                                               const uint8_t value[6], uint8_t *out);
RUK_IPMI_API int ipmi_send_bexal_quon(int blade_num, const uint8_t value[6], uint8_t *out);

/**
 * Asks for the version of a blade's CPLD.
 *
 * Request 0x30 0x33, 0 bytes; output 6 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 6 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_cpld_version(const blade_location *location, uint8_t out[6]);

/**
 * Sends a controller a feature block of eight bytes.
 *
 * Request 0x30 0xC3, 8 bytes; output 1 byte; refuses a null location, block or output.
 *
 * @param location  the blade.
 * @param block     8 bytes, sent as they are.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_send_zat_feature(const blade_location *location,
                                                const uint8_t block[8], uint8_t *out);

/**
 * Asks how far automatic discovery is (byte 0x12).
 *
 * Request 0x30 0xA3, 1 byte; output 10 bytes; refuses a null output.
 *
 * @param location  the blade; must not be null.
 * @param out       gets 10 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_auto_discovery_status(const blade_location *location,
                                                         uint8_t out[10]);
RUK_IPMI_API int ipmi_get_auto_discovery_status(int blade_num, uint8_t out[10]);

/**
 * Asks for the status of power management (byte 0x12).
 *
 * Request 0x30 0xA9, 4 bytes; output 1 byte; refuses nothing.
 *
 * @param location  the blade; must not be null.
 * @param out       1 byte, written only when the result is 0: byte 3 of the answer if its byte 2 is
 *                  0, else 0. Must not be null.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_pm_status(const blade_location *location, uint8_t *out);
RUK_IPMI_API int ipmi_get_pm_status(int blade_num, uint8_t *out);

/**
 * Asks for the rebrand string of power management (byte 0x14).
 *
 * Request 0x30 0xA9, 4 bytes; output 15 bytes; refuses nothing.
 *
 * @param location  the blade; must not be null.
 * @param out       written only when the result is 0: the text that begins at byte 3 of the answer,
 *                  with zeros up to 15 characters; one of 15 or more fills it and has no
 *                  terminator. Must not be null.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_pm_rebrand(const blade_location *location, char out[15]);
RUK_IPMI_API int ipmi_get_pm_rebrand(int blade_num, char out[15]);

#ifdef __cplusplus
}
#endif

#endif
