#include "os_mutexes.h"

#include <gtest/gtest.h>
#include <thread>

#include "platform/status.h"

namespace tests
{

uint32_t look_up(const char *name, os_mutex &mutex)
{
    mutex = os_mutex{};
    return os_mutex_create(name, &mutex) == 0 ? 0 : os_mutex_ident(name, &mutex);
}

os_mutex made(const std::string &name)
{
    os_mutex mutex{};
    EXPECT_EQ(0u, look_up(name.c_str(), mutex));
    return mutex;
}

uint32_t in_thread(const std::function<uint32_t()> &function)
{
    uint32_t rc = 0;
    std::thread([&] { rc = function(); }).join();
    return rc;
}

int as_exit_status(uint32_t status)
{
    return static_cast<int>(status & 0xFF);
}

bool is_held(os_mutex mutex)
{
    return in_thread([&] {
               const uint32_t rc = os_mutex_get(&mutex, 0);
               if (rc == 0)
                   os_mutex_put(&mutex);
               return rc;
           }) == RUK_OS_TIMED_OUT;
}

} // namespace tests
