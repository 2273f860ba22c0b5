// Event sets, and the registration for events.

#include "ruk_ipmi/events.h"

#include <cstddef>
#include <cstring>

#include "platform/log.h"
#include "runtime/state.h"
#include "runtime/threads.h"
#include "runtime/words.h"

static_assert(sizeof(imc_event_set) == 8);
static_assert(sizeof(imc_event_info) == 8 && offsetof(imc_event_info, event) == 4);
static_assert(sizeof event_action == 780);

using namespace ruk;

namespace
{

// Where an event's bit is.
struct bit {
    uint8_t byte;
    uint8_t mask;

    explicit bit(uint32_t e)
        : byte(static_cast<uint8_t>((e - 1) >> 3)),
          mask(static_cast<uint8_t>(1u << ((e - 1) & 7)))
    {
    }
};

} // namespace

// A row for an event.
static constexpr imc_event_action row = {{0, 0, 0, 0, 0, 0, 0, 0, 0xFF}};

// clang-format off
imc_event_action event_action[IMC_EVENTS + 1] = {
    {{0x30, 0x90}},
    row, row, row, row, row, row, row, row, row, row, row, row, row, row, row, row,
    row, row, row, row, row, row, row, row, row, row, row, row, row, row, row, row,
    row, row, row, row, row, row, row, row, row, row, row, row, row, row, row, row,
    row, row, row, row, row, row, row, row, row, row, row, row, row, row, row, row,
};
// clang-format on

void imc_event_set_init(imc_event_set *set)
{
    *set = {};
}

void imc_event_set_SET(uint32_t e, imc_event_set *set)
{
    const bit at(e);
    set->bytes[at.byte] = static_cast<uint8_t>(set->bytes[at.byte] | at.mask);
}

void imc_event_set_CLR(uint32_t e, imc_event_set *set)
{
    const bit at(e);
    set->bytes[at.byte] = static_cast<uint8_t>(set->bytes[at.byte] & ~at.mask);
}

uint32_t imc_event_set_TEST(uint32_t e, const imc_event_set *set)
{
    const bit at(e);
    return (set->bytes[at.byte] & at.mask) != 0;
}

uint32_t imc_event_set_NEXT_ASSERTED(uint32_t after, const imc_event_set *set)
{
    while (after < IMC_EVENTS)
        if (imc_event_set_TEST(++after, set))
            return after;
    return 0;
}

uint32_t ruk_register_imc_event_set(const imc_event_set *set, imc_event_callback cb)
{
    {
        lib_state &lib = ipmi_lib_state;
        const guard lock(registration_lock);
        lib.event_mask = *set;
        lib.event_callback = cb;
        store(lib.last_int_num, 0u);
    }
    if (!claims_callback_thread())
        return 0;
    const uint32_t rc = create_callback_thread();
    if (rc != 0)
        slog_dlog("Error code returned by os_thread_create %d (0x%d) ", rc, rc);
    return rc;
}
