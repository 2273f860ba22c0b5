// What a sensor data record says about its sensor or device.
#ifndef RUK_HOST_CLI_SDR_RECORD_H
#define RUK_HOST_CLI_SDR_RECORD_H

#include "cli/report.h"

namespace cli
{

// ID, version, type, and the length of what follows.
constexpr size_t sdr_header_size = 5;

// A line's worth.
json sdr_summary(const bytes &record);

// All that all kinds of record have in common, and the record itself.
json sdr_details(const bytes &record);

} // namespace cli

#endif
