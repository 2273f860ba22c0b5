// What a blade draws, what it is granted, and how it is throttled and cooled.

#include <cstring>
#include <regex>

#include "cli/command_tree.h"
#include "cli/power_draw.h"

namespace cli
{

namespace
{

const request_name get_consumption = {0x309C, "Get Power Consumption Data"};
const request_name reset_consumption = {0x309D, "Reset Power Consumption Data"};
const request_name set_efficiency = {0x30C0, "Set Efficiency"};
const request_name respond = {0x3087, "Power On Response"};
const request_name throttle_cpu = {0x308B, "CPU Throttling Control"};
const request_name throttle_memory = {0x309A, "Memory Throttling Control"};
const request_name get_fan_speed = {0x308C, "Get Requested Fan Speed"};
const request_name tell_fan_status = {0x3095, "Chassis Fan Status"};

struct consumption_choice {
    uint8_t p1 = 0;
    uint8_t p2 = 0;
};

struct reset_choice : consumption_choice {
    uint8_t p3 = 0;
};

report consumption(const blade &at, const consumption_choice &chosen)
{
    const auto values = ask<power_consumption_data>(
        get_consumption, at, ipmi_location_get_power_consumption_data, chosen.p1, chosen.p2);
    if (values.value_7 == 0)
        exchange(get_consumption, at, {chosen.p1, chosen.p2}, sizeof values - 1);
    // Each as a value of its own: in the packed record they lie at odd addresses.
    return tell({{"value_1", +values.value_1},
                 {"value_2", +values.value_2},
                 {"value_3", +values.value_3},
                 {"value_4", +values.value_4},
                 {"value_5", +values.value_5},
                 {"value_6", +values.value_6},
                 {"value_7", +values.value_7}});
}

report reset(const blade &at, const reset_choice &chosen)
{
    ask<uint8_t>(reset_consumption, at, ipmi_location_reset_power_consumption_data, chosen.p1,
                 chosen.p2, chosen.p3);
    return tell({{"reset", hex(bytes{chosen.p1, chosen.p2, chosen.p3})}});
}

report draw(const blade &at)
{
    const power_draw now = ask_power_draw(at);
    json fields = json::object();
    for (const draw_word &word : draw_words)
        fields[word.name] = now.*word.value;
    fields["byte_7"] = hex(now.byte_7);
    fields["byte_12"] = hex(now.byte_12);
    fields["byte_13"] = hex(now.byte_13);
    return tell(std::move(fields));
}

struct efficiency_choice {
    uint8_t first = 0;
    uint8_t second = 0;
    uint16_t ten_thousandths = 0;
};

uint16_t ten_thousandths(const std::string &percent)
{
    static const std::regex shape("([0-9]{1,3})(?:[.]([0-9]{1,2}))?");
    std::smatch parts;
    if (!std::regex_match(percent, parts, shape))
        throw usage_failure("\"" + percent + "\" is not a percentage like 95 or 95.12");
    std::string decimals = parts[2];
    decimals.resize(2, '0');
    const int value = std::stoi(parts[1]) * 100 + std::stoi(decimals);
    if (value > 10000)
        throw usage_failure(percent + " is more than 100 per cent");
    return static_cast<uint16_t>(value);
}

report efficiency(const blade &at, const efficiency_choice &chosen)
{
    // The library cuts off, so half of one more than is meant is what it makes that of.
    const float share = (static_cast<float>(chosen.ten_thousandths) + 0.5F) / 10000;
    ask<uint8_t>(set_efficiency, at, ipmi_location_set_efficiency, chosen.first, chosen.second,
                 share);
    return tell({{"efficiency_percent", chosen.ten_thousandths / 100.0}});
}

struct response_choice {
    uint8_t result = 0;
    uint16_t power = 0;
    uint8_t fail_reason = 0;
    uint8_t warning = 0;
    uint8_t fail_reason_ext = 0;
};

// Of an answer's first two bytes, as they lie, the one behind the completion code.
std::string second_byte(uint16_t answer)
{
    uint8_t lying[sizeof answer];
    memcpy(lying, &answer, sizeof answer);
    return hex(lying[1]);
}

report response(const blade &at, const response_choice &chosen)
{
    const auto answer =
        ask<uint16_t>(respond, at, location_power_on_response, chosen.result, chosen.fail_reason,
                      chosen.power, chosen.warning, chosen.fail_reason_ext);
    return tell({{"answer", second_byte(answer)}});
}

struct control_choice {
    uint8_t control = 0;
};

report throttle_processors(const blade &at, const control_choice &chosen)
{
    uint8_t answer[3] = {}; // completion code first
    call(throttle_cpu, at, ipmi_location_cpu_throttling_control, chosen.control, answer);
    return tell({{"control", chosen.control}, {"answer", hex(answer + 1, 2)}});
}

report throttle_all_memory(const blade &at, const control_choice &chosen)
{
    ask<uint8_t>(throttle_memory, at, ipmi_location_mem_throttle, chosen.control);
    return tell({{"control", chosen.control}});
}

report requested_fan_speed(const blade &at)
{
    return tell({{"requested", hex(ask_bytes<3>(get_fan_speed, at, {},
                                                ipmi_location_get_requested_fan_speed))}});
}

report chassis_fans(const blade &at, const control_choice &chosen)
{
    const auto answer =
        ask<uint16_t>(tell_fan_status, at, ipmi_location_chassis_fan_status, chosen.control);
    return tell({{"status", chosen.control}, {"answer", second_byte(answer)}});
}

template <typename Choice>
verb<Choice> with_parameters(verb<Choice> verb)
{
    verb.option("--p1", "N", &consumption_choice::p1, number<uint8_t>,
                "First byte sent along, 0 when not given")
        .option("--p2", "N", &consumption_choice::p2, number<uint8_t>,
                "Second byte, 0 when not given");
    return verb;
}

void add_throttle(const noun &power)
{
    const noun throttle = power.noun_below("throttle", "Throttling of processors and memory");
    throttle.verb("cpu", "Control the throttling of the processors", throttle_processors)
        .argument("N", &control_choice::control, number<uint8_t>,
                  "In the blade's numbers, 0 to 255");
    throttle.verb("memory", "Control the throttling of the memory", throttle_all_memory)
        .argument("N", &control_choice::control, number<uint8_t>,
                  "In the blade's numbers, 0 to 255");
}

void add_fan(const noun &power)
{
    const noun fan = power.noun_below("fan", "What the blade asks of the fans, and their state");
    fan.verb("requested", "Show the fan speed that the blade asks for, 2 bytes",
             requested_fan_speed);
    fan.verb("chassis", "Tell the blade the state of the chassis' fans", chassis_fans)
        .argument("N", &control_choice::control, number<uint8_t>,
                  "In the blade's numbers, 0 to 255");
}

} // namespace

void add_power(const noun &root)
{
    const noun power = root.noun_below("power", "What a blade draws, and its throttling");
    power.verb("draw", "Show what the blade draws, by the bytes' places", draw);
    add_power_watch(power);
    with_parameters(power.verb("consumption", "Show the seven consumption values", consumption));
    with_parameters(power.verb("reset", "Reset the consumption values", reset))
        .option("--p3", "N", &reset_choice::p3, number<uint8_t>, "Third byte, 0 when not given");
    power.verb("efficiency", "Tell the blade how efficient its supply is", efficiency)
        .argument("PERCENT", &efficiency_choice::ten_thousandths, ten_thousandths,
                  "0 to 100, with two decimals at the most")
        .option("--first", "N", &efficiency_choice::first, number<uint8_t>,
                "First byte sent along, 0 when not given")
        .option("--second", "N", &efficiency_choice::second, number<uint8_t>,
                "Second byte, 0 when not given");
    power.verb("response", "Answer a blade that has asked for power", response)
        .argument("RESULT", &response_choice::result, number<uint8_t>,
                  "Result of the allocation, 0 to 255")
        .argument("POWER", &response_choice::power, number<uint16_t>,
                  "What the blade is granted, 0 to 65535")
        .option("--fail-reason", "N", &response_choice::fail_reason, number<uint8_t>,
                "Why it failed, 0 when not given")
        .option("--warning", "N", &response_choice::warning, number<uint8_t>,
                "Warning, 0 when not given")
        .option("--fail-reason-ext", "N", &response_choice::fail_reason_ext, number<uint8_t>,
                "Why, further; 0 when not given. Sent on some platforms alone");
    add_throttle(power);
    add_fan(power);
}

} // namespace cli
