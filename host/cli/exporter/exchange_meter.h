// How long exchanges with the blades take, and how often they fail.
#ifndef RUK_HOST_CLI_EXPORTER_EXCHANGE_METER_H
#define RUK_HOST_CLI_EXPORTER_EXCHANGE_METER_H

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>

#include "cli/exporter/metrics_text.h"
#include "cli/failure.h"

namespace cli
{

// Told by any threads.
class exchange_meter
{
  public:
    void answered(const std::string &blade, std::chrono::duration<double> took);
    void failed(const std::string &blade, exit_code kind);

    std::vector<metric> metrics() const;

  private:
    // Seconds, the upper ends of the histogram's buckets: from a simulated blade to one that takes
    // all the time that the library has.
    static constexpr double bounds[] = {0.0001, 0.0005, 0.001, 0.005, 0.01, 0.05,
                                        0.1,    0.5,    1,     5,     10};

    struct counts {
        std::array<uint64_t, std::size(bounds)> within{}; // each bound
        uint64_t answers = 0;
        double seconds = 0;
        std::map<exit_code, uint64_t> failures = {
            {exit_refused, 0}, {exit_access, 0}, {exit_transport, 0}, {exit_unsupported, 0}};
    };

    mutable std::mutex mutex_;
    std::map<std::string, counts> blades_;
};

} // namespace cli

#endif
