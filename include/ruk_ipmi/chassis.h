/**
 * Chassis control: a blade's power, its identification, its boot options, its defaults.
 *
 * The standard commands are of network function 0x00 (Chassis); all wait up to 500 ticks. Results
 * of every function: 0; `IPMI_ERR_INVALID_PARAM` for a null location or output (one error line,
 * nothing sent); a status of the message service; or the completion code (0x01-0xFF) with which the
 * blade refused. The output is overwritten by every call that was sent, successful or not. The
 * short forms take the blade's number, its slot, of which the low 8 bits count.
 */
#ifndef RUK_IPMI_CHASSIS_H
#define RUK_IPMI_CHASSIS_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** What Chassis Control does. */
enum {
    CHASSIS_POWER_DOWN = 0,
    CHASSIS_POWER_UP = 1,
    CHASSIS_POWER_CYCLE = 2,
    CHASSIS_HARD_RESET = 3,
    CHASSIS_DIAGNOSTIC_INTERRUPT = 4,
    CHASSIS_SOFT_SHUTDOWN = 5
};

/** Answer of Get System Boot Options, 8 bytes as received. */
typedef struct RUK_IPMI_PACKED boot_options_data {
    uint8_t completion_code;   /**< 0 */
    uint8_t parameter_version; /**< 1 */
    uint8_t parameter;         /**< 2: bits 6-0 the parameter, bit 7: it is invalid */
    uint8_t data[5];           /**< 3-7: what the parameter has, zeros behind it */
} boot_options_data;

/**
 * Chassis Control.
 *
 * Request 0x00 0x02, 1 byte; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param control   one of `CHASSIS_…`, sent as it is.
 * @param out       gets 1 byte, the completion code.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_chassis_control_command(const blade_location *location,
                                                       uint8_t control, uint8_t *out);
RUK_IPMI_API int ipmi_chassis_control_command(int blade_num, uint8_t control, uint8_t *out);

/**
 * Chassis Identify: lets a blade show where it is. Writes one debug line.
 *
 * Request 0x00 0x04, 1 or 2 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param interval  for how many seconds; 0 ends it.
 * @param force     not 0: until it is ended, whatever the interval.
 * @param out       gets 1 byte, the completion code.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_chassis_identify_command(const blade_location *location,
                                                        uint8_t interval, uint8_t force,
                                                        uint8_t *out);
RUK_IPMI_API int ipmi_chassis_identify_command(int blade_num, uint8_t interval, uint8_t force,
                                               uint8_t *out);

/**
 * Get System Boot Options.
 *
 * Request 0x00 0x09, 3 bytes; output 8 bytes; refuses a null location or output.
 *
 * @param location        the blade.
 * @param parameter       which parameter, e.g. 5 for the boot flags.
 * @param set_selector    which of several values.
 * @param block_selector  not used: block 0 is asked for.
 * @param out             gets 8 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_boot_options(const blade_location *location, uint8_t parameter,
                                                uint8_t set_selector, uint8_t block_selector,
                                                boot_options_data *out);

/**
 * Set System Boot Options.
 *
 * Request 0x00 0x08, 1 + `length` bytes; output 1 byte; refuses a null location or output.
 *
 * @param location   the blade.
 * @param parameter  which parameter, with bit 7 as the blade is to mark it.
 * @param data       its value, `length` bytes; may be null where there are none.
 * @param length     0 to 487; more ends the process, after an error line.
 * @param out        gets 1 byte, the completion code.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_boot_options(const blade_location *location, uint8_t parameter,
                                                const uint8_t *data, uint32_t length, uint8_t *out);

/**
 * Sets a blade's controller back to its defaults.
 *
 * Request 0x30 0x21, 1 byte; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param which     passed on.
 * @param out       gets 1 byte, the completion code.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_reset_to_defaults(const blade_location *location, uint8_t which,
                                                 uint8_t *out);

#ifdef __cplusplus
}
#endif

#endif
