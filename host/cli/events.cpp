// Blade events: what the interrupt ring holds, what comes, and posting some by hand.

#include <algorithm>
#include <ctime>
#include <sys/eventfd.h>
#include <unistd.h>

#include "cli/command_tree.h"
#include "cli/event_sets.h"
#include "cli/ring_reader.h"
#include "cli/shared_region.h"
#include "cli/targets.h"
#include "cli/times.h"
#include "producer/producer.h"

namespace cli
{

namespace
{

// Readable once events have come.
int doorbell = -1;

// Only rings: at first it may be told of events from before the start, and it is not told of those
// that come before its thread has begun.
int ring_doorbell(uint32_t, imc_event_info *)
{
    return eventfd_write(doorbell, 1);
}

void install_doorbell()
{
    doorbell = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (doorbell < 0)
        throw std::system_error(errno, std::generic_category(), "cannot wait for events");
    const imc_event_set events = all_events();
    check({0, "callback thread"}, ruk_ipmi_init());
    check({0, "callback thread"}, ruk_register_imc_event_set(&events, ring_doorbell));
}

struct watch_choice {
    imc_event_set events = all_events();
};

void tell_events(const ipmi_interrupt &interrupt, const imc_event_set &wanted, bool utc,
                 stream &out)
{
    const std::string now = format_time(static_cast<uint32_t>(time(nullptr)), utc);
    for (const json &number : event_numbers(interrupt.ies)) {
        const auto event = number.get<uint32_t>();
        if (imc_event_set_TEST(event, &wanted))
            out.line({{"time", now},
                      {"blade", target_name(interrupt.location)},
                      {"event", event},
                      {"name", event_name(event)},
                      {"interrupt", interrupt.int_num}});
    }
}

exit_code watch(const blades &at, const watch_choice &chosen, stream &out)
{
    constexpr auto longest_wait = std::chrono::milliseconds(100);
    ring_reader reader;
    install_doorbell();
    out.remark("watching from behind interrupt " + std::to_string(reader.position()));
    const auto found = [&](const ipmi_interrupt &interrupt) {
        if (at.locations.empty() || is_among(at.locations, interrupt.location))
            tell_events(interrupt, chosen.events, at.utc, out);
    };
    const auto missed = [&](uint32_t first, uint32_t last) {
        out.notice("ruk-ipmi: missed interrupts " + std::to_string(first) + " to " +
                       std::to_string(last) + ": they are not in the ring any more",
                   {{"missed", {{"first", first}, {"last", last}}}});
    };
    for (;;) {
        try {
            reader.read_on(found, missed);
            out.works("");
        } catch (const failure &why) { // somebody holds the ring; he will let go
            out.failed("", why);
        }
        out.wait(longest_wait, doorbell);
        eventfd_t rung = 0;
        eventfd_read(doorbell, &rung);
    }
}

struct post_choice {
    imc_event_set events{};
    bytes data;
};

bytes interrupt_data(const std::string &text)
{
    bytes data = parse_hex(text);
    if (data.size() > sizeof ipmi_interrupt::data)
        throw usage_failure(std::to_string(data.size()) + " bytes do not fit an interrupt of " +
                            std::to_string(sizeof ipmi_interrupt::data));
    return data;
}

report post(const blade &at, const post_choice &chosen)
{
    ipmi_interrupt interrupt{};
    interrupt.location = at.location;
    interrupt.ies = chosen.events;
    interrupt.data_len = static_cast<uint32_t>(chosen.data.size());
    std::copy(chosen.data.begin(), chosen.data.end(), interrupt.data);
    void *holder = shared_region();
    check({0, "interrupt ring"}, ruk::host::post_interrupt(&holder, interrupt));
    return tell({{"interrupt", interrupt.int_num}});
}

json interrupt_fields(const ipmi_interrupt &interrupt)
{
    const size_t length = std::min<size_t>(interrupt.data_len, sizeof interrupt.data);
    return {{"interrupt", interrupt.int_num},           {"previous", interrupt.prev_num},
            {"blade", target_name(interrupt.location)}, {"events", event_numbers(interrupt.ies)},
            {"data_length", interrupt.data_len},        {"data", hex(interrupt.data, length)}};
}

report show_ring()
{
    const ipmi_shm region = shared_region_copy();
    report told = tell({{"last_interrupt", region.last_int_num},
                        {"renumbered", region.renumbered != 0},
                        {"next_slot", region.next_slot}});
    const size_t oldest = region.next_slot < IPMI_RING_SLOTS ? region.next_slot : 0;
    json interrupts = json::array();
    for (size_t at = 0; at < IPMI_RING_SLOTS; ++at) {
        const ipmi_interrupt &interrupt = region.ring[(oldest + at) % IPMI_RING_SLOTS];
        if (interrupt.int_num != 0)
            interrupts.push_back(interrupt_fields(interrupt));
    }
    told.fields["interrupts"] = std::move(interrupts);
    return told;
}

} // namespace

void add_events(const noun &root)
{
    const noun events = root.noun_below("events", "What happens to the blades, and what happened");
    events.follow_verb("watch", "Show events as they come, until interrupted", watch)
        .option("--events", "LIST", &watch_choice::events, parse_events,
                "Only these, e.g. 1-8,40; otherwise all, 1 to 64. With -b: of these blades");
    events.verb("post", "Post an interrupt for each blade, and show its number", post)
        .option("--events", "LIST", &post_choice::events, parse_events,
                "The events it asserts, 1 to 64, e.g. 3,40")
        .required()
        .option("--data", "HEX", &post_choice::data, interrupt_data,
                "Its data, up to 164 bytes, e.g. 01ff");
    events.local_verb("ring", "Show the interrupts that the ring holds, oldest first", show_ring);
}

} // namespace cli
