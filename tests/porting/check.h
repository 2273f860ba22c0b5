// What the checks of a platform have in common. They know nothing of it but what src/platform/
// declares and docs/porting.md asks for.
#ifndef RUK_TESTS_PORTING_CHECK_H
#define RUK_TESTS_PORTING_CHECK_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "platform/os.h"

namespace tests
{

// The blade that may be asked (RUK_CHECK_BLADE); none when nothing is said.
std::optional<uint8_t> blade_to_ask();
constexpr char no_blade[] = "RUK_CHECK_BLADE names no blade to ask";

// Whether there is a way to post an event (RUK_CHECK_POST), and whether it went well.
bool can_post();
bool post_event();
constexpr char no_way_to_post[] = "RUK_CHECK_POST is no command to post an event by";

// How long that many ticks are: RUK_CHECK_TICK_MS each, 10 when nothing is said.
std::chrono::milliseconds ticks(uint32_t count);

// How long something takes.
std::chrono::milliseconds duration_of(const std::function<void()> &something);

// Waits until something is so, for some seconds at the most.
bool eventually(const std::function<bool()> &so);

// The result of a function in another thread.
uint32_t in_thread(const std::function<uint32_t()> &function);

// Runs a function in a child process: its result, or minus the signal that ended it.
int in_child(const std::function<int()> &function);

// A name that no mutex of the platform's has yet.
std::string new_name();

// The mutex that is made, or found, under that name.
uint32_t look_up(const std::string &name, os_mutex &mutex);

} // namespace tests

#endif
