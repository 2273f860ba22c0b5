/**
 * The switches of a sled: the configuration file that its blade is to apply, how far the blade has
 * come with it, the links, and the map of dynamic MAC addresses.
 *
 * All commands but the map are the OEM parameter command (network function 0x30, command 0xD0) and
 * wait up to 500 ticks. Results of every function: 0; `IPMI_ERR_INVALID_PARAM` for an argument it
 * refuses (one error line, nothing sent, output untouched); a status of the message service; or the
 * completion code (0x01-0xFF) with which the blade refused. Where a failing exchange brought both a
 * status and a completion code, the two configuration commands and the map return the completion
 * code, and write both to the error log.
 */
#ifndef RUK_IPMI_SLED_SWITCH_H
#define RUK_IPMI_SLED_SWITCH_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** How far a blade is with its switch configuration: `sled_switch_config.status`. */
enum {
    SLED_SWITCH_NOT_STARTED = 0,
    SLED_SWITCH_COMPLETED = 1,
    SLED_SWITCH_PENDING = 2,
    SLED_SWITCH_TFTP_FAILURE = 3,
    SLED_SWITCH_FILE_ACCESS_ERROR = 4,
    SLED_SWITCH_EEPROM_ERROR = 5,
    SLED_SWITCH_VERIFICATION_ERROR = 6,
    SLED_SWITCH_GENERAL_FAILURE = 7,
    SLED_SWITCH_FILE_SIZE_CRC_ERROR = 8
};

/** A switch configuration file, 40 bytes, in host byte order. */
typedef struct sled_switch_config {
    uint8_t reserved[2]; /**< 0-1: the caller's own */
    uint8_t status;      /**< 2: how far the blade is; set by the get */
    uint8_t len;         /**< 3: length value that goes with the file, not 0 */
    uint32_t crc;        /**< 4-7: CRC of the file; not set by the get */
    char name[32];       /**< 8-39: file name, of which the first 16 bytes travel */
} sled_switch_config;

/**
 * Tells a blade which switch configuration to apply (parameter group 0x0C).
 *
 * Request 0x30 0xD0, 31 bytes; output none; refuses a null location or configuration, or a `len`
 * of 0.
 *
 * @param location  the blade.
 * @param cfg       the file; `len` must not be 0.
 * @return as all.
 */
RUK_IPMI_API int ipmi_set_sled_switch_configuration(const blade_location *location,
                                                    const sled_switch_config *cfg);

/**
 * Asks a blade for its switch configuration and how far it is (parameter group 0x0C). A blade that
 * answers 0xC6, request data truncated, is asked a second time, for the status alone.
 *
 * Request 0x30 0xD0, 31 bytes; output 40 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets `status` and, unless the blade told the status alone, `len` and 16 bytes of
 *                  `name`, whose last byte becomes 0; written only when an answer came.
 * @return as all; when the blade answers 0xC6 twice, 0 (or the second exchange's status), and `out`
 *         is untouched.
 */
RUK_IPMI_API int ipmi_get_sled_switch_configuration(const blade_location *location,
                                                    sled_switch_config *out);

/**
 * Asks for the state of a sled's two switch links (parameter group 0x0D). The outputs are written
 * only when the result is 0.
 *
 * Request 0x30 0xD0, 6 bytes; output 1 + 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param link_a    gets 1 byte as the blade has it.
 * @param link_b    likewise.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_sled_switch_link_status(const blade_location *location,
                                                           uint8_t *link_a, uint8_t *link_b);

/**
 * Gives a blade a map of dynamic MAC addresses to I/O modules.
 *
 * Request 0x30 0xCB, 8 + `map_len` bytes; output none; refuses a null location or map, or a
 * `map_len` above 128.
 *
 * @param location  the blade.
 * @param map_id    which map; passed on.
 * @param map       `map_len` bytes; passed on. Must not be null, even when there are none.
 * @param map_len   0 to 128.
 * @return as all.
 */
RUK_IPMI_API int ipmi_set_dynamic_mac_iom_map(const blade_location *location, uint8_t map_id,
                                              const uint8_t *map, uint32_t map_len);

/**
 * Names a configuration status. Sends nothing.
 *
 * @param status  one of `SLED_SWITCH_…`.
 * @return its name, e.g. "Completed"; null above 8.
 */
RUK_IPMI_API const char *ipmi_switch_config_status_to_str(uint32_t status);

#ifdef __cplusplus
}
#endif

#endif
