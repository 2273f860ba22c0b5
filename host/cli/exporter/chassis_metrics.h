// All that there is to watch of a chassis. The blades are asked anew at each scrape, all at once,
// each in bounded time.
#ifndef RUK_HOST_CLI_EXPORTER_CHASSIS_METRICS_H
#define RUK_HOST_CLI_EXPORTER_CHASSIS_METRICS_H

#include <chrono>
#include <future>

#include "cli/exporter/blade_reading.h"
#include "cli/exporter/event_counter.h"
#include "cli/parallel_questions.h"

namespace cli
{

// What stands in each place; empty sub-slots, which nobody chose, are left out.
using readings = std::vector<std::pair<blade_location, blade_reading>>;

// For any threads.
class chassis_metrics
{
  public:
    // Of these blades; of all that there are where none are named. A blade has as long as
    // `patience` to answer a scrape.
    chassis_metrics(std::vector<blade_location> chosen, std::chrono::milliseconds patience);

    // Counts the events that have come. To be called often enough that the ring does not lose any;
    // throws why it cannot be read.
    void count_events() { events_.count(); }

    // The metrics' text. Whoever comes while the blades are being asked gets what the first gets,
    // so that they are not asked more often the more there are who scrape.
    std::string scrape();

  private:
    std::string look();
    readings read_blades();

    const std::vector<blade_location> chosen_;
    const std::chrono::milliseconds patience_;
    exchange_meter exchanges_;
    event_counter events_;
    parallel_questions<blade_reading> questions_; // of one scrape at a time

    std::mutex mutex_;
    std::shared_future<std::string> under_way_; // or the last that was
};

} // namespace cli

#endif
