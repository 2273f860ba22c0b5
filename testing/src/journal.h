// What the library did to its platform, in order: calls of the message service and log lines. Each
// is one event; a test compares the events it saw with events it writes down:
//
//     EXPECT_EQ(platform.log(), (events{error_line("Invalid parameter to IPMI interface\n")}));
//
// Events print as text, so a failed comparison can be read.
#ifndef RUK_IPMI_TESTING_JOURNAL_H
#define RUK_IPMI_TESTING_JOURNAL_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "hex.h"

namespace ruk_ipmi_testing
{

enum class channel {
    attach, // calls of the message service
    send,
    receive,
    detach,
    os,    // calls of the operating-system layer, and the search for shared memory
    error, // log lines, each with the log it went to
    notice,
    debug,
    verbose,
    dump,
    os_log
};

struct event {
    channel on;
    std::string text;
};

using events = std::vector<event>;

bool operator==(const event &a, const event &b);
bool operator!=(const event &a, const event &b);
std::ostream &operator<<(std::ostream &out, const event &event);

bool is_log_line(const event &event);

// "error: no": a line of a log with the log's name, without its line end.
std::string line_text(const event &event);

// Calls of the message service.
event attached();
event sent(uint32_t length, uint32_t component = 4, uint32_t flags = 0);
event received(uint32_t index, uint32_t timeout, uint32_t capacity, uint32_t component = 4);
event detached();

// Calls of the operating-system layer, by function and arguments: "os_mutex_get name, 100 ticks".
event os_call(std::string text);

// Log lines, with their text as it was written, line end included.
event error_line(std::string text);
event notice_line(std::string text);
event debug_line(std::string text);
event verbose_line(std::string text);
event dump_line(const std::string &title, const bytes &data, uint32_t last_argument = 1);
event os_log_line(const std::string &text, int facility = 1, int level = 4);

// Text with numbers in it, in the manner of printf.
std::string formatted(const char *format, ...) __attribute__((format(printf, 1, 2)));

} // namespace ruk_ipmi_testing

#endif
