#include "cli/event_sets.h"

#include "cli/lists.h"
#include "producer/blade_events.h"

namespace cli
{

imc_event_set parse_events(const std::string &text)
{
    imc_event_set events;
    imc_event_set_init(&events);
    parse_list(text, "event", "events are numbered like 1-8,40", [&](const std::string &item) {
        parse_range(item, 1, IMC_EVENTS, [&](int64_t number) {
            imc_event_set_SET(static_cast<uint32_t>(number), &events);
        });
    });
    return events;
}

imc_event_set all_events()
{
    return parse_events("1-" + std::to_string(IMC_EVENTS));
}

json event_numbers(const imc_event_set &events)
{
    json numbers = json::array();
    uint32_t event = 0;
    while ((event = imc_event_set_NEXT_ASSERTED(event, &events)) != 0)
        numbers.push_back(event);
    return numbers;
}

json event_name(uint32_t event)
{
    const char *name = ruk::host::blade_event_name(event);
    return name ? json(name) : json();
}

} // namespace cli
