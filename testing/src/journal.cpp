#include "journal.h"

#include <cstdarg>
#include <cstdio>
#include <ostream>
#include <utility>

namespace ruk_ipmi_testing
{

namespace
{

const char *name_of(channel channel)
{
    switch (channel) {
    case channel::attach:
        return "attach";
    case channel::send:
        return "send";
    case channel::receive:
        return "receive";
    case channel::detach:
        return "detach";
    case channel::os:
        return "os";
    case channel::error:
        return "error";
    case channel::notice:
        return "notice";
    case channel::debug:
        return "debug";
    case channel::verbose:
        return "verbose";
    case channel::dump:
        return "dump";
    case channel::os_log:
        return "os_log";
    }
    return "?";
}

} // namespace

std::string formatted(const char *format, ...)
{
    char text[1024];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

bool operator==(const event &a, const event &b)
{
    return a.on == b.on && a.text == b.text;
}

bool operator!=(const event &a, const event &b)
{
    return !(a == b);
}

// Line ends are shown, for they belong to the text.
std::ostream &operator<<(std::ostream &out, const event &event)
{
    out << name_of(event.on) << ": ";
    for (const char c : event.text)
        c == '\n' ? out << "\\n" : out << c;
    return out;
}

bool is_log_line(const event &event)
{
    return event.on >= channel::error;
}

std::string line_text(const event &event)
{
    std::string text = event.text;
    if (!text.empty() && text.back() == '\n')
        text.pop_back();
    return name_of(event.on) + (": " + text);
}

event attached()
{
    return {channel::attach, ""};
}

event sent(uint32_t length, uint32_t component, uint32_t flags)
{
    return {channel::send,
            formatted("%u bytes to component %u, flags %u", length, component, flags)};
}

event received(uint32_t index, uint32_t timeout, uint32_t capacity, uint32_t component)
{
    return {channel::receive, formatted("message %u from component %u within %u ticks, room for %u",
                                        index, component, timeout, capacity)};
}

event detached()
{
    return {channel::detach, ""};
}

event os_call(std::string text)
{
    return {channel::os, std::move(text)};
}

event error_line(std::string text)
{
    return {channel::error, std::move(text)};
}

event notice_line(std::string text)
{
    return {channel::notice, std::move(text)};
}

event debug_line(std::string text)
{
    return {channel::debug, std::move(text)};
}

event verbose_line(std::string text)
{
    return {channel::verbose, std::move(text)};
}

event dump_line(const std::string &title, const bytes &data, uint32_t last_argument)
{
    return {channel::dump, "\"" + title + "\" " + hex(data) + formatted(", %u", last_argument)};
}

event os_log_line(const std::string &text, int facility, int level)
{
    return {channel::os_log, formatted("%d, %d, ", facility, level) + text};
}

} // namespace ruk_ipmi_testing
