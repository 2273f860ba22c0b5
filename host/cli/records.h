// What the two repositories of records, the event log and the sensor data records, have in common.
#ifndef RUK_HOST_CLI_RECORDS_H
#define RUK_HOST_CLI_RECORDS_H

#include <functional>
#include <set>

#include "cli/report.h"
#include "cli/request.h"

namespace cli
{

// A repository's info. Every one supports some operation: one without may have been cut short.
template <typename Info, typename Function>
Info ask_info(const request_name &request, const blade &at, Function function)
{
    const auto info = ask<Info>(request, at, function);
    if (info.operation_support == 0)
        exchange(request, at, {}, sizeof info - sizeof info.completion_code);
    return info;
}

// A record, and the ID of the one after it.
struct chained_record {
    uint16_t next = 0;
    bytes record;
};

// Follows a chain of record IDs from the first, or from a later one, to the last, and refuses to go
// in circles.
class record_chain
{
  public:
    explicit record_chain(uint16_t from = 0x0000) : next_(from) {}

    bool goes_on() const { return next_ != end; }
    uint16_t next() const { return next_; }
    size_t length() const { return seen_.size(); }

    // The record just read names the next one.
    void follow(uint16_t next);

  private:
    static constexpr uint16_t end = 0xFFFF;

    uint16_t next_;
    std::set<uint16_t> seen_;
};

// Lists under `name` what `describe` says of each record that `read` gives for its ID, from the
// first to the last; `expected` is how many there should be. Where reading fails the list ends, and
// what was read until there is kept.
report list_records(const blade &at, const char *name, size_t expected,
                    const std::function<chained_record(uint16_t id)> &read,
                    const std::function<json(const bytes &record)> &describe);

// "1.5" of 0x51: the low digit comes first.
std::string version_text(uint8_t bcd);

// The names of the optional operations that a repository's info says it supports.
json repository_operations(uint8_t support);

} // namespace cli

#endif
