/**
 * Information of the chassis and of its storage, which the chassis manager passes through to a
 * blade (network function 0x30, command 0xCB).
 *
 * Both commands wait up to 500 ticks. Results: 0; `IPMI_ERR_INVALID_PARAM` for an argument that is
 * refused (nothing sent, output untouched); a status of the message service; or the completion code
 * (0x01-0xFF) with which the blade refused. The output gets the first bytes of the answer as they
 * come, completion code first, from every call that was sent, successful or not.
 *
 * The request block that a caller brings along is 6 bytes and what goes with them: 0 not used; 1 an
 * option, which only a log line tells; 2-3 the length of the data and 4-5 a second number, 16 bits
 * each in host byte order, sent least significant byte first; from 6 on the data, sent as it is.
 * The request is the command, the sub-command, the two numbers and the data.
 */
#ifndef RUK_IPMI_PASS_THROUGH_H
#define RUK_IPMI_PASS_THROUGH_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Passes information of the chassis to a blade.
 *
 * Request 0x30 0xCB, `request_len` bytes; output 134 bytes; refuses a null location or output.
 *
 * @param location     the blade; null is refused with one error line.
 * @param cmd          first byte of the request.
 * @param sub_cmd      second byte of the request.
 * @param request_len  bytes of the request, 6 and those of the data; with less than 6 there are
 *                     none, and above 488 the process ends, after an error line.
 * @param request      the block; must not be null.
 * @param out          gets 134 bytes; null is refused as a null location is.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_process_zat_chassis_info(const blade_location *location, uint8_t cmd,
                                                        uint8_t sub_cmd, int request_len,
                                                        const void *request, uint8_t out[134]);
RUK_IPMI_API int ipmi_process_zat_chassis_info(int blade_num, uint8_t cmd, uint8_t sub_cmd,
                                               int request_len, const void *request,
                                               uint8_t out[134]);

/**
 * Passes information of the chassis' storage to a blade, as
 * `ipmi_location_process_zat_chassis_info` does that of the chassis.
 *
 * Request 0x30 0xCB, `request_len` bytes; output 262 bytes; refuses a null output.
 *
 * @param blade_num    the blade's slot, of which the low 8 bits count.
 * @param cmd          first byte of the request.
 * @param sub_cmd      second byte of the request.
 * @param request_len  as for the chassis.
 * @param request      the block; must not be null.
 * @param out          gets 262 bytes; null is refused with an error line and a debug line of the
 *                     arguments.
 * @return as all.
 */
RUK_IPMI_API int ipmi_process_zat_storage_info(int blade_num, uint8_t cmd, uint8_t sub_cmd,
                                               int request_len, const void *request,
                                               uint8_t out[262]);

#ifdef __cplusplus
}
#endif

#endif
