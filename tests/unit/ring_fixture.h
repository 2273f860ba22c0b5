// The interrupt ring in tests: interrupts that can be told apart, a producer and a reader.
#ifndef RUK_IPMI_TESTING_RING_FIXTURE_H
#define RUK_IPMI_TESTING_RING_FIXTURE_H

#include <cstring>
#include <initializer_list>
#include <vector>

#include "ruk_ipmi/ring.h"
#include "support/guarded.h"
#include "support/scripted_test.h"

namespace ruk_ipmi_testing
{

using words = std::vector<uint32_t>;

// An interrupt of which every byte is set, no two in a row alike. Its `prev_num` is one that nobody
// asked for.
inline ipmi_interrupt interrupt(uint32_t number)
{
    bytes content(sizeof(ipmi_interrupt));
    for (size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<uint8_t>(number + 7 * i);
    ipmi_interrupt made;
    memcpy(&made, content.data(), sizeof made);
    made.int_num = number;
    made.prev_num = 0xDEADDEAD;
    return made;
}

inline bool operator==(const ipmi_shm &a, const ipmi_shm &b)
{
    return memcmp(&a, &b, sizeof a) == 0;
}

// What an access does to the platform.
inline const event finds_region = os_call("find_component_shm 4");
inline const event creates_mutex = os_call("os_mutex_create ruk_mutex_ipmi");
inline const event identifies_mutex = os_call("os_mutex_ident ruk_mutex_ipmi");
inline const event locks = os_call("os_mutex_get ruk_mutex_ipmi, 100 ticks");
inline const event unlocks = os_call("os_mutex_put ruk_mutex_ipmi");

class ring_test : public scripted_test
{
  protected:
    ring_test() { stand_behind(0); }

    uint32_t put(uint32_t number)
    {
        ipmi_interrupt record = interrupt(number);
        return put_next_interrupt(number, &holder, &record);
    }

    void put_each(std::initializer_list<uint32_t> numbers)
    {
        for (const uint32_t number : numbers)
            ASSERT_EQ(put(number), 0u);
    }

    void put_from_to(uint32_t first, uint32_t last)
    {
        for (uint32_t number = first; number <= last; ++number)
            ASSERT_EQ(put(number), 0u);
    }

    // A reader's position.
    void stand_behind(uint32_t number) { *position = number; }

    uint32_t get(uint32_t continuing = 0)
    {
        return get_next_interrupt(position.get(), &holder, out.get(), continuing);
    }

    uint32_t get_behind(uint32_t number, uint32_t continuing = 0)
    {
        stand_behind(number);
        return get(continuing);
    }

    void blank_out() { memset(static_cast<void *>(out.get()), decltype(out)::fill, sizeof *out); }

    // What the first slots hold: the numbers of their interrupts, and their old numbers.
    words numbers(size_t slots) const { return of_slots(slots, &ipmi_interrupt::int_num); }
    words old_numbers(size_t slots) const { return of_slots(slots, &ipmi_interrupt::prev_num); }

    ipmi_shm &region = platform.os.region;
    void *holder = nullptr;
    guarded<uint32_t> position;
    guarded<ipmi_interrupt> out;

  private:
    words of_slots(size_t count, uint32_t ipmi_interrupt::*number) const
    {
        words all;
        for (size_t i = 0; i < count; ++i)
            all.push_back(region.ring[i].*number);
        return all;
    }
};

} // namespace ruk_ipmi_testing

#endif
