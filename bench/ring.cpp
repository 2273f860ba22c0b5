// The interrupt ring of a chassis of its own, full, in $RUK_RUNTIME_DIR: `OPERATION COUNT`.
//
//     write           an interrupt
//     read-newest     by a reader that has all but the newest
//     read-in-a-row   by a reader that begins at the oldest and takes all, again and again
//     copy-in         a record into the next slot, under the same mutex
//     copy-out        a record out of the next slot, under the same mutex

#include <cstring>

#include "platform/directory.h"
#include "platform/region.h"
#include "repeat.h"
#include "ruk_ipmi/objects.h"
#include "ruk_ipmi/ring.h"

namespace
{

constexpr uint32_t slots = IPMI_RING_SLOTS;

void *holder = nullptr;
ipmi_interrupt record{};
uint32_t newest = 0;

bool write()
{
    record.int_num = ++newest;
    return put_next_interrupt(newest, &holder, &record) == 0;
}

bool make_full_ring()
{
    if (!ruk::host::map_region(ruk::host::runtime_directory(), true) || init_shm_ptr(&holder) != 0)
        return false;
    for (uint32_t i = 0; i < slots; ++i)
        if (!write())
            return false;
    return true;
}

bool read_behind(uint32_t position, uint32_t continuing)
{
    return get_next_interrupt(&position, &holder, &record, continuing) == 0 &&
           record.int_num == position;
}

// Copies in the same slots, under the mutex that is looked up by its name each time.
template <typename Copy>
bool under_mutex(Copy copy)
{
    static uint32_t at = 0;
    mutex_obj mutex{};
    if (acquire_mutex("ruk_mutex_ipmi", &mutex, 0) != 0)
        return false;
    copy(static_cast<ipmi_shm *>(holder)->ring[at]);
    at = at + 1 == slots ? 0 : at + 1;
    release_mutex(&mutex);
    return true;
}

struct {
    const char *name;
    bool (*operation)();
} const operations[] = {
    {"write", write},
    {"read-newest", [] { return read_behind(newest - 1, 1) && record.int_num == newest; }},
    {"read-in-a-row",
     [] {
         static uint32_t position = 0;
         position = position == newest ? 0 : position;
         return read_behind(position, position != 0) && record.int_num == ++position;
     }},
    {"copy-in",
     [] {
         return under_mutex([](ipmi_interrupt &slot) {
             slot = record;
             bench::touch(&slot);
         });
     }},
    {"copy-out",
     [] {
         return under_mutex([](const ipmi_interrupt &slot) {
             record = slot;
             bench::touch(&record);
         });
     }},
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3 || !make_full_ring())
        return 2;
    for (const auto &each : operations)
        if (strcmp(argv[1], each.name) == 0)
            return bench::repeat(argv[2], each.operation);
    return 2;
}
