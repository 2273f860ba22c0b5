// The interrupt ring in the shared region. The region is other people's: whatever it holds, no
// number in it is trusted to be a slot, and every walk ends where it began.

#include "ruk_ipmi/ring.h"

#include <cstddef>
#include <iterator>

#include "platform/log.h"
#include "platform/message_service.h"
#include "ruk_ipmi/objects.h"
#include "runtime/words.h"

static_assert(sizeof(ipmi_interrupt) == 212 && offsetof(ipmi_interrupt, int_num) == 0x00 &&
              offsetof(ipmi_interrupt, prev_num) == 0x04 &&
              offsetof(ipmi_interrupt, location) == 0x0C && offsetof(ipmi_interrupt, ies) == 0x14 &&
              offsetof(ipmi_interrupt, producer_1c) == 0x1C &&
              offsetof(ipmi_interrupt, data_len) == 0x2C && offsetof(ipmi_interrupt, data) == 0x30);

static_assert(sizeof(ipmi_shm) == 42668 && offsetof(ipmi_shm, last_int_num) == 0x0000 &&
              offsetof(ipmi_shm, renumbered) == 0x0004 && offsetof(ipmi_shm, next_slot) == 0x0008 &&
              offsetof(ipmi_shm, ring) == 0x000C && offsetof(ipmi_shm, timeouts) == 0xA5AC);

using namespace ruk;

namespace
{

// The region, locked by a call. The mutex object is the call's own and begins empty, so the mutex
// is looked up by its name at each access, and threads of one process never share an object.
struct region_access {
    ipmi_shm *shm = nullptr;
    mutex_obj mutex{};

    uint32_t lock(void **holder)
    {
        uint32_t rc = get_shm_ptr(holder);
        if (rc != 0) {
            slog_elog("Error in getting the shm ptr %x\n", rc);
            return rc;
        }
        shm = static_cast<ipmi_shm *>(*holder);
        rc = acquire_mutex("ruk_mutex_ipmi", &mutex, 0);
        if (rc != 0)
            slog_elog("Error in acquiring the mutex the shm ptr %x\n", rc);
        return rc;
    }

    void unlock() { release_mutex(&mutex); }
};

// A slot that another process left; beyond the last is the first.
uint32_t slot(uint32_t number)
{
    return number < IPMI_RING_SLOTS ? number : 0;
}

// Calls `visit` with each interrupt, from the oldest on, until it says that it is done.
template <typename Visit>
void walk(ipmi_shm *shm, Visit visit)
{
    const auto run = [&visit](ipmi_interrupt *at, const ipmi_interrupt *end) {
        while (at != end && !visit(*at))
            ++at;
        return at != end;
    };
    ipmi_interrupt *const oldest = shm->ring + slot(load(shm->next_slot));
    if (!run(oldest, std::end(shm->ring)))
        run(shm->ring, oldest);
}

// Gives the interrupts in the ring the numbers 1, 2, ... in their order.
void renumber(ipmi_shm *shm)
{
    uint32_t number = 1;
    walk(shm, [&number](ipmi_interrupt &interrupt) {
        interrupt.prev_num = interrupt.int_num;
        if (interrupt.int_num != 0)
            interrupt.int_num = number++;
        return false;
    });
}

// Fills a slot. It has no number until all the rest is stored, and its old number, by which a
// reader looks after a renumbering, only while it has the other: so a writer that is killed on the
// way leaves a hole that every reader passes over, never half an interrupt or one out of its turn.
void append(ipmi_shm *shm, ipmi_interrupt record, uint32_t new_num)
{
    const uint32_t at = slot(load(shm->next_slot));
    ipmi_interrupt &target = shm->ring[at];
    const uint32_t int_num = record.int_num;
    const uint32_t prev_num = record.prev_num;
    record.int_num = record.prev_num = 0;
    target.prev_num = 0;
    in_this_order();
    target.int_num = 0;
    in_this_order();
    target = record;
    in_this_order();
    store(shm->next_slot, at + 1);
    store(shm->last_int_num, new_num); // read without the lock by a reader that begins
    in_this_order();
    store(target.int_num, int_num);
    target.prev_num = prev_num;
}

using number_field = uint32_t ipmi_interrupt::*;

// By which number a reader at position `at` finds the next interrupt; null: there is nothing new.
// After a renumbering it has to look for its place by the old numbers, once.
number_field search_key(const ipmi_shm *shm, uint32_t at, bool continuing)
{
    if (at < shm->last_int_num)
        return shm->renumbered == 0 ? &ipmi_interrupt::int_num : &ipmi_interrupt::prev_num;
    if (continuing || (at == shm->last_int_num && shm->renumbered == 0))
        return nullptr;
    return &ipmi_interrupt::prev_num;
}

} // namespace

uint32_t get_ipmi_shm_ptr(void **holder)
{
    if (!holder) {
        slog_elog("Error obtaining shared memory \n");
        return static_cast<uint32_t>(-1);
    }
    if (*holder)
        return 0;
    uint32_t rc = attach_ruk_shm();
    if (rc != 0) {
        slog_elog("Error obtaining shared memory %x\n", rc);
        return rc;
    }
    rc = find_component_shm(IPMI_COMPONENT, holder);
    if (rc != 0) {
        slog_elog("Error obtaining shared memory %x \n", rc);
        detach_ruk_shm();
    }
    return rc;
}

// The mutex object of an access begins empty: there is no other to forget.
uint32_t get_shm_ptr(void **holder)
{
    return get_ipmi_shm_ptr(holder);
}

uint32_t init_shm_ptr(void **holder)
{
    if (!holder) {
        slog_elog("Invalid parameter passed in init_shm_ptr \n");
        return IPMI_ERR_RESOURCE;
    }
    region_access region;
    const uint32_t rc = region.lock(holder);
    if (rc != 0)
        return rc;
    for (ipmi_interrupt &interrupt : region.shm->ring)
        interrupt = {};
    for (ipmi_timeouts &entry : region.shm->timeouts) { // counted without the lock
        store(entry.timeout_bumps, 0u);
        store(entry.new_sessions, 0u);
    }
    region.shm->next_slot = 0;
    region.unlock();
    return 0;
}

uint32_t put_next_interrupt(uint32_t new_num, void **holder, ipmi_interrupt *rec)
{
    if (!rec) {
        slog_elog("Invalid parameter passed in put_next_interrupt \n");
        return IPMI_ERR_RESOURCE;
    }
    region_access region;
    const uint32_t rc = region.lock(holder);
    if (rc != 0)
        return rc;

    ipmi_shm *shm = region.shm;
    const bool set_back = new_num < shm->last_int_num;
    // Slot 0 as the oldest means that the ring is not renumbered, only marked so.
    if (set_back && shm->next_slot != 0)
        renumber(shm);
    shm->renumbered = set_back;
    rec->prev_num = set_back ? shm->last_int_num + 1 : rec->int_num;
    append(shm, *rec, new_num);
    region.unlock();
    slog_dlog("After copying data \n");
    return 0;
}

uint32_t get_next_interrupt(uint32_t *last_num, void **holder, ipmi_interrupt *out,
                            uint32_t continuing)
{
    if (!out || !last_num) {
        slog_elog("Invalid parameter passed in get_next_interrupt \n");
        return IPMI_ERR_RESOURCE;
    }
    region_access region;
    const uint32_t rc = region.lock(holder);
    if (rc != 0)
        return rc;

    const uint32_t position = *last_num;
    const number_field key = search_key(region.shm, position, continuing != 0);
    if (key)
        walk(region.shm, [=](const ipmi_interrupt &interrupt) {
            if (interrupt.*key <= position)
                return false;
            *out = interrupt;
            *last_num = out->int_num;
            return true;
        });
    region.unlock();

    if (key) {
        const uint8_t *ies = out->ies.bytes;
        slog_dlog("%s(): new int %d ies bytes: %02X %02X %02X %02X %02X %02X %02X %02X\n",
                  "get_next_interrupt", *last_num, ies[0], ies[1], ies[2], ies[3], ies[4], ies[5],
                  ies[6], ies[7]);
    }
    return 0;
}
