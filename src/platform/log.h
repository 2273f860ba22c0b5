/**
 * The platform's log. Formats are those of printf, and a message carries its own line end, or
 * none. Whoever ports the library provides these functions, with C linkage; they may be called
 * from any thread, keep the calling thread's errno, and never fail.
 */
#ifndef RUK_PLATFORM_LOG_H
#define RUK_PLATFORM_LOG_H

#include <stdint.h>

#define RUK_PLATFORM_PRINTF(text, first) __attribute__((format(printf, text, first)))

#ifdef __cplusplus
extern "C" {
#endif

/** Errors. */
void slog_elog(const char *format, ...) RUK_PLATFORM_PRINTF(1, 2);

/** Notices. */
void slog_nlog(const char *format, ...) RUK_PLATFORM_PRINTF(1, 2);

/** Debug. */
void slog_dlog(const char *format, ...) RUK_PLATFORM_PRINTF(1, 2);

/** Verbose: more than debug. */
void slog_vlog(const char *format, ...) RUK_PLATFORM_PRINTF(1, 2);

/** `length` bytes of `buffer` in hexadecimal under a title, on the debug level. The last argument
 *  is 1. */
void slog_dump(const char *title, const void *buffer, uint32_t length, uint32_t reserved);

/** The OS layer's own log, used in a few places, always with 1 and 4. */
void os_log(int facility, int level, const char *format, ...) RUK_PLATFORM_PRINTF(3, 4);

#ifdef __cplusplus
}
#endif

#endif
