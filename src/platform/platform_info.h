/** What the platform says about the chassis. Whoever ports the library provides `_gPlatInfo`. */
#ifndef RUK_PLATFORM_PLATFORM_INFO_H
#define RUK_PLATFORM_PLATFORM_INFO_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Words of the platform-information record that the library reads. */
enum {
    PLAT_INFO_TYPE = 0,      /**< platform type */
    PLAT_INFO_LOCATION = 28, /**< its low byte goes with the physical location of a blade */
    PLAT_INFO_SLOTS = 35     /**< number of slots in the chassis */
};

/** The platform-information record, in host byte order: 36 words or more, never null, and valid
 *  for the life of the process. */
const uint32_t *_gPlatInfo(void);

#ifdef __cplusplus
}
#endif

#endif
