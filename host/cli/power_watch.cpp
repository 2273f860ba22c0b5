// What blades draw, over time.

#include <ctime>

#include "cli/chassis_survey.h"
#include "cli/command_tree.h"
#include "cli/names.h"
#include "cli/output.h"
#include "cli/parallel_questions.h"
#include "cli/power_draw.h"
#include "cli/power_plot.h"
#include "cli/targets.h"
#include "cli/times.h"

namespace cli
{

namespace
{

using namespace std::chrono_literals;

// More than the widest terminal shows.
constexpr size_t most_samples = 3600;

struct watch_choice {
    std::chrono::milliseconds interval = 1s;
    draw_word word = draw_words[1];
};

draw_word word_named(const std::string &name)
{
    for (const draw_word &each : draw_words)
        if (name == each.name)
            return each;
    throw usage_failure("\"" + name + "\" is none of word_1, word_3, word_5, word_8, word_10");
}

std::vector<std::string> word_names()
{
    return all_names(draw_words);
}

// Those that were chosen, or else all that there are now.
std::vector<blade_location> places(const std::vector<blade_location> &chosen)
{
    if (!chosen.empty())
        return chosen;
    chassis_survey survey({});
    survey.look(10s);
    const json seen = survey.seen();
    std::vector<blade_location> found;
    for (const json &place : seen["blades"])
        if (place["state"] != "empty")
            found.push_back(parse_targets(place["blade"]).front());
    return found;
}

// The samples of all blades so far.
class power_recorder
{
  public:
    explicit power_recorder(const std::vector<blade_location> &places) : places_(places)
    {
        for (const blade_location &each : places)
            histories_.push_back({target_name(each)});
    }

    // Takes a sample of each. That of a blade which has not answered in time is missing.
    void sample(const draw_word &word, std::chrono::milliseconds limit)
    {
        for (power_history &each : histories_) {
            each.samples.emplace_back();
            each.remark = "no answer yet";
            if (each.samples.size() > most_samples)
                each.samples.pop_front();
        }
        const auto draw_of = [this](size_t at) { return ask_power_draw({places_[at]}); };
        questions_.ask(places_.size(), draw_of, limit, [&](size_t at, auto &answer) {
            try {
                histories_[at].samples.back() = answer.get().*word.value;
                histories_[at].remark.clear();
            } catch (const failure &why) {
                histories_[at].remark = why.what();
            }
        });
    }

    const std::vector<power_history> &histories() const { return histories_; }

  private:
    const std::vector<blade_location> places_;
    std::vector<power_history> histories_;
    parallel_questions<power_draw> questions_;
};

json latest(const power_history &history)
{
    json fields = {{"blade", history.blade}, {"now", nullptr}, {"min", nullptr}, {"max", nullptr}};
    if (!history.samples.empty() && history.samples.back())
        fields["now"] = *history.samples.back();
    if (const auto range = range_of(history)) {
        fields["min"] = range->lowest;
        fields["max"] = range->highest;
    }
    if (!history.remark.empty())
        fields["remark"] = history.remark;
    return fields;
}

exit_code watch(const blades &at, const watch_choice &chosen, stream &out)
{
    power_recorder recorder(places(at.locations));
    for (;;) {
        const auto next = std::chrono::steady_clock::now() + chosen.interval;
        recorder.sample(chosen.word, chosen.interval);
        const std::string now = format_time(static_cast<uint32_t>(time(nullptr)), at.utc);
        json seen = {{"time", now}, {"value", chosen.word.name}, {"blades", json::array()}};
        for (const power_history &each : recorder.histories())
            seen["blades"].push_back(latest(each));
        out.picture(power_plot(recorder.histories(), "Power draw (" + label(chosen.word.name) + ")",
                               now, own_canvas()),
                    seen);
        out.wait_until(next);
    }
}

} // namespace

void add_power_watch(const noun &power)
{
    power.follow_verb("watch", "Show what the blades draw, until interrupted", watch)
        .option("--interval", "SECONDS", &watch_choice::interval, parse_interval,
                "How often to ask, 0.1 to 3600; otherwise every second")
        .option("--value", "NAME", &watch_choice::word, word_named,
                "word_1, word_3 (when not given), word_5, word_8 or word_10 of power draw")
        .choices(word_names);
}

} // namespace cli
