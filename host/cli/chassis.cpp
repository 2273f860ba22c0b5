// The chassis as a whole, and each blade as what IPMI calls a chassis.

#include <chrono>
#include <cstdio>
#include <ctime>

#include "cli/chassis_picture.h"
#include "cli/chassis_survey.h"
#include "cli/command_tree.h"
#include "cli/terminal.h"
#include "cli/times.h"

namespace cli
{

namespace
{

using namespace std::chrono_literals;

// Much longer than a blade could keep the questions to it waiting.
constexpr auto until_all_is_seen = 1h;

struct show_choice {
    std::chrono::milliseconds interval = 1s;
};

std::vector<std::string> picture(const json &seen, bool utc)
{
    return chassis_picture(seen, format_time(static_cast<uint32_t>(time(nullptr)), utc),
                           own_canvas());
}

report show(const blades &at, const show_choice &)
{
    chassis_survey survey(at.locations);
    survey.look(until_all_is_seen);
    report told = tell(survey.seen());
    for (const std::string &line : picture(told.fields, at.utc))
        told.text += line + "\n";
    if (survey.outcome() != exit_fine)
        told.ended = failure(survey.outcome(), "not every blade answers");
    return told;
}

exit_code watch(const blades &at, const show_choice &chosen, stream &out)
{
    chassis_survey survey(at.locations);
    for (;;) {
        const auto next = std::chrono::steady_clock::now() + chosen.interval;
        try {
            survey.look(chosen.interval);
            const json seen = survey.seen();
            out.works("");
            out.picture(picture(seen, at.utc), seen);
        } catch (const failure &why) { // the chassis is served again some day
            out.failed("", why);
        }
        out.wait_until(next);
    }
}

} // namespace

void add_chassis(const noun &root)
{
    const noun chassis = root.noun_below("chassis", "The chassis as a whole, and a blade's power");
    chassis.survey_verb("show", "Show what stands in each slot, and how it is", show)
        .follow("--watch", watch, "Go on and show it anew in place, until interrupted")
        .option("--interval", "SECONDS", &show_choice::interval, parse_interval,
                "How often, 0.1 to 3600; otherwise every second")
        .needs("--watch");
    add_chassis_control(chassis);
    add_boot_options(chassis);
}

} // namespace cli
