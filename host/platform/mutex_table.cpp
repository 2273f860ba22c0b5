#include "platform/mutex_table.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include "platform/identity.h"
#include "platform/status.h"

namespace ruk::host
{

namespace
{

// Longer than anybody takes to change a name, unless somebody stopped him.
constexpr std::chrono::seconds patience{1};

// Of all processes alike, whatever they were built with.
mutex_set &set_of(mutex_table &table, const mutex_name &name)
{
    uint64_t hash = 0xCBF29CE484222325;
    for (const uint32_t word : name)
        hash = (hash ^ word) * 0x100000001B3;
    return table.sets[(hash >> 32) % mutex_sets];
}

void note_use(mutex_slot &slot)
{
    const uint32_t process = own_identity().process;
    if (slot.user.load(std::memory_order_relaxed) != process)
        slot.user.store(process, std::memory_order_relaxed);
}

// An odd version outlived whoever was writing the name.
bool is_free(const mutex_slot &slot)
{
    return slot.version % 2 != 0 || slot.name[0] == 0;
}

bool is_left_by_the_dead(const mutex_slot &slot)
{
    return kill(static_cast<pid_t>(slot.user), 0) != 0 && errno == ESRCH;
}

// A slot of that kind, with its lock taken: nobody uses it now. Null when there is none.
mutex_slot *claim(mutex_set &set, bool (&kind)(const mutex_slot &))
{
    for (mutex_slot &each : set)
        if (kind(each) && try_lock(each.lock) == 0)
            return &each;
    return nullptr;
}

// Readers take no lock; they see by the version whether they read while this was writing.
void write_name(mutex_slot &slot, const mutex_name &name)
{
    slot.version = slot.version | 1;
    for (size_t i = 0; i < name.size(); ++i)
        slot.name[i] = name[i];
    slot.holder = 0;
    note_use(slot);
    ++slot.version;
}

uint32_t make_under_lock(mutex_table &table, const mutex_name &name, mutex_slot *&slot)
{
    slot = find_mutex(table, name);
    if (slot)
        return RUK_OS_EXISTS;
    mutex_set &set = set_of(table, name);
    slot = claim(set, is_free);
    if (!slot)
        slot = claim(set, is_left_by_the_dead);
    if (!slot)
        return RUK_OS_TABLE_FULL;
    write_name(*slot, name);
    release_lock(slot->lock);
    return 0;
}

} // namespace

void init_mutexes(mutex_table &table)
{
    init_lock(table.changes);
    for (mutex_set &set : table.sets)
        for (mutex_slot &slot : set)
            init_lock(slot.lock);
}

bool read_mutex_name(const char *text, mutex_name &name)
{
    const size_t length = text ? strnlen(text, sizeof name) : 0;
    if (length == 0 || length == sizeof name)
        return false;
    name.fill(0);
    memcpy(name.data(), text, length);
    return true;
}

mutex_slot *find_mutex(mutex_table &table, const mutex_name &name)
{
    for (mutex_slot &each : set_of(table, name))
        if (bears(each, name)) {
            note_use(each);
            return &each;
        }
    return nullptr;
}

bool bears(const mutex_slot &slot, const mutex_name &name)
{
    const uint32_t version = slot.version;
    if (version % 2 != 0)
        return false;
    for (size_t i = 0; i < name.size(); ++i)
        if (slot.name[i] != name[i])
            return false;
    return slot.version == version;
}

uint32_t make_mutex(mutex_table &table, const mutex_name &name, mutex_slot *&slot)
{
    uint32_t rc = take_lock(table.changes, monotonic::now() + patience);
    if (rc != 0)
        return rc;
    rc = make_under_lock(table, name, slot);
    release_lock(table.changes);
    return rc;
}

} // namespace ruk::host
