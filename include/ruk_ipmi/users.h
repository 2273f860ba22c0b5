/**
 * The user accounts of a blade's controller.
 *
 * All commands are of network function 0x06 (App) and wait up to 500 ticks. Results of every
 * function: 0; `IPMI_ERR_INVALID_PARAM` for a null location or output, or a value that its text
 * does not allow (one error line, nothing sent); a status of the message service; or the completion
 * code (0x01-0xFF) with which the blade refused. `out` gets 1 byte, the completion code, from every
 * call that was sent. The short forms take the blade's number, its slot, of which the low 8 bits
 * count.
 */
#ifndef RUK_IPMI_USERS_H
#define RUK_IPMI_USERS_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Set User Name.
 *
 * Request 0x06 0x45, 17 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param user_id   which user; sent as it is.
 * @param name      sent in a field of 16 bytes, zeros behind it; what is longer is cut. Must not be
 *                  null.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int location_set_user_name(const blade_location *location, uint8_t user_id,
                                        const char *name, uint8_t *out);
RUK_IPMI_API int set_user_name(int blade_num, uint8_t user_id, const char *name, uint8_t *out);

/**
 * Set User Password, to set one (operation 2).
 *
 * Request 0x06 0x47, 22 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param user_id   sent as it is: whose controller wants bit 7 for a password of 20 bytes sets it.
 * @param password  sent in a field of 20 bytes, zeros behind it; what is longer is cut. Must not be
 *                  null.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int location_set_user_password(const blade_location *location, uint8_t user_id,
                                            const char *password, uint8_t *out);
RUK_IPMI_API int set_user_password(int blade_num, uint8_t user_id, const char *password,
                                   uint8_t *out);

/**
 * Set User Password, to disable or enable a user (operation 0 or 1).
 *
 * Request 0x06 0x47, 2 bytes; output 1 byte; refuses a null location or output, or an `enable`
 * above 1.
 *
 * @param location  the blade.
 * @param user_id   which user; sent as it is.
 * @param enable    0 or 1.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int location_enable_disable_user(const blade_location *location, uint8_t user_id,
                                              uint32_t enable, uint8_t *out);
RUK_IPMI_API int enable_disable_user(int blade_num, uint8_t user_id, uint32_t enable, uint8_t *out);

/**
 * Set User Access: a user's privilege and session limits on channel 1; what kinds of access he has
 * there stays as it is.
 *
 * Request 0x06 0x43, 4 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location         the blade.
 * @param user_id          which user; sent as it is.
 * @param privilege_limit  passed on.
 * @param session_limit    passed on.
 * @param out              gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int location_set_user_access(const blade_location *location, uint8_t user_id,
                                          uint8_t privilege_limit, uint8_t session_limit,
                                          uint8_t *out);
RUK_IPMI_API int set_user_access(int blade_num, uint8_t user_id, uint8_t privilege_limit,
                                 uint8_t session_limit, uint8_t *out);

#ifdef __cplusplus
}
#endif

#endif
