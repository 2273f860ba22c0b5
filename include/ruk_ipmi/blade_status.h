/**
 * How a blade is: queries and small actions on its management controller.
 *
 * The commands are of network function 0x30 unless told otherwise, and wait up to 500 ticks.
 * Results of every function: 0; `IPMI_ERR_INVALID_PARAM` for a null output or, where its text does
 * not say otherwise, location (one error line, nothing sent, output untouched); a status of the
 * message service; or the completion code (0x01-0xFF) with which the blade refused. The output gets
 * the first bytes of the answer as they come, completion code first, from every call that was sent,
 * successful or not; their meaning is the blade's to say, as is that of arguments that are passed
 * on. The short forms take the blade's number, its slot, of which the low 8 bits count.
 */
#ifndef RUK_IPMI_BLADE_STATUS_H
#define RUK_IPMI_BLADE_STATUS_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Asks for the status of the host's events.
 *
 * Request 0x30 0x51, 0 bytes; output 6 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 6 bytes; the 16-bit number in bytes 1-2 is turned to host byte order.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_host_event_status(const blade_location *location, uint8_t out[6]);
RUK_IPMI_API int ipmi_host_event_status(int blade_num, uint8_t out[6]);

/**
 * Asks for the status of the virtual KVM.
 *
 * Request 0x30 0x8D, 0 bytes; output 7 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 7 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_vkvm_status(const blade_location *location, uint8_t out[7]);
RUK_IPMI_API int ipmi_get_vkvm_status(int blade_num, uint8_t out[7]);

/**
 * Asks for the status of the virtual media.
 *
 * Request 0x30 0x8E, 0 bytes; output 5 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 5 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_vmedia_status(const blade_location *location, uint8_t out[5]);
RUK_IPMI_API int ipmi_get_vmedia_status(int blade_num, uint8_t out[5]);

/**
 * Asks for the status of the controller itself.
 *
 * Request 0x30 0x90, 0 bytes; output 7 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 7 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_imc_status(const blade_location *location, uint8_t out[7]);

/**
 * Lets a controller enter its firmware update. The request's `netfn_cmd` is 0xB818: the network
 * function stands in its shifted form, with LUN 0 in its low bits.
 *
 * Request 0x2E 0x18, 0 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_enter_firmware_update(const blade_location *location, uint8_t *out);
RUK_IPMI_API int ipmi_enter_firmware_update(int blade_num, uint8_t *out);

/**
 * Hands a blade a monitor's identification data, EDID.
 *
 * Request 0x30 0x92, 129 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param which     passed on.
 * @param block     `length` bytes, of which 128 are sent, with zeros where there are fewer.
 * @param length    0 to 487; more ends the process, after an error line.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int location_edid_information(const blade_location *location, uint8_t which,
                                           const uint8_t *block, uint32_t length, uint8_t *out);
RUK_IPMI_API int edid_information(int blade_num, uint8_t which, const uint8_t *block,
                                  uint32_t length, uint8_t *out);

/**
 * Reads a staging block.
 *
 * Request 0x30 0x93, 1 byte; output 257 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param which     passed on.
 * @param out       gets 257 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_read_staging(const blade_location *location, uint8_t which,
                                            uint8_t out[257]);
RUK_IPMI_API int ipmi_read_staging(int blade_num, uint8_t which, uint8_t out[257]);

/**
 * Reads a queue block.
 *
 * Request 0x30 0x94, 2 bytes; output 257 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param first     passed on.
 * @param second    passed on.
 * @param out       gets 257 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_read_queue(const blade_location *location, uint8_t first,
                                          uint8_t second, uint8_t out[257]);
RUK_IPMI_API int ipmi_read_queue(int blade_num, uint8_t first, uint8_t second, uint8_t out[257]);

/**
 * Asks whether a user may log in.
 *
 * Request 0x30 0x96, 36 bytes; output 6 bytes; refuses a null location or output.
 *
 * @param location     the blade.
 * @param first_text   not sent: the second text takes its place.
 * @param second_text  sent in a field of 20 bytes, zeros behind it, and 16 more zeros; what is
 *                     longer is cut. Must not be null.
 * @param out          gets 6 bytes; the 32-bit number in bytes 1-4 is turned to host byte order,
 *                     unless the blade refused.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_login_access(const blade_location *location, const char *first_text,
                                            const char *second_text, uint8_t out[6]);
RUK_IPMI_API int ipmi_login_access(int blade_num, const char *first_text, const char *second_text,
                                   uint8_t out[6]);

/**
 * Lets a blade send a test alert.
 *
 * Request 0x30 0x97, 9 bytes; output 1 byte; refuses a null output.
 *
 * @param location  the blade; must not be null.
 * @param which     passed on.
 * @param data      4 bytes, passed on as they lie; must not be null.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_test_alert(const blade_location *location, uint8_t which,
                                          const void *data, uint8_t *out);

/**
 * Asks for the status of the identify LED.
 *
 * Request 0x30 0x32, 0 bytes; output 2 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets bytes 0-1 of the answer as they come.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_identify_led_status(const blade_location *location, uint8_t out[2]);
RUK_IPMI_API int ipmi_identify_led_status(int blade_num, uint8_t out[2]);

/**
 * Asks for the last POST codes.
 *
 * Request 0x30 0x99, 0 bytes; output 131 bytes; refuses a null output.
 *
 * @param location  the blade; must not be null.
 * @param out       gets 131 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_last_post_code(const blade_location *location, uint8_t out[131]);
RUK_IPMI_API int ipmi_get_last_post_code(int blade_num, uint8_t out[131]);

#ifdef __cplusplus
}
#endif

#endif
