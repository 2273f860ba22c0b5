#include "cli/chassis_survey.h"

#include <cstring>
#include <optional>

#include "cli/chassis_status.h"
#include "cli/event_sets.h"
#include "cli/fru_device.h"
#include "cli/fru_image.h"
#include "cli/output.h"
#include "cli/places.h"
#include "cli/records.h"
#include "cli/shared_region.h"
#include "cli/targets.h"
#include "platform/status.h"

namespace cli
{

namespace
{

const request_name get_sel_info = {0x0A40, "Get SEL Info"};
const request_name get_post_code = {0x30D4, "Get POST Code"};
const request_name get_parameter = {0x30D0, "Get OEM Parameter"};

json unknown()
{
    return {{"name", nullptr}, {"serial_number", nullptr}};
}

// What the blade says it is, in its first FRU device.
json identity(const blade &at)
{
    const fru_device device(at, 0);
    const json areas = fru_fields(
        device.size(), [&](size_t offset, size_t length) { return device.read(offset, length); });
    for (const char *area : {"product", "board"})
        if (areas.contains(area) && areas[area].contains("product_name"))
            return {{"name", areas[area]["product_name"]},
                    {"serial_number", areas[area]["serial_number"]}};
    return unknown();
}

json post_code(const blade &at)
{
    const uint8_t request[4] = {};
    uint8_t post[17];
    call(get_post_code, at, ipmi_bexal_post_code, request, post);
    uint32_t code = 0;
    memcpy(&code, post + 1, sizeof code);
    return hex(code);
}

// A parameter value's bytes behind its own length.
bytes parameter(const blade &at, uint8_t group, uint8_t length)
{
    constexpr size_t before_value = 5;
    constexpr size_t own_length = 2;
    const bytes answer =
        exchange(get_parameter, at, {0x01, group, length, 0, 0, 0}, before_value + length);
    return bytes(answer.begin() + before_value + own_length, answer.end());
}

// The names of those that blink.
json blinking_leds(const blade &at)
{
    const bytes leds = parameter(at, 0x0E, 4);
    json blinking = json::array();
    if (leds[0] != 0)
        blinking.push_back("server");
    if (leds[1] != 0)
        blinking.push_back("drive");
    return blinking;
}

json lcd(const blade &at)
{
    return parameter(at, 0x02, 5)[0] != 0 ? "hidden" : "shown";
}

json log_filling(const blade &at)
{
    const auto log = ask_info<sel_info>(get_sel_info, at, ipmi_location_get_sel_info);
    const uint32_t taken = log.entries * uint32_t{16};
    const uint32_t room = taken + log.free_space;
    return {{"entries", log.entries}, {"percent", room == 0 ? 0 : taken * 100 / room}};
}

// Its identity is asked for only where it is not known yet.
json blade_fields(const blade &at, const json &known)
{
    // Comes first: where there is no blade, one question is enough.
    const json power = unless_refused([&]() -> json { return power_state(at); }, nullptr);
    json fields = known;
    if (known["name"].is_null())
        fields.update(unless_refused([&] { return identity(at); }, unknown()));
    fields["power"] = power;
    fields["post_code"] = unless_refused([&] { return post_code(at); }, nullptr);
    fields["blinking_leds"] = unless_refused([&] { return blinking_leds(at); }, nullptr);
    fields["lcd"] = unless_refused([&] { return lcd(at); }, nullptr);
    fields["sel"] = unless_refused([&] { return log_filling(at); }, nullptr);
    return fields;
}

// The chassis' interrupts; none where the platform has no ring.
std::vector<ipmi_interrupt> interrupts()
{
    try {
        const ipmi_shm region = shared_region_copy();
        return {std::begin(region.ring), std::end(region.ring)};
    } catch (const failure &) {
        return {};
    }
}

// How many interrupts of each blade the ring holds, and the event of the latest one.
void add_events(json &blades)
{
    const std::vector<ipmi_interrupt> ring = interrupts();
    for (json &blade : blades) {
        uint32_t count = 0;
        uint32_t latest = 0;
        json event;
        for (const ipmi_interrupt &interrupt : ring) {
            if (interrupt.int_num == 0 || target_name(interrupt.location) != blade["blade"])
                continue;
            ++count;
            const json numbers = event_numbers(interrupt.ies);
            if (interrupt.int_num >= latest && !numbers.empty()) {
                latest = interrupt.int_num;
                event = numbers.back();
            }
        }
        blade["events"] = count;
        blade["latest_event"] = event;
        blade["latest_event_name"] = event.is_null() ? event : event_name(event.get<uint32_t>());
    }
}

json where(const blade_location &location, const char *state)
{
    return {{"blade", target_name(location)}, {"state", state}};
}

} // namespace

chassis_survey::chassis_survey(const std::vector<blade_location> &chosen)
    : whole_chassis_(chosen.empty())
{
    if (whole_chassis_) {
        for (const blade_location &place : all_places()) {
            if (place.sub_slot_id == 0)
                slots_.emplace_back();
            slots_.back().places.push_back(place);
        }
    }
    for (const blade_location &location : chosen)
        slots_.push_back({{location}, {}});
    for (slot &each : slots_)
        for (const blade_location &place : each.places)
            each.seen.push_back({where(place, "asked")});
}

std::vector<chassis_survey::sight>
chassis_survey::look_at(const std::vector<blade_location> &places, const std::vector<sight> &before)
{
    std::vector<sight> seen;
    for (const blade_location &place : places) {
        // A blade keeps its identity as long as it answers.
        const json &last = before[seen.size()].fields;
        const json known =
            last["state"] == "present"
                ? json{{"name", last["name"]}, {"serial_number", last["serial_number"]}}
                : unknown();
        try {
            json fields = where(place, "present");
            fields.update(blade_fields({place}, known));
            seen.push_back({fields});
        } catch (const failure &why) {
            if (nobody_serves(why))
                throw;
            if (why.code == RUK_MSG_NO_BLADE) {
                seen.push_back({where(place, "empty")});
            } else {
                seen.push_back({where(place, "silent"), why.kind});
                seen.back().fields["error"] = failure_fields(why);
            }
        }
    }
    return seen;
}

void chassis_survey::look(std::chrono::milliseconds limit)
{
    std::optional<failure> unserved;
    const auto look_there = [this](size_t at) {
        return look_at(slots_[at].places, slots_[at].seen);
    };
    looks_.ask(slots_.size(), look_there, limit, [&](size_t at, auto &sights) {
        try {
            slots_[at].seen = sights.get();
        } catch (const failure &why) {
            unserved = why;
        }
    });
    if (unserved)
        throw failure(*unserved);
}

json chassis_survey::seen() const
{
    json blades = json::array();
    for (const slot &each : slots_) {
        const size_t first_of_slot = blades.size();
        for (const sight &place : each.seen)
            if (!whole_chassis_ ||
                (place.fields["state"] != "empty" && place.fields["state"] != "asked"))
                blades.push_back(place.fields);
        if (blades.size() == first_of_slot)
            blades.push_back(each.seen.front().fields);
    }
    add_events(blades);
    return {{"slots", slot_count()}, {"blades", blades}};
}

exit_code chassis_survey::outcome() const
{
    exit_code worst = exit_fine;
    for (const slot &each : slots_)
        for (const sight &place : each.seen)
            worst = worse(worst, place.outcome);
    return worst;
}

} // namespace cli
