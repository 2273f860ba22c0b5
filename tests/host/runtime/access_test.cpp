// What an access to the ring leaves behind: nothing.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <malloc.h>

#include "daemon.h"
#include "runtime_processes.h"

namespace
{

using namespace tests;

constexpr char one_blade[] = "[[blade]]\nslot = 1\n";

// What a process holds: lines of its memory map, descriptors, bytes that are allocated.
struct holdings {
    long mappings;
    long descriptors;
    size_t allocated;

    bool operator==(const holdings &other) const
    {
        return mappings == other.mappings && descriptors == other.descriptors &&
               allocated == other.allocated;
    }
};

holdings what_is_held()
{
    std::ifstream maps("/proc/self/maps");
    const std::filesystem::directory_iterator open("/proc/self/fd");
    const long lines = std::count(std::istreambuf_iterator<char>(maps), {}, '\n');
    const long descriptors = std::distance(begin(open), end(open));
    return {lines, descriptors, mallinfo2().uordblks};
}

// Writes and reads in turn.
bool access_ring(void **holder, uint32_t times)
{
    uint32_t position = static_cast<ipmi_shm *>(*holder)->last_int_num;
    for (uint32_t i = 0; i < times; i += 2) {
        ipmi_interrupt interrupt = marked_interrupt(i);
        interrupt.int_num = position + 1;
        if (put_next_interrupt(interrupt.int_num, holder, &interrupt) != 0 ||
            get_next_interrupt(&position, holder, &interrupt, 0) != 0 ||
            mark_of(interrupt.location) != i)
            return false;
    }
    return true;
}

} // namespace

TEST(RingAccess, AMillionTimesHoldsOnToNothing)
{
    const chassis_daemon served(one_blade);
    EXPECT_EQ(in_child([] {
                  void *holder = nullptr;
                  if (get_ipmi_shm_ptr(&holder) != 0 || !access_ring(&holder, 1000))
                      return 2;
                  const holdings before = what_is_held();
                  if (!access_ring(&holder, 1000000))
                      return 3;
                  return what_is_held() == before ? 0 : 4;
              }),
              0);
}
