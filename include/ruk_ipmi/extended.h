/**
 * Extended parameters: long values of a blade's controller, read and written piece by piece.
 *
 * A parameter is named by a command byte and an index; the forms without an index take index 0.
 * What they mean is the controller's to say. The commands are of network function 0x2E, whose
 * requests begin with the enterprise number A2 02 00; each of a transfer's requests waits up to 500
 * ticks. Results of every function: 0; `IPMI_ERR_INVALID_PARAM` for a null pointer (one error line,
 * nothing sent, output untouched); a status of the message service; or the completion code
 * (0x01-0xFF) with which the blade refused. The short forms take the blade's number, its slot, of
 * which the low 8 bits count.
 */
#ifndef RUK_IPMI_EXTENDED_H
#define RUK_IPMI_EXTENDED_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Bytes of a parameter that are read at the most. */
enum { EXT_CMD_DATA_MAX = 1024 };

/** A parameter that was read, 1027 bytes. */
typedef struct RUK_IPMI_PACKED ext_cmd_data {
    uint8_t reserved;               /**< 0: 0 */
    uint16_t total;                 /**< 1-2: its length as the blade gives it, these two bytes of
                                         the stream included, in host byte order; 255 as long as
                                         nothing has come */
    uint8_t data[EXT_CMD_DATA_MAX]; /**< 3-1026: the stream, which begins with the length, least
                                         significant byte first; zeros behind it */
} ext_cmd_data;

/**
 * Reads a parameter: up to 255 bytes with the first request, up to 128 with each further one.
 * Where a blade answers 0xC9 (out of range), or with no bytes at all, its length may have changed:
 * reading begins anew, three times at the most. Writes a debug line with the length and one for
 * each new beginning. What lies beyond `EXT_CMD_DATA_MAX` is read but not kept.
 *
 * Request 0x2E 0x02, 9 bytes; output 1027 bytes; refuses a null location or output.
 *
 * A controller that goes on and on with answers without bytes keeps the call going.
 *
 * @param location  the blade.
 * @param command   the parameter.
 * @param index     which of several.
 * @param out       gets 1027 bytes; as much of them as came, when the result is not 0.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_ext_cmd_indexed(const blade_location *location, uint8_t command,
                                                   uint8_t index, ext_cmd_data *out);
RUK_IPMI_API int ipmi_location_get_ext_cmd(const blade_location *location, uint8_t command,
                                           ext_cmd_data *out);
RUK_IPMI_API int ipmi_get_ext_cmd_indexed(int blade_num, uint8_t command, uint8_t index,
                                          ext_cmd_data *out);
RUK_IPMI_API int ipmi_get_ext_cmd(int blade_num, uint8_t command, ext_cmd_data *out);

/**
 * Writes a parameter (network function 0x2E): asks for a transfer's handle, then sends the value
 * in pieces of up to 128 bytes. A piece that is refused ends the transfer; one that does not get
 * through does not, and only the last one's status is returned.
 *
 * Request 0x2E 0x01 and 0x2E 0x03, 3, then 9 to 137 bytes; output 1 byte; refuses a null location,
 * data or output.
 *
 * @param location  the blade.
 * @param command   the parameter.
 * @param index     which of several.
 * @param data      `length` bytes, sent as they are; must not be null, even where there are none.
 * @param length    0 asks for the handle alone.
 * @param out       gets 1 byte, the completion code of the last answer, unless something was
 *                  refused or there is no handle.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_ext_cmd_indexed(const blade_location *location, uint8_t command,
                                                   uint8_t index, const uint8_t *data,
                                                   uint32_t length, uint8_t *out);
RUK_IPMI_API int ipmi_location_set_ext_cmd(const blade_location *location, uint8_t command,
                                           const uint8_t *data, uint32_t length, uint8_t *out);
RUK_IPMI_API int ipmi_set_ext_cmd_indexed(int blade_num, uint8_t command, uint8_t index,
                                          const uint8_t *data, uint32_t length, uint8_t *out);
RUK_IPMI_API int ipmi_set_ext_cmd(int blade_num, uint8_t command, const uint8_t *data,
                                  uint32_t length, uint8_t *out);

#ifdef __cplusplus
}
#endif

#endif
