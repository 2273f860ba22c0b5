// The log on ordinary Linux. RUK_LOG says how much and where: none, error (the default), notice,
// debug or verbose, with "syslog:" before it for the system's log instead of standard error.

#include "platform/log.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

namespace
{

enum level { none, error, notice, debug, verbose };

constexpr const char *level_names[] = {"none", "error", "notice", "debug", "verbose"};

struct settings {
    level most = error;
    bool to_syslog = false;
};

settings read_settings()
{
    settings chosen;
    const char *value = getenv("RUK_LOG");
    if (!value)
        return chosen;
    std::string_view text = value;
    constexpr std::string_view syslog_prefix = "syslog:";
    if (text.substr(0, syslog_prefix.size()) == syslog_prefix) {
        chosen.to_syslog = true;
        text.remove_prefix(syslog_prefix.size());
    }
    for (int candidate = none; candidate <= verbose; ++candidate)
        if (text == level_names[candidate])
            chosen.most = static_cast<level>(candidate);
    return chosen;
}

const settings &current()
{
    static const settings chosen = read_settings();
    return chosen;
}

int syslog_priority(level of)
{
    switch (of) {
    case error:
        return LOG_ERR;
    case notice:
        return LOG_NOTICE;
    default:
        return LOG_DEBUG;
    }
}

// Time, level, process and thread, e.g. "2026-03-01T10:20:30.123Z error ruk-ipmi[812:813] ".
std::string line_head(level of)
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    tm utc;
    gmtime_r(&now.tv_sec, &utc);
    char date[32];
    strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &utc);
    char head[128];
    snprintf(head, sizeof head, "%s.%03ldZ %s %s[%d:%ld] ", date, now.tv_nsec / 1000000,
             level_names[of], program_invocation_short_name, getpid(), syscall(SYS_gettid));
    return head;
}

// One log line for each line of the text; a message's own line ends, before and behind, are not
// told apart from none. A message goes out in one write, so that processes do not mix theirs.
void emit(level of, std::string_view text)
{
    const bool to_syslog = current().to_syslog;
    const std::string head = to_syslog ? std::string() : line_head(of);
    std::string out;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty())
            continue;
        if (to_syslog)
            syslog(syslog_priority(of), "%.*s", static_cast<int>(line.size()), line.data());
        else
            out.append(head).append(line).append(1, '\n');
    }
    if (!out.empty() && write(STDERR_FILENO, out.data(), out.size()) < 0)
        return; // nobody is left to tell
}

void log(level of, const char *format, va_list arguments)
{
    if (of > current().most)
        return;
    const int kept_errno = errno;
    char text[2048];
    vsnprintf(text, sizeof text, format, arguments);
    emit(of, text);
    errno = kept_errno;
}

} // namespace

void slog_elog(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    log(error, format, arguments);
    va_end(arguments);
}

void slog_nlog(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    log(notice, format, arguments);
    va_end(arguments);
}

void slog_dlog(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    log(debug, format, arguments);
    va_end(arguments);
}

void slog_vlog(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    log(verbose, format, arguments);
    va_end(arguments);
}

void os_log(int, int, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    log(debug, format, arguments);
    va_end(arguments);
}

void slog_dump(const char *title, const void *buffer, uint32_t length, uint32_t)
{
    if (debug > current().most)
        return;
    const int kept_errno = errno;
    std::string text = title;
    const auto *bytes = static_cast<const unsigned char *>(buffer);
    for (uint32_t at = 0; at < length; ++at) {
        char hex[16];
        if (at % 16 == 0) {
            snprintf(hex, sizeof hex, "\n  %04x:", at);
            text += hex;
        }
        snprintf(hex, sizeof hex, " %02x", bytes[at]);
        text += hex;
    }
    emit(debug, text);
    errno = kept_errno;
}
