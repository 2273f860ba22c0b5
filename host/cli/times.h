// Times of day as the tool prints and reads them: ISO 8601 with an explicit zone.
#ifndef RUK_HOST_CLI_TIMES_H
#define RUK_HOST_CLI_TIMES_H

#include <chrono>
#include <cstdint>
#include <string>

namespace cli
{

// Time stamps up to this one count the seconds since the controller started.
constexpr uint32_t last_since_start = 0x20000000;

// The time stamp that says nothing.
constexpr uint32_t unspecified_time = 0xFFFFFFFF;

// A controller's time stamp, in local time ("2026-03-01T11:20:30+01:00") or in UTC
// ("2026-03-01T10:20:30Z"). The two special kinds of time stamp say what they are.
std::string format_time(uint32_t stamp, bool utc);

// The time stamp that `text` means: a date and time like the above, or seconds since 1970. A time
// without a zone, or one that a controller would take for something special, is a usage failure.
uint32_t parse_time(const std::string &text);

// How long something is done again after it was done, in seconds, from 0.1 to 3600. Anything else
// is a usage failure.
std::chrono::milliseconds parse_interval(const std::string &text);

} // namespace cli

#endif
