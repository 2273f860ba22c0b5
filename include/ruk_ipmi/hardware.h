/**
 * A blade's own hardware: its LEDs, the node's power button, the CPLD, the POST code.
 *
 * All commands wait up to 500 ticks. Results of every function: 0; `IPMI_ERR_INVALID_PARAM` for a
 * null argument (nothing sent, output untouched; one error line, but for the LEDs); a status of the
 * message service; or the completion code (0x01-0xFF) with which the blade refused.
 */
#ifndef RUK_IPMI_HARDWARE_H
#define RUK_IPMI_HARDWARE_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Lets the server's (KVM) LED blink, or stops it (parameter group 0x0E).
 *
 * Request 0x30 0xD0, 20 bytes; output none; refuses a null location, or one of zeros.
 *
 * @param location  the blade.
 * @param blink     not 0: blink; 0: stop.
 * @return 0, also when the blade refused, which only the error log tells; `IPMI_ERR_BAD_LOCATION`
 *         when slot and sub-slot are both 0 (nothing sent); otherwise as all.
 */
RUK_IPMI_API int ipmi_blink_unblink_serverled_kvm(const blade_location *location, uint32_t blink);

/**
 * Lets the sled's drive LED blink, or stops it; otherwise as `ipmi_blink_unblink_serverled_kvm`.
 *
 * Request 0x30 0xD0, 20 bytes; output none; refuses a null location, or one of zeros.
 *
 * @param location  the blade.
 * @param blink     not 0: blink; 0: stop.
 * @return as `ipmi_blink_unblink_serverled_kvm`.
 */
RUK_IPMI_API int ipmi_blink_unblink_sled_driveled(const blade_location *location, uint32_t blink);

/**
 * Set Front Panel Button Enables.
 *
 * Request 0x00 0x0A, 1 byte; output none; refuses a null location.
 *
 * @param location      the blade.
 * @param button_flags  bit 0: 1 disables the node's power button, 0 enables it. No other bit is
 *                      sent: the other buttons stay enabled.
 * @return as all.
 */
RUK_IPMI_API int ipmi_set_node_power_button(const blade_location *location, uint32_t button_flags);

/**
 * Passes a request to the blade's CPLD.
 *
 * Request 0x30 0xBC, 10 bytes; output 4 bytes; refuses a null location, request or output.
 *
 * @param location  the blade.
 * @param request   10 bytes: 0 operation; 1-2 a 16-bit and 3-6 a 32-bit field; 7-9 more. For the
 *                  operations 2 and 3 the two fields are numbers in host byte order, sent least
 *                  significant byte first; for any other all bytes are sent as they are.
 * @param result    gets bytes 0-3 of the answer as they lie, completion code first; overwritten by
 *                  every call that was sent, successful or not.
 * @return as all.
 */
RUK_IPMI_API int ipmi_cpld_access(const blade_location *location, const uint8_t request[10],
                                  uint32_t *result);

/**
 * Reads a blade's POST code.
 *
 * Request 0x30 0xD4, 4 bytes; output 17 bytes; refuses a null location, request or output.
 *
 * @param location  the blade.
 * @param request   4 bytes; passed on.
 * @param post      gets 17 bytes: 0 the completion code; 1-4 a number in host byte order; 5-16 as
 *                  the blade has them. Overwritten by every call that was sent, successful or not.
 * @return as all.
 */
RUK_IPMI_API int ipmi_bexal_post_code(const blade_location *location, const uint8_t request[4],
                                      uint8_t post[17]);

#ifdef __cplusplus
}
#endif

#endif
