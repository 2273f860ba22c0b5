/**
 * System information parameters: version strings, names, and what makers add to them.
 *
 * All commands are of network function 0x06 (App) and wait up to 500 ticks for each of a value's
 * blocks. Results of every command: 0; `IPMI_ERR_INVALID_PARAM` for an argument it refuses (one
 * error line, nothing sent, output untouched); a status of the message service; or the completion
 * code (0x01-0xFF) with which the blade refused. The short forms take the blade's number, its slot,
 * of which the low 8 bits count.
 */
#ifndef RUK_IPMI_SYSTEM_INFO_H
#define RUK_IPMI_SYSTEM_INFO_H

#include "ruk_ipmi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A parameter that was read, 259 bytes. */
typedef struct RUK_IPMI_PACKED sys_info_value {
    uint8_t revision;     /**< 0: byte 0 of the answer */
    uint8_t set_selector; /**< 1: byte 1 of the answer */
    uint8_t length;       /**< 2: bytes of the value as the blade has it */
    uint8_t value[256];   /**< 3-258: the value, zeros behind it */
} sys_info_value;

/** A parameter that is asked for by its selectors, and the answer. */
typedef struct RUK_IPMI_PACKED sys_info_param {
    uint8_t parameter;      /**< 0: in: which parameter */
    uint8_t set_selector;   /**< 1: in */
    uint8_t block_selector; /**< 2: in */
    uint8_t revision;       /**< 3: out: byte 0 of the answer */
    uint8_t second;         /**< 4: out: byte 1 of the answer */
    uint8_t length;         /**< 5: in: bytes of `data` to send behind the selectors; out: bytes
                                 that came */
    uint8_t data[255];      /**< 6: in: sent as it is; out: the answer from its byte 2 on */
} sys_info_param;

/**
 * Set System Info Parameters: a value in as many blocks as it takes. The blocks of a value go on
 * where one is not got through, and end where one is refused.
 *
 * Request 0x06 0x58, 1 to 488 bytes; output 1 byte; refuses a null location or output, or another
 * parameter.
 *
 * @param location   the blade.
 * @param parameter  0x00 to 0x02, 0xD1, 0xDC to 0xE0, 0xF2 and 0xF3: a text in blocks of 16 bytes,
 *                   14 in the first; 0xD0: likewise, 13 in the first; 0xC0 to 0xC7: bytes behind
 *                   their count; 0xE2, 0xE5 and 0xFA: bytes alone. Any other is refused.
 * @param value      `length` bytes; may be null where there are none.
 * @param length     its low 8 bits are told to the blade. What goes in one block must fit a request
 *                   (486 or 487 bytes): more ends the process, after an error line.
 * @param out        gets byte 0 of the last answer, unless an earlier block was refused; must not
 *                   be null.
 * @return as all.
 */
RUK_IPMI_API int location_set_sys_info(const blade_location *location, uint8_t parameter,
                                       const uint8_t *value, uint32_t length, uint8_t *out);
RUK_IPMI_API int set_sys_info(int blade_num, uint8_t parameter, const uint8_t *value,
                              uint32_t length, uint8_t *out);

/**
 * Get System Info Parameters: a whole value, put together from as many blocks as the blade has.
 *
 * Request 0x06 0x59, 4 or 6 bytes; output 259 bytes; refuses a null location or output.
 *
 * @param location   the blade.
 * @param parameter  0x00 to 0x04, 0xD1, 0xDC to 0xE0 and 0xD0: a text in blocks; those of 0x01 to
 *                   0x04 are turned from UTF-8 or UTF-16 to printable ASCII, with a terminator and
 *                   a debug line. 0xC0 to 0xC7: the whole answer lies at the record's beginning.
 *                   0xDA: bytes behind their count. 0xD4, 0xD5: the values of all sets, one behind
 *                   the other. Any other: one block.
 * @param out        cleared first. What does not fit its 256 bytes is not kept.
 * @return as all.
 */
RUK_IPMI_API int location_get_sys_info(const blade_location *location, uint8_t parameter,
                                       sys_info_value *out);
RUK_IPMI_API int get_sys_info(int blade_num, uint8_t parameter, sys_info_value *out);

/**
 * Get System Info Parameters: one block, by its selectors. A failure is told in an error line;
 * where it brought both a status and a completion code, the completion code is the result. A null
 * argument has an error line of its own.
 *
 * Request 0x06 0x59, 4 + `length` bytes; output 261 bytes; refuses a null location or parameter.
 *
 * @param location  the blade.
 * @param param     what is asked for; gets the answer when the result is 0.
 * @return as all.
 */
RUK_IPMI_API int location_get_sys_info_ex(const blade_location *location, sys_info_param *param);

/**
 * Turns text of a blade in UTF-8 to printable ASCII: each character outside it becomes an asterisk.
 * Blades send the bytes of a character least significant first, so the lead byte comes last.
 *
 * @param source       `length` bytes.
 * @param text         cleared; gets a character for each one of the source, and a terminator at
 *                     `text[length]`: it must have room for `length` + 1.
 * @param text_size    bytes to clear, not below `length`.
 * @param length       bytes of the source.
 * @return 0; or -1, with an error line, when `text_size` is too small or the source is not such
 *         text: what was turned until there is kept.
 */
RUK_IPMI_API int UTF8_2_PrintableASCII(const uint8_t *source, char *text, uint32_t text_size,
                                       uint32_t length);

/**
 * Turns text of a blade in UTF-16, least significant byte first, to printable ASCII: each unit
 * outside it becomes an asterisk.
 *
 * @param text         cleared; gets a character for each unit, and a terminator at
 *                     `text[text_size]`: it must have room for `text_size` + 1.
 * @param text_size    bytes to clear, above the number of units.
 * @param source       `length` bytes; an odd last one is left out.
 * @param length       bytes of the source.
 * @return 0; or -1, with an error line, when `text_size` is too small.
 */
RUK_IPMI_API int Unicode16_2_PrintableASCII(char *text, uint32_t text_size, const uint8_t *source,
                                            uint32_t length);

#ifdef __cplusplus
}
#endif

#endif
