// What is watched of a blade, read from it.
#ifndef RUK_HOST_CLI_EXPORTER_BLADE_READING_H
#define RUK_HOST_CLI_EXPORTER_BLADE_READING_H

#include <optional>

#include "cli/exporter/exchange_meter.h"
#include "cli/request.h"

namespace cli
{

// What is not known is missing. At first: a blade that does not answer.
struct blade_reading {
    std::optional<double> present = 1; // 0: no blade is there; missing: nobody could say
    std::optional<double> up = 0;      // missing: there is no blade that could be
    std::optional<double> power_on;
    std::optional<double> power_watts;
    std::optional<double> sel_entries;
    std::optional<double> sel_free_bytes;
    std::optional<double> sel_overflow;
};

// Asks a blade; it takes as long as the blade takes. The exchanges are told to the meter.
blade_reading read_blade(const blade_location &place, exchange_meter &meter);

} // namespace cli

#endif
