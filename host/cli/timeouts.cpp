// How often a blade's requests had to be repeated with a longer time-out.

#include "cli/command_tree.h"
#include "cli/shared_region.h"

namespace cli
{

namespace
{

void check_counters(uint32_t result)
{
    if (result == IPMI_ERR_INVALID_PARAM)
        throw usage_failure("the table of " + std::to_string(IPMI_TIMEOUT_ENTRIES) +
                            " time-out counters has no entry for this blade");
    check({0, "time-out counters"}, result);
}

report show(const blade &at)
{
    uint32_t bumps = 0;
    uint32_t sessions = 0;
    check_counters(GetTimeouts(shared_region(), &at.location, &bumps, &sessions));
    return tell({{"raised_timeouts", bumps}, {"new_sessions", sessions}});
}

report clear(const blade &at)
{
    check_counters(ClearTimeouts(shared_region(), &at.location));
    return tell({{"cleared", true}});
}

} // namespace

void add_timeouts(const noun &root)
{
    const noun timeouts = root.noun_below("timeouts", "How often a blade was slow to answer");
    timeouts.verb("show", "Show the time-outs raised and the sessions begun", show);
    timeouts.verb("clear", "Set both counters to 0", clear);
}

} // namespace cli
