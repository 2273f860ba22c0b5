/**
 * Power and heat: what a blade draws and how often it was powered, what it is granted, how it is
 * throttled, the fan speed that it asks for.
 *
 * All commands are of network function 0x30 and wait up to 500 ticks. Results of every function: 0;
 * `IPMI_ERR_INVALID_PARAM` for a null output or, where its text does not say otherwise, location
 * (one error line, nothing sent); a status of the message service; or the completion code
 * (0x01-0xFF) with which the blade refused. The output is overwritten by every call that was sent,
 * successful or not; byte 0 of an answer is the completion code, and what the others mean is the
 * blade's to say, as is the meaning of arguments that are passed on. The short forms take the
 * blade's number, its slot, of which the low 8 bits count.
 */
#ifndef RUK_IPMI_POWER_H
#define RUK_IPMI_POWER_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Answer of `ipmi_location_get_power_cycle_data`, 2 bytes as received. */
typedef struct RUK_IPMI_PACKED power_cycle_data {
    uint8_t completion_code; /**< 0 */
    uint8_t data;            /**< 1 */
} power_cycle_data;

/** Answer of `ipmi_location_get_power_consumption_data`, 25 bytes. The values are in host byte
 *  order, unless the blade refused: then the bytes are as received. */
typedef struct RUK_IPMI_PACKED power_consumption_data {
    uint8_t completion_code; /**< 0 */
    uint32_t value_1;        /**< 1-4 */
    uint32_t value_2;        /**< 5-8 */
    uint32_t value_3;        /**< 9-12 */
    uint32_t value_4;        /**< 13-16 */
    uint16_t value_5;        /**< 17-18 */
    uint32_t value_6;        /**< 19-22 */
    uint16_t value_7;        /**< 23-24 */
} power_consumption_data;

/**
 * Asks for a blade's power cycle data.
 *
 * Request 0x30 0x9B, 0 bytes; output 2 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 2 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_power_cycle_data(const blade_location *location,
                                                    power_cycle_data *out);
RUK_IPMI_API int ipmi_get_power_cycle_data(int blade_num, power_cycle_data *out);

/**
 * Asks for a blade's power consumption data.
 *
 * Request 0x30 0x9C, 2 bytes; output 25 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param p1        passed on.
 * @param p2        passed on.
 * @param out       gets 25 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_power_consumption_data(const blade_location *location,
                                                          uint8_t p1, uint8_t p2,
                                                          power_consumption_data *out);

/**
 * Resets a blade's power consumption data.
 *
 * Request 0x30 0x9D, 3 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param p1        passed on.
 * @param p2        passed on.
 * @param p3        passed on.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_reset_power_consumption_data(const blade_location *location,
                                                            uint8_t p1, uint8_t p2, uint8_t p3,
                                                            uint8_t *out);

/**
 * Asks what a blade draws.
 *
 * Request 0x30 0x8F, 0 bytes; output 14 bytes; refuses a null output.
 *
 * @param location  the blade; must not be null.
 * @param out       gets 14 bytes. Unless the blade refused, the 16-bit numbers in bytes 1-2, 3-4,
 *                  5-6, 8-9 and 10-11 are turned to host byte order. Those in 3-4, 8-9 and 10-11
 *                  are reduced by what byte 12 says, 50 at the most and 16 where it says 0; one
 *                  that is below stays as it is.
 * @return as all.
 */
RUK_IPMI_API int location_blade_power_consumption(const blade_location *location, uint8_t out[14]);

/**
 * Tells a blade how efficient its power supply is.
 *
 * Request 0x30 0xC0, 16 bytes; output 1 byte; refuses a null output.
 *
 * @param location    the blade; must not be null.
 * @param first       passed on.
 * @param second      passed on.
 * @param efficiency  1.0 is one hundred per cent; sent in ten-thousandths, of which the low 16 bits
 *                    count, and as one hundred per cent where these are above 9999 or where there
 *                    is no such 32-bit number.
 * @param out         gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_set_efficiency(const blade_location *location, uint8_t first,
                                              uint8_t second, float efficiency, uint8_t *out);
RUK_IPMI_API int ipmi_set_efficiency(int blade_num, uint8_t first, uint8_t second, float efficiency,
                                     uint8_t *out);

/**
 * Answers a blade that has asked for power.
 *
 * Request 0x30 0x87, 5 or 6 bytes; output 2 bytes; refuses a null location or output.
 *
 * @param location         the blade.
 * @param result           outcome of the allocation; passed on.
 * @param fail_reason      passed on.
 * @param power_allocated  sent least significant byte first.
 * @param warning          passed on.
 * @param fail_reason_ext  passed on, on platforms of the types 1, 2, 3, 0x10 to 0x13, 0x20 and 0x21
 *                         alone; there an error line tells all that is sent.
 * @param out              gets bytes 0-1 of the answer as they come.
 * @return as all.
 */
RUK_IPMI_API int location_power_on_response(const blade_location *location, uint8_t result,
                                            uint8_t fail_reason, uint16_t power_allocated,
                                            uint8_t warning, uint8_t fail_reason_ext,
                                            uint16_t *out);

/**
 * Controls the throttling of a blade's processors.
 *
 * Request 0x30 0x8B, 3 bytes; output 3 bytes; refuses a null output.
 *
 * @param location  the blade; must not be null.
 * @param control   passed on.
 * @param out       gets 3 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_cpu_throttling_control(const blade_location *location,
                                                      uint8_t control, uint8_t out[3]);
RUK_IPMI_API int ipmi_cpu_throttling_control(int blade_num, uint8_t control, uint8_t out[3]);

/**
 * Controls the throttling of a blade's memory.
 *
 * Request 0x30 0x9A, 3 bytes; output 1 byte; refuses a null location or output.
 *
 * @param location  the blade.
 * @param control   passed on.
 * @param out       gets 1 byte.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_mem_throttle(const blade_location *location, uint8_t control,
                                            uint8_t *out);
RUK_IPMI_API int ipmi_mem_throttle(int blade_num, uint8_t control, uint8_t *out);

/**
 * Asks which fan speed a blade wants.
 *
 * Request 0x30 0x8C, 0 bytes; output 3 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param out       gets 3 bytes.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_get_requested_fan_speed(const blade_location *location,
                                                       uint8_t out[3]);
RUK_IPMI_API int ipmi_get_requested_fan_speed(int blade_num, uint8_t out[3]);

/**
 * Tells a blade the state of the chassis' fans.
 *
 * Request 0x30 0x95, 3 bytes; output 2 bytes; refuses a null location or output.
 *
 * @param location  the blade.
 * @param status    passed on.
 * @param out       gets bytes 0-1 of the answer as they come.
 * @return as all.
 */
RUK_IPMI_API int ipmi_location_chassis_fan_status(const blade_location *location, uint8_t status,
                                                  uint16_t *out);
RUK_IPMI_API int ipmi_chassis_fan_status(int blade_num, uint8_t status, uint16_t *out);

#ifdef __cplusplus
}
#endif

#endif
