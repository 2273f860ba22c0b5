#include "cli/exporter/blade_reading.h"

#include "cli/chassis_status.h"
#include "cli/power_draw.h"
#include "cli/records.h"
#include "cli/targets.h"
#include "platform/status.h"

namespace cli
{

namespace
{

const request_name get_sel_info = {0x0A40, "Get SEL Info"};

bool nobody_there(const failure &why)
{
    return why.code == RUK_MSG_NO_BLADE || nobody_serves(why);
}

// Asks a blade one question after the other, until one has no answer at all.
class questions
{
  public:
    questions(const blade_location &place, exchange_meter &meter)
        : meter_(meter),
          name_(target_name(place)),
          blade_{place, false, [this](auto took) { meter_.answered(name_, took); }}
    {
    }
    questions(const questions &) = delete;
    questions &operator=(const questions &) = delete;

    // What `question` has to tell of the blade; nothing when the blade refuses.
    template <typename Question>
    auto ask(Question question)
    {
        using answer = std::optional<decltype(question(blade_))>;
        return unless_refused([&] { return answer(counted(question)); }, answer());
    }

  private:
    template <typename Question>
    auto counted(Question question)
    {
        try {
            return question(blade_);
        } catch (const failure &why) {
            if (!nobody_there(why))
                meter_.failed(name_, why.kind);
            throw;
        }
    }

    exchange_meter &meter_;
    const std::string name_;
    const blade blade_;
};

sel_info log_info(const blade &at)
{
    return ask_info<sel_info>(get_sel_info, at, ipmi_location_get_sel_info);
}

blade_reading read_all(const blade_location &place, exchange_meter &meter)
{
    questions blade(place, meter);
    blade_reading told;
    told.power_on = blade.ask([](const auto &at) { return power_state(at) == "on"; });
    told.power_watts = blade.ask([](const auto &at) { return ask_power_draw(at).word_3; });
    if (const auto log = blade.ask(log_info)) {
        told.sel_entries = log->entries;
        told.sel_free_bytes = log->free_space;
        told.sel_overflow = (log->operation_support & 0x80) != 0;
    }
    told.up = 1;
    return told;
}

} // namespace

blade_reading read_blade(const blade_location &place, exchange_meter &meter)
{
    blade_reading silent;
    try {
        return read_all(place, meter);
    } catch (const failure &why) {
        if (nobody_there(why))
            silent.up.reset();
        if (why.code == RUK_MSG_NO_BLADE)
            silent.present = 0;
        else if (nobody_serves(why))
            silent.present.reset();
    } catch (const std::exception &) { // whatever it is, the others are told of
    }
    return silent;
}

} // namespace cli
