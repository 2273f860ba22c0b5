// The system event log: its summary, its entries, its clock, its erasure.

#include <chrono>
#include <cstring>
#include <ctime>
#include <set>
#include <thread>

#include "cli/command_tree.h"
#include "cli/records.h"
#include "cli/sel_entry.h"
#include "cli/targets.h"
#include "cli/times.h"

namespace cli
{

namespace
{

const request_name get_sel_info = {0x0A40, "Get SEL Info"};
const request_name reserve_sel = {0x0A42, "Reserve SEL"};
const request_name get_sel_entry = {0x0A43, "Get SEL Entry"};
const request_name clear_sel = {0x0A47, "Clear SEL"};
const request_name get_sel_time = {0x0A48, "Get SEL Time"};
const request_name set_sel_time = {0x0A49, "Set SEL Time"};
const request_name set_sel_utc_offset = {0x0A5D, "Set SEL Time UTC Offset"};

report info(const blade &at)
{
    const auto log = ask_info<sel_info>(get_sel_info, at, ipmi_location_get_sel_info);
    return tell({{"version", version_text(log.version)},
                 {"entries", log.entries},
                 {"free_bytes", log.free_space},
                 {"last_addition", format_time(load_le32(log.addition_time), at.utc)},
                 {"last_erase", format_time(load_le32(log.erase_time), at.utc)},
                 {"overflow", (log.operation_support & 0x80) != 0},
                 {"operations", repository_operations(log.operation_support)}});
}

chained_record entry(const blade &at, uint16_t id)
{
    const auto found = ask<sel_entry>(get_sel_entry, at, ipmi_location_get_sel_entry, id);
    const bytes record(std::begin(found.record), std::end(found.record));
    if (may_be_cut_short(record)) {
        const bytes payload = {0, 0,   static_cast<uint8_t>(id), static_cast<uint8_t>(id >> 8),
                               0, 0xFF};
        exchange(get_sel_entry, at, payload, sizeof found.next_record_id + sel_record_size);
    }
    return {found.next_record_id, record};
}

struct list_choice {
    std::chrono::milliseconds interval{1000};
};

report list(const blade &at, const list_choice &)
{
    const auto log = ask_info<sel_info>(get_sel_info, at, ipmi_location_get_sel_info);
    return list_records(
        at, "entries", log.entries, [&](uint16_t id) { return entry(at, id); },
        [&](const bytes &record) { return entry_summary(record.data(), at.utc); });
}

// A log and what has been shown of it.
struct followed_log {
    blade at;
    sel_info info{};       // when all entries had been shown
    std::set<bytes> shown; // the entries, each with its ID
    uint16_t newest = 0;   // ID of the one that was shown last
};

// Whether the entry that was shown last is still the one with its ID.
bool goes_on(const followed_log &log)
{
    try {
        return log.shown.count(entry(log.at, log.newest).record) != 0;
    } catch (const failure &refusal) {
        if (refusal.code != no_such_record)
            throw;
        return false;
    }
}

void forget_shown(followed_log &log, stream &out)
{
    if (log.shown.empty())
        return;
    const std::string name = target_name(log.at.location);
    out.notice("blade " + name + ": the log was cleared", {{"blade", name}, {"cleared", true}});
    log.shown.clear();
}

// From the entry that was shown last, or from the log's beginning.
void show_from(uint16_t id, followed_log &log, stream &out)
{
    record_chain chain(id);
    while (chain.goes_on()) {
        const chained_record found = entry(log.at, chain.next());
        if (log.shown.count(found.record) == 0) {
            if (chain.length() == 0)
                forget_shown(log, out); // not even the oldest is one of those
            json fields = {{"blade", target_name(log.at.location)}};
            fields.update(entry_summary(found.record.data(), log.at.utc));
            out.line(fields);
            log.shown.insert(found.record);
        }
        log.newest = load_le16(found.record.data());
        chain.follow(found.next);
    }
}

// Some controllers do not note when their log was erased: then the entries tell.
void show_news(followed_log &log, stream &out)
{
    const auto info = ask_info<sel_info>(get_sel_info, log.at, ipmi_location_get_sel_info);
    if (memcmp(&info, &log.info, sizeof info) == 0)
        return;
    const bool erased = load_le32(info.erase_time) != load_le32(log.info.erase_time);
    if (info.entries == 0)
        forget_shown(log, out);
    else
        show_from(!erased && goes_on(log) ? log.newest : 0, log, out);
    log.info = info;
}

// Ends by itself only when no blade can be asked from the start.
exit_code follow(const blades &at, const list_choice &chosen, stream &out)
{
    std::vector<followed_log> logs;
    for (const blade_location &location : at.locations)
        logs.push_back({{location, at.utc}, {}, {}, 0});
    for (bool any = false;; out.wait(chosen.interval)) {
        exit_code worst = exit_fine;
        for (followed_log &log : logs) {
            const std::string name = target_name(log.at.location);
            try {
                show_news(log, out);
                out.works(name);
                any = true;
            } catch (const failure &why) {
                if (why.code == erase_in_progress) {
                    any = true; // it will be empty the next time
                } else {
                    out.failed(name, why);
                    worst = worse(worst, why.kind);
                }
            }
        }
        if (!any)
            return worst;
    }
}

struct entry_choice {
    uint16_t id = 0;
};

report get(const blade &at, const entry_choice &chosen)
{
    const chained_record found = entry(at, chosen.id);
    return tell(entry_details(found.record.data(), at.utc), found.record);
}

uint16_t reserve(const blade &at)
{
    return ask<sel_reservation>(reserve_sel, at, ipmi_location_reserve_sel).reservation_id;
}

report clear(const blade &at)
{
    using std::chrono::steady_clock;
    constexpr auto patience = std::chrono::seconds(60);
    constexpr auto pause = std::chrono::milliseconds(100);
    constexpr uint8_t erased = 1;

    uint16_t reservation = reserve(at);
    const auto step = [&](uint8_t action) {
        return under_reservation(
            reservation, [&] { return reserve(at); },
            [&](uint16_t id) {
                return ask<sel_clear_status>(clear_sel, at, ipmi_location_clear_sel, id, action)
                    .progress;
            });
    };
    const auto deadline = steady_clock::now() + patience;
    uint8_t state = step(SEL_CLEAR_INITIATE);
    while ((state & 0x0F) != erased) {
        if (steady_clock::now() > deadline)
            throw failure(exit_refused, "the log is still being erased after 60 s");
        std::this_thread::sleep_for(pause);
        state = step(SEL_CLEAR_GET_STATUS);
    }
    return tell({{"erased", true}});
}

report get_time(const blade &at)
{
    const bytes answer = exchange(get_sel_time, at, {}, 4);
    const uint32_t seconds = load_le32(answer.data());
    return tell({{"time", format_time(seconds, at.utc)}, {"seconds", seconds}});
}

struct time_choice {
    std::optional<uint32_t> time; // none: the time when it is sent
};

std::optional<uint32_t> now_or_time(const std::string &text)
{
    if (text == "now")
        return std::nullopt;
    return parse_time(text);
}

std::vector<std::string> named_times()
{
    return {"now"};
}

report set_time(const blade &at, const time_choice &chosen)
{
    const uint32_t seconds = chosen.time.value_or(static_cast<uint32_t>(time(nullptr)));
    ask<uint8_t>(set_sel_time, at, ipmi_location_set_sel_time, seconds);
    return tell({{"time", format_time(seconds, at.utc)}, {"seconds", seconds}});
}

struct offset_choice {
    int minutes = 0;
};

// Minutes east of UTC, a day at the most; 2047 takes a setting back.
int utc_offset(const std::string &text)
{
    constexpr int day = 24 * 60;
    constexpr int64_t not_specified = 2047;
    const int64_t minutes = parse_number(text, -day, not_specified);
    if (minutes > day && minutes != not_specified)
        throw usage_failure(text + " is not from -1440 to 1440, nor 2047 (not specified)");
    return static_cast<int>(minutes);
}

report set_utc_offset(const blade &at, const offset_choice &chosen)
{
    ask<uint8_t>(set_sel_utc_offset, at, ipmi_location_set_sel_time_offset, chosen.minutes);
    return tell({{"utc_offset_minutes", chosen.minutes}});
}

} // namespace

void add_sel(const noun &root)
{
    const noun sel = root.noun_below("sel", "The system event log (SEL)");
    sel.verb("info", "Show the log's size, room and latest changes", info);
    sel.verb("list", "Show all entries, oldest first", list)
        .follow("--follow", follow, "Then go on with new entries as they come, until interrupted")
        .option("--interval", "SECONDS", &list_choice::interval, parse_interval,
                "How often to look for new entries, 0.1 to 3600; otherwise every second")
        .needs("--follow")
        .binary();
    sel.verb("get", "Show one entry with all it holds", get)
        .argument("ID", &entry_choice::id, number<uint16_t>,
                  "Record ID, e.g. 0x0001; 0x0000 is the first, 0xFFFF the last")
        .binary();
    sel.verb("clear", "Erase all entries and wait until they are gone", clear);

    const noun clock = sel.noun_below("time", "The clock that stamps the entries");
    clock.verb("get", "Show the log's clock", get_time);
    clock.verb("set", "Set the log's clock", set_time)
        .argument("TIME", &time_choice::time, now_or_time,
                  "now, a time with its zone like 2026-03-01T10:20:30Z, or seconds since 1970")
        .choices(named_times);

    const noun offset = sel.noun_below("utc-offset", "The clock's distance from UTC");
    offset.verb("set", "Set the clock's distance from UTC", set_utc_offset)
        .argument("MINUTES", &offset_choice::minutes, utc_offset,
                  "Minutes east of UTC, -1440 to 1440; 2047: not specified");
}

} // namespace cli
