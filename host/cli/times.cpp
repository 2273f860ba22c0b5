#include "cli/times.h"

#include <charconv>
#include <ctime>
#include <regex>

#include "cli/failure.h"
#include "cli/numbers.h"

namespace cli
{

namespace
{

std::string printed(const tm &time, const char *format)
{
    char text[40];
    return std::string(text, strftime(text, sizeof text, format, &time));
}

uint32_t checked(int64_t seconds, const std::string &text)
{
    if (seconds <= last_since_start || seconds >= unspecified_time)
        throw usage_failure("\"" + text + "\" is outside of what a controller's clock can hold, " +
                            format_time(last_since_start + 1, true) + " to " +
                            format_time(unspecified_time - 1, true));
    return static_cast<uint32_t>(seconds);
}

// Seconds that the zone's clocks are ahead of UTC.
int zone_offset(const std::string &zone)
{
    if (zone == "Z")
        return 0;
    const int hours = std::stoi(zone.substr(1, 2));
    const int minutes = std::stoi(zone.substr(zone.size() - 2));
    return (zone[0] == '-' ? -60 : 60) * (hours * 60 + minutes);
}

} // namespace

std::string format_time(uint32_t stamp, bool utc)
{
    if (stamp == unspecified_time)
        return "unspecified";
    if (stamp <= last_since_start)
        return std::to_string(stamp) + " s since start";
    const time_t seconds = stamp;
    tm parts{};
    if (utc)
        return printed(*gmtime_r(&seconds, &parts), "%Y-%m-%dT%H:%M:%SZ");
    std::string text = printed(*localtime_r(&seconds, &parts), "%Y-%m-%dT%H:%M:%S%z");
    return text.insert(text.size() - 2, ":");
}

uint32_t parse_time(const std::string &text)
{
    static const std::regex seconds("\\d+");
    if (std::regex_match(text, seconds))
        return checked(parse_number(text, 0, unspecified_time), text);

    static const std::regex date_and_time("(\\d{4})-(\\d{2})-(\\d{2})[T ](\\d{2}):(\\d{2})"
                                          "(?::(\\d{2}))?(Z|[+-](?:0\\d|1[0-4]):?[0-5]\\d)?");
    std::smatch found;
    if (!std::regex_match(text, found, date_and_time))
        throw usage_failure("\"" + text +
                            "\" is not a time: now, 2026-03-01T10:20:30Z or seconds since 1970");
    if (!found[7].matched)
        throw usage_failure("\"" + text + "\" needs its zone: Z, or an offset like +01:00");

    tm parts{};
    parts.tm_year = std::stoi(found[1]) - 1900;
    parts.tm_mon = std::stoi(found[2]) - 1;
    parts.tm_mday = std::stoi(found[3]);
    parts.tm_hour = std::stoi(found[4]);
    parts.tm_min = std::stoi(found[5]);
    parts.tm_sec = found[6].matched ? std::stoi(found[6]) : 0;
    const tm as_given = parts;
    const time_t in_zone = timegm(&parts);
    // A day or an hour that does not exist comes back as another one.
    if (parts.tm_mon != as_given.tm_mon || parts.tm_mday != as_given.tm_mday ||
        parts.tm_hour != as_given.tm_hour || parts.tm_min != as_given.tm_min)
        throw usage_failure("\"" + text + "\": there is no such date or time");
    return checked(in_zone - zone_offset(found[7]), text);
}

std::chrono::milliseconds parse_interval(const std::string &text)
{
    double value = 0;
    const char *const end = text.data() + text.size();
    const bool read = std::from_chars(text.data(), end, value).ptr == end;
    if (!read || !(value >= 0.1 && value <= 3600))
        throw usage_failure("\"" + text + "\" is not a number of seconds from 0.1 to 3600");
    return std::chrono::milliseconds(static_cast<int>(value * 1000));
}

} // namespace cli
