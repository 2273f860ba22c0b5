// Processes that post interrupts and processes that are told of them.
#ifndef RUK_TESTS_HOST_RUNTIME_PROCESSES_H
#define RUK_TESTS_HOST_RUNTIME_PROCESSES_H

#include <chrono>
#include <cstdint>
#include <functional>

#include "ruk_ipmi.h"

namespace tests
{

// An interrupt carries a number of its writer's in the four bytes where the blade's location is,
// so that an event callback can tell interrupts apart. It asserts event 1.
ipmi_interrupt marked_interrupt(uint32_t mark);
uint32_t mark_of(const blade_location &location);

// Registers for event 1, tells `on_mark` of every mark on the callback thread, and ends the process
// when `until` is so: with 0, or with 1 when the runtime could not be started.
[[noreturn]] void read_events(std::function<void(uint32_t mark)> on_mark,
                              const std::function<bool()> &until);

// Posts an interrupt with the mark as any producer does. False when that fails.
bool post_mark(uint32_t mark);

// As post_mark, with the interrupt's own number for a mark.
bool post_number();

void pause_for(std::chrono::microseconds time);

} // namespace tests

#endif
