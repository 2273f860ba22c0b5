// Named events. Nobody can look an event up by its name, so that all of it lives in its object.
//
// The object's first word counts the events that it has been and says how the present one is, so
// that whoever slept meanwhile sees that his event is gone even when there is another already.

#include <atomic>
#include <cstring>

#include "platform/delivery.h"
#include "platform/futex.h"
#include "platform/os.h"
#include "platform/status.h"

namespace
{

using namespace ruk::host;

static_assert(sizeof(os_event) == 84);

enum phase : uint32_t { none = 0, unset = 1, set = 2, phases = 4 };

std::atomic<uint32_t> &state_of(os_event &event)
{
    return reinterpret_cast<std::atomic<uint32_t> &>(event.platform[0]);
}

// The same event in another phase.
uint32_t with(uint32_t state, phase next)
{
    return state / phases * phases + next;
}

// Goes over to the phase, from whatever another thread makes of it meanwhile: the state that was
// left, or one without an event.
uint32_t change(std::atomic<uint32_t> &state, phase next)
{
    uint32_t left = state.load();
    while (left % phases != none && !state.compare_exchange_weak(left, with(left, next)))
        ;
    return left;
}

} // namespace

uint32_t os_ev_create(const char *name, os_event *event)
{
    const size_t length = name ? strnlen(name, sizeof event->name) : 0;
    if (!event || length == 0 || length == sizeof event->name)
        return RUK_OS_BAD_ARGUMENT;
    std::atomic<uint32_t> &state = state_of(*event);
    if (event->name[0] != '\0' && state % phases != none)
        return RUK_OS_EXISTS;
    memset(event->name, 0, sizeof event->name);
    memcpy(event->name, name, length);
    state = with(state + phases, unset);
    return 0;
}

uint32_t os_ev_set(os_event *event)
{
    if (!event)
        return RUK_OS_BAD_ARGUMENT;
    std::atomic<uint32_t> &state = state_of(*event);
    const uint32_t left = change(state, set);
    if (left % phases == none)
        return RUK_OS_NOT_CREATED;
    if (left % phases == unset)
        futex_wake_one(state);
    return 0;
}

uint32_t os_ev_wait(os_event *event, uint32_t ticks)
{
    if (!event)
        return RUK_OS_BAD_ARGUMENT;
    std::atomic<uint32_t> &state = state_of(*event);
    const moment until = ticks_from_now(ticks);
    const uint32_t first = state;
    for (;;) {
        uint32_t now = state;
        if (now % phases == none || now / phases != first / phases)
            return RUK_OS_NOT_CREATED;
        if (now % phases == set) {
            if (state.compare_exchange_strong(now, with(now, unset)))
                return 0;
        } else if (!wait_and_listen(state, now, until)) {
            return 0; // whoever waits looks himself at what there is to do
        }
    }
}

uint32_t os_ev_delete(os_event *event)
{
    if (!event)
        return RUK_OS_BAD_ARGUMENT;
    std::atomic<uint32_t> &state = state_of(*event);
    if (change(state, none) % phases == none)
        return RUK_OS_NOT_CREATED;
    memset(event->name, 0, sizeof event->name);
    futex_wake_all(state);
    return 0;
}
