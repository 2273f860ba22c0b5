// Writes one message of each kind, for log_test.py to look at what came of them.

#include <cerrno>

#include "platform/log.h"

int main()
{
    const unsigned char bytes[] = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08,
                                   0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10};
    errno = 77;
    slog_elog("an error %d\n", 1);
    slog_nlog("a notice without a line end");
    slog_dlog("\nline ends before and behind\n");
    slog_dlog("two\nlines\n");
    slog_vlog("something verbose\n");
    os_log(1, 4, "from the OS layer\n");
    slog_dump("A title ", bytes, sizeof bytes, 1);
    slog_dump("Nothing ", nullptr, 0, 1);
    return errno == 77 ? 0 : 1;
}
