// A look at the whole chassis: what stands in each slot, and how it is.
#ifndef RUK_HOST_CLI_CHASSIS_SURVEY_H
#define RUK_HOST_CLI_CHASSIS_SURVEY_H

#include <chrono>
#include <vector>

#include "cli/parallel_questions.h"
#include "cli/report.h"
#include "cli/request.h"

namespace cli
{

// The slots are looked at all at once, so that a blade that is slow to answer, or does not answer
// at all, delays no other.
class chassis_survey
{
  public:
    // Of these blades; where there are none, of every slot and the sub-slots 1 to 4 of each.
    explicit chassis_survey(const std::vector<blade_location> &chosen);

    // Looks again at every slot whose last look has ended, and waits until all looks have ended or
    // the time has passed. Throws when nobody serves the chassis.
    void look(std::chrono::milliseconds limit);

    // What was last seen: "slots", the number of them, and "blades", an object for each place. Its
    // "state" is "empty", "present", "silent" (there is a blade but no answer; "error" says why) or
    // "asked" (there was no time to answer yet). Of a blade that is present, what it does not know
    // or refuses is null. All have "events", the number of their interrupts in the ring, and the
    // latest of them.
    json seen() const;

    // The worst that was met.
    exit_code outcome() const;

  private:
    struct sight {
        json fields;
        exit_code outcome = exit_fine;
    };

    struct slot {
        std::vector<blade_location> places;
        std::vector<sight> seen; // of each place
    };

    static std::vector<sight> look_at(const std::vector<blade_location> &places,
                                      const std::vector<sight> &before);

    bool whole_chassis_;
    std::vector<slot> slots_;
    parallel_questions<std::vector<sight>> looks_; // they read the slots, so they go first
};

} // namespace cli

#endif
