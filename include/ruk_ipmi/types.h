/**
 * What every family shares: the address of a blade, the status codes, and the two records in which
 * a request travels to a blade and its answer comes back.
 */
#ifndef RUK_IPMI_TYPES_H
#define RUK_IPMI_TYPES_H

#include <stdint.h>

/** Marks what the shared library exports. */
#ifndef RUK_IPMI_API
#define RUK_IPMI_API __attribute__((visibility("default")))
#endif

/** A record without padding: its layout is the same bytes on every host. */
#define RUK_IPMI_PACKED __attribute__((packed))

/**
 * Status codes of the library.
 *
 * A command function's result is 0 (success), one of these, another value above 0xFF (a status of
 * the platform's message service, passed on unchanged), or a value from 0x01 to 0xFF: the IPMI
 * completion code with which the blade's controller refused the command.
 */
enum {
    IPMI_ERR_NO_MEMORY = 0x5104,    /**< no memory for an asynchronous request */
    IPMI_ERR_BAD_LOCATION = 0x5105, /**< slot and sub-slot are both 0 */
    IPMI_ERR_RESOURCE = 0x5106,     /**< null argument to a shared-memory or mutex function */
    IPMI_ERR_BAD_RESPONSE_LENGTH =
        0x5109,                     /**< the answer is not as long as the command's must be */
    IPMI_ERR_INVALID_PARAM = 0x510a /**< null pointer or value out of range; nothing sent */
};

/** Number of the message service's component that talks IPMI to the blades. */
enum { IPMI_COMPONENT = 4 };

/** The address of a blade, 4 bytes. Sent as it is; the library does not interpret it. */
typedef struct blade_location {
    uint8_t slot_id;     /**< byte 0: chassis slot, which is the blade number */
    uint8_t sub_slot_id; /**< byte 1: sub-slot within the slot, 0 for a blade that fills its slot */
    uint8_t reserved[2]; /**< bytes 2-3: 0 */
} blade_location;

/** Bytes of payload that fit a request. */
enum { IPMI_REQUEST_DATA_SIZE = 488 };

/** Bytes of data that fit a response record. */
enum { IPMI_RESPONSE_DATA_SIZE = 484 };

/**
 * A request on its way to a blade, 512 bytes. The words are in host byte order. Zero the whole
 * record before filling it.
 */
typedef struct ipmi_request {
    uint32_t msg_type;                    /**< 0x00: stored by the exchange (0x101) */
    uint32_t reserved_04;                 /**< 0x04: 0 */
    blade_location location;              /**< 0x08: the blade to ask */
    uint32_t reserved_0c;                 /**< 0x0C: 0 */
    uint32_t netfn_cmd;                   /**< 0x10: network function << 8 | command, e.g. 0x0A43 */
    uint32_t data_len;                    /**< 0x14: bytes of payload in `data` */
    uint8_t data[IPMI_REQUEST_DATA_SIZE]; /**< 0x18: payload */
} ipmi_request;

/** An answer from a blade, 512 bytes. The words are in host byte order. Zero it before use. */
typedef struct ipmi_response {
    uint32_t msg_type;       /**< 0x00: filled by the message service */
    uint32_t reserved_04;    /**< 0x04: filled by the message service */
    blade_location location; /**< 0x08: the blade that answered */
    uint32_t reserved_0c;    /**< 0x0C: the request's word at 0x0C */
    uint32_t netfn_cmd;      /**< 0x10: the request's `netfn_cmd` */
    uint32_t comp_code;      /**< 0x14: IPMI completion code, 0 for success */
    uint32_t data_len;       /**< 0x18: in: capacity (see the exchange); out: bytes in `data` */
    uint8_t data[IPMI_RESPONSE_DATA_SIZE]; /**< 0x1C: completion code, then the answer's bytes */
} ipmi_response;

#endif
