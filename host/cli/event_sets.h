// Sets of blade events as people type them and as the tool tells them.
#ifndef RUK_HOST_CLI_EVENT_SETS_H
#define RUK_HOST_CLI_EVENT_SETS_H

#include "cli/report.h"
#include "ruk_ipmi/events.h"

namespace cli
{

// Reads a list such as "1-8,40". Anything else is a usage failure.
imc_event_set parse_events(const std::string &text);

imc_event_set all_events();

// The numbers of the events in a set, lowest first.
json event_numbers(const imc_event_set &events);

// What an event means, null when nobody here knows.
json event_name(uint32_t event);

} // namespace cli

#endif
