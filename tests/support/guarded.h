// A caller's record with guards on both sides, to see that a function writes there and nowhere
// else. A record without padding lies at an odd address, the worst place that a caller may choose.
#ifndef RUK_IPMI_TESTING_GUARDED_H
#define RUK_IPMI_TESTING_GUARDED_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>

#include "support/bytes.h"

namespace ruk_ipmi_testing
{

template <typename Record>
class guarded
{
    static_assert(std::is_trivially_copyable_v<Record>);

  public:
    static constexpr uint8_t fill = 0xA5;

    guarded()
    {
        memset(memory, fill, sizeof memory);
        record = new (memory + before) Record; // left as it is: filled
        memset(static_cast<void *>(record), fill, sizeof(Record));
    }

    guarded(const guarded &) = delete;
    guarded &operator=(const guarded &) = delete;

    Record *get() { return record; }
    Record *operator->() { return record; }
    Record &operator*() { return *record; }
    const Record &operator*() const { return *record; }

    bytes content() const { return bytes_of(*record); }

    // Nothing was written around the record.
    bool guards_hold() const
    {
        return filled(memory, before) && filled(memory + before + sizeof(Record), behind);
    }

    // Nor into it.
    bool untouched() const { return filled(memory, sizeof memory); }

  private:
    static constexpr size_t behind = 32;
    static constexpr size_t before = alignof(Record) == 1 ? 33 : 32;

    static bool filled(const uint8_t *from, size_t length)
    {
        return std::all_of(from, from + length, [](uint8_t byte) { return byte == fill; });
    }

    alignas(32) uint8_t memory[before + sizeof(Record) + behind];
    Record *record;
};

} // namespace ruk_ipmi_testing

#endif
