/**
 * Files that a blade fetches, and notices of firmware updates and log bundles.
 *
 * All commands are the OEM parameter command (network function 0x30, command 0xD0) and wait up to
 * 500 ticks. Results of every function: 0; `IPMI_ERR_INVALID_PARAM` for an argument it refuses (one
 * error line, nothing sent, output untouched); a status of the message service; or the completion
 * code (0x01-0xFF) with which the blade refused.
 */
#ifndef RUK_IPMI_FILE_TRANSFER_H
#define RUK_IPMI_FILE_TRANSFER_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Tells a blade the network path of a file (parameter group 0x16).
 *
 * Request 0x30 0xD0, 39 bytes; output none; refuses a null location or path, or a path above 29
 * characters.
 *
 * @param location  the blade.
 * @param selector  which file; passed on.
 * @param path      up to 29 characters.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_nfs_path(const blade_location *location, uint8_t selector,
                                            const char *path);

/**
 * Tells a blade the network path of its link-tuning file (parameter group 0x11).
 *
 * Request 0x30 0xD0, 38 bytes; output none; refuses a null location or path, or a path above 29
 * characters.
 *
 * @param location  the blade.
 * @param path      up to 29 characters.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_lt_nfs_path(const blade_location *location, const char *path);

/**
 * Asks how far the copy of a file is (parameter group 0x16).
 *
 * Request 0x30 0xD0, 7 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location     the blade.
 * @param selector     which file; passed on.
 * @param copy_status  gets one character, as the blade has it; written only when the result is 0.
 * @return as all; `IPMI_ERR_BAD_RESPONSE_LENGTH` when the answer is not 9 bytes long.
 */
RUK_IPMI_API int ipmi_location_get_file_cp_status(const blade_location *location, uint8_t selector,
                                                  char *copy_status);

/**
 * Tells a blade the outcome of a firmware update (parameter group 0x16, notice 3).
 *
 * Request 0x30 0xD0, 10 bytes; output none; refuses a null location.
 *
 * @param location  the blade.
 * @param status    passed on.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_fwupdate_status(const blade_location *location, uint8_t status);

/**
 * Tells a blade that a firmware update took too long (parameter group 0x16, notice 4).
 *
 * Request 0x30 0xD0, 9 bytes; output none; refuses a null location.
 *
 * @param location  the blade.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_timeout_error(const blade_location *location);

/**
 * Tells a blade that its log bundle, "zatdumplogs.log.zip", is ready or not (parameter group
 * 0x20).
 *
 * Request 0x30 0xD0, 31 bytes; output none; refuses a null location.
 *
 * @param location  the blade.
 * @param status    passed on.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_dumplogs_status(const blade_location *location, uint8_t status);

#ifdef __cplusplus
}
#endif

#endif
