#include "producer/producer.h"

#include "platform/notifications.h"
#include "ruk_ipmi/objects.h"

namespace ruk::host
{

namespace
{

// The ring's own lock covers a single access; between reading the last number and writing the next
// no other producer may come.
struct producers_turn {
    mutex_obj mutex{};
    const uint32_t status = acquire_mutex("ruk_mutex_producer", &mutex, 0);

    ~producers_turn()
    {
        if (status == 0)
            release_mutex(&mutex);
    }
};

// At the end of the numbers it goes on behind those that the ring then gives to what it holds, so
// that the numbers in it ascend. The very last number has none above it and is never given.
uint32_t number_behind(uint32_t last)
{
    return last < UINT32_MAX - 1 ? last + 1 : IPMI_RING_SLOTS + 1;
}

} // namespace

uint32_t post_interrupt(void **holder, ipmi_interrupt &interrupt)
{
    uint32_t rc = get_ipmi_shm_ptr(holder);
    if (rc != 0)
        return rc;
    const auto *region = static_cast<const ipmi_shm *>(*holder);
    const producers_turn turn;
    if (turn.status != 0)
        return turn.status;

    interrupt.int_num = number_behind(__atomic_load_n(&region->last_int_num, __ATOMIC_ACQUIRE));
    rc = put_next_interrupt(interrupt.int_num, holder, &interrupt);
    return rc != 0 ? rc : os_notify_post(interrupt_posted);
}

} // namespace ruk::host
