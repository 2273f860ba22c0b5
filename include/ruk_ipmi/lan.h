/**
 * The LAN configuration of a blade's controller, on channel 1.
 *
 * Both commands are of network function 0x0C (Transport) and wait up to 500 ticks. Results: 0;
 * `IPMI_ERR_INVALID_PARAM` for a null location or output (one error line, nothing sent); a status
 * of the message service; or the completion code (0x01-0xFF) with which the blade refused, for
 * example 0x80 (parameter not supported) or 0x82 (read-only). The output is overwritten by every
 * call that was sent, successful or not. The short forms take the blade's number, its slot, of
 * which the low 8 bits count.
 */
#ifndef RUK_IPMI_LAN_H
#define RUK_IPMI_LAN_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Bytes that Set LAN Configuration Parameters takes at the most. */
enum { LAN_PARAMETER_MAX = 253 };

/** Answer of Get LAN Configuration Parameters, 202 bytes. */
typedef struct RUK_IPMI_PACKED lan_parameter_data {
    uint8_t completion_code; /**< 0 */
    uint8_t length;          /**< 1: bytes of the parameter that came; the parameter's revision, as
                                  received, when the blade refused */
    uint8_t data[200];       /**< 2-201: the parameter, most significant byte first where it is an
                                  address; zeros behind it */
} lan_parameter_data;

/**
 * Set LAN Configuration Parameters. Writes one debug line.
 *
 * Request 0x0C 0x01, 2 + `length` bytes; output 1 byte; refuses a null location or output, or a
 * `length` above 253.
 *
 * @param location   the blade.
 * @param parameter  which parameter, e.g. 3 for the IP address.
 * @param data       its value, `length` bytes; may be null where there are none.
 * @param length     0 to `LAN_PARAMETER_MAX`; more is `IPMI_ERR_INVALID_PARAM`, without any line.
 * @param out        gets 1 byte, the completion code.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_lan_parameters(const blade_location *location, uint8_t parameter,
                                                  const uint8_t *data, uint32_t length,
                                                  uint8_t *out);
RUK_IPMI_API int ipmi_set_lan_parameters(int blade_num, uint8_t parameter, const uint8_t *data,
                                         uint32_t length, uint8_t *out);

/**
 * Get LAN Configuration Parameters, set and block 0.
 *
 * Request 0x0C 0x02, 4 bytes; output 202 bytes; refuses a null location or output.
 *
 * @param location   the blade.
 * @param parameter  which parameter.
 * @param out        gets 202 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_lan_parameters(const blade_location *location, uint8_t parameter,
                                                  lan_parameter_data *out);
RUK_IPMI_API int ipmi_get_lan_parameters(int blade_num, uint8_t parameter, lan_parameter_data *out);

#ifdef __cplusplus
}
#endif

#endif
