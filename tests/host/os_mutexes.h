// What the tests of named mutexes do again and again.
#ifndef RUK_TESTS_HOST_OS_MUTEXES_H
#define RUK_TESTS_HOST_OS_MUTEXES_H

#include <cstdint>
#include <functional>
#include <string>

#include "platform/os.h"

namespace tests
{

// What the library does at every access to the ring: make it, or find it made.
uint32_t look_up(const char *name, os_mutex &mutex);

// The mutex of that name; the test fails when there is none to be had.
os_mutex made(const std::string &name);

// The result of a function in another thread.
uint32_t in_thread(const std::function<uint32_t()> &function);

// Whether somebody else has the mutex.
bool is_held(os_mutex mutex);

// All of a status that a process can leave behind.
int as_exit_status(uint32_t status);

} // namespace tests

#endif
