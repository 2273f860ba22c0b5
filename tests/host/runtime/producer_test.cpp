// The numbers that a producer gives.

#include <gtest/gtest.h>

#include "daemon.h"
#include "producer/producer.h"
#include "runtime_processes.h"

namespace
{

using namespace tests;

constexpr char one_blade[] = "[[blade]]\nslot = 1\n";

void *holder = nullptr;

ipmi_shm *region()
{
    return get_ipmi_shm_ptr(&holder) == 0 ? static_cast<ipmi_shm *>(holder) : nullptr;
}

uint32_t number_of_next()
{
    ipmi_interrupt interrupt = marked_interrupt(0);
    return ruk::host::post_interrupt(&holder, interrupt) == 0 ? interrupt.int_num : 0;
}

// The marks that a reader finds behind a position, as a text.
std::string marks_behind(uint32_t position)
{
    std::string marks;
    for (uint32_t last = ~position; last != position && region()->last_int_num != position;) {
        ipmi_interrupt interrupt{};
        last = position;
        if (get_next_interrupt(&position, &holder, &interrupt, 0) != 0)
            return "failed";
        marks += std::to_string(mark_of(interrupt.location)) + " ";
    }
    return marks;
}

} // namespace

TEST(Producer, NumbersFromOne)
{
    const chassis_daemon served(one_blade);
    EXPECT_EQ(in_child([] {
                  const uint32_t first = number_of_next();
                  return first == 1 && number_of_next() == 2 ? 0 : 1;
              }),
              0);
}

TEST(Producer, LosesNoInterruptAtTheEndOfTheNumbers)
{
    const chassis_daemon served(one_blade);
    EXPECT_EQ(in_child([] {
                  for (uint32_t mark = 1; mark <= 200; ++mark)
                      if (!post_mark(mark))
                          return 1;
                  region()->last_int_num = 0xFFFFFFFD;
                  region()->ring[199].int_num = 0xFFFFFFFD;
                  for (uint32_t mark = 201; mark <= 204; ++mark) // the second is set back
                      if (!post_mark(mark))
                          return 2;
                  return marks_behind(0xFFFFFFFD) == "201 202 203 204 " ? 0 : 3;
              }),
              0);
}
