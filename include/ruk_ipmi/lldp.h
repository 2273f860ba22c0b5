/** LLDP connection information, which the chassis manager hands to a blade. */
#ifndef RUK_IPMI_LLDP_H
#define RUK_IPMI_LLDP_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Writes a blade's LLDP connection information (parameter group 0x24), in as many requests of up
 * to 500 ticks each as it takes.
 *
 * Request 0x30 0xD0, 8 to 136 bytes each; output none; refuses a null location or information.
 *
 * Up to 128 bytes go whole, behind their length + 2. More than that goes as a stream of `info_len`
 * bytes that begins with the two bytes of `info_len` itself: 128 bytes of `info` in the first
 * request, 128 or what is left in each further one, so that the last two bytes of `info` never go
 * out.
 *
 * @param location  the blade.
 * @param info      the information; passed on.
 * @param info_len  its length in bytes; 0 sends nothing.
 * @return the result of the last request: 0, a status of the message service, or the completion
 *         code (0x01-0xFF) with which the blade refused it. Requests before it may have failed,
 *         which only the log tells; none is left out for that. `IPMI_ERR_INVALID_PARAM` when
 *         `location` or `info` is null (one error line, nothing sent).
 */
RUK_IPMI_API int ipmi_location_set_lldp_connection_info(const blade_location *location,
                                                        const uint8_t *info, uint16_t info_len);

#ifdef __cplusplus
}
#endif

#endif
