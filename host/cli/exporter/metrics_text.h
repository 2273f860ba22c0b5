// Metrics, and the text in which Prometheus reads them.
#ifndef RUK_HOST_CLI_EXPORTER_METRICS_TEXT_H
#define RUK_HOST_CLI_EXPORTER_METRICS_TEXT_H

#include <string>
#include <utility>
#include <vector>

namespace cli
{

using labels = std::vector<std::pair<std::string, std::string>>;

struct sample {
    cli::labels labels;
    double value;
    std::string suffix = {}; // of the metric's name: "_bucket", "_sum" or "_count" in a histogram
};

struct metric {
    std::string name;
    std::string type; // "gauge", "counter" or "histogram"
    std::string help;
    std::vector<sample> samples = {};
};

constexpr char metrics_text_type[] = "text/plain; version=0.0.4; charset=utf-8";

std::string metrics_text(const std::vector<metric> &metrics);

// A number as it stands there: the shortest that is read as the same, never with an exponent.
std::string number_text(double value);

} // namespace cli

#endif
