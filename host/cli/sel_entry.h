// What the 16 bytes of an event log entry say.
#ifndef RUK_HOST_CLI_SEL_ENTRY_H
#define RUK_HOST_CLI_SEL_ENTRY_H

#include "cli/report.h"

namespace cli
{

constexpr size_t sel_record_size = 16;

// A line's worth.
json entry_summary(const uint8_t *record, bool utc);

// All of it.
json entry_details(const uint8_t *record, bool utc);

} // namespace cli

#endif
