#include "platform/ticks.h"

#include <thread>

#include "platform/os.h"

namespace ruk::host
{

moment ticks_from_now(uint32_t ticks)
{
    return ticks == OS_WAIT_FOREVER ? never : monotonic::now() + ticks * tick;
}

} // namespace ruk::host

uint32_t os_sleep(uint32_t ticks)
{
    std::this_thread::sleep_until(ruk::host::ticks_from_now(ticks)); // signals do not shorten it
    return 0;
}
