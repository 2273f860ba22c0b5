// How often each event of each blade has come since the process began to count.
#ifndef RUK_HOST_CLI_EXPORTER_EVENT_COUNTER_H
#define RUK_HOST_CLI_EXPORTER_EVENT_COUNTER_H

#include <map>
#include <mutex>
#include <optional>

#include "cli/exporter/metrics_text.h"
#include "cli/ring_reader.h"

namespace cli
{

// For any threads.
class event_counter
{
  public:
    // Of these blades; of all where there are none.
    explicit event_counter(std::vector<blade_location> chosen) : chosen_(std::move(chosen)) {}

    // Counts what has come since the last time, the first time nothing yet. Throws why the ring
    // cannot be read.
    void count();

    // Counts the events that have names from 0 on for that blade: who watches a counter sees it
    // change, not begin.
    void begin_with(const std::string &blade);

    std::vector<metric> metrics() const;

  private:
    using key = std::pair<std::string, uint32_t>; // blade, event

    const std::vector<blade_location> chosen_;
    mutable std::mutex mutex_;
    std::optional<ring_reader> reader_; // from when there is a ring
    std::map<key, uint64_t> events_;
    uint64_t missed_ = 0; // interrupts
};

} // namespace cli

#endif
