// The named mutexes of a chassis: a table in memory that its processes share.
//
// A name is the identity of a mutex; where it stands in the table is not. Names are never given
// back, and every start of a client makes a new one, so a name takes the place of another that
// nobody alive has used lately. That is safe even when it was wrong: whoever locks a place looks
// whether it still bears the name, and otherwise looks the name up again, or makes it again.
#ifndef RUK_HOST_PLATFORM_MUTEX_TABLE_H
#define RUK_HOST_PLATFORM_MUTEX_TABLE_H

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "platform/os.h"
#include "platform/robust_lock.h"

namespace ruk::host
{

// A name in words, padded with zeros: a thread may compare them while another writes them.
using mutex_name = std::array<uint32_t, sizeof(os_mutex::name) / sizeof(uint32_t)>;

struct alignas(64) mutex_slot {
    robust_lock lock;
    std::atomic<uint32_t> holder;  // the thread that has the lock; 0 for none
    std::atomic<uint32_t> user;    // the process that used the name last
    std::atomic<uint32_t> version; // of the name; odd while it is being written
    std::array<std::atomic<uint32_t>, std::tuple_size_v<mutex_name>> name; // changed under lock
};

constexpr size_t slots_of_a_set = 16;
constexpr size_t mutex_sets = 128;

// A name stands in the one set that its hash names, in any slot of it.
using mutex_set = std::array<mutex_slot, slots_of_a_set>;

struct mutex_table {
    robust_lock changes; // held by whoever changes names
    std::array<mutex_set, mutex_sets> sets;
};

void init_mutexes(mutex_table &table);

// False when the text is no name: null, empty or too long.
bool read_mutex_name(const char *text, mutex_name &name);

// The slot that bears the name now, or null. Takes no lock.
mutex_slot *find_mutex(mutex_table &table, const mutex_name &name);

// Whether the slot bears the name; for as long as the caller has the slot's lock, if it has it.
bool bears(const mutex_slot &slot, const mutex_name &name);

// Gives the name a slot: 0, or RUK_OS_EXISTS when it has one already, which is stored too.
uint32_t make_mutex(mutex_table &table, const mutex_name &name, mutex_slot *&slot);

} // namespace ruk::host

#endif
