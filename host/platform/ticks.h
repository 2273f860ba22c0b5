// Time as the OS layer counts it: in ticks, on a clock that nobody sets.
#ifndef RUK_HOST_PLATFORM_TICKS_H
#define RUK_HOST_PLATFORM_TICKS_H

#include <chrono>
#include <cstdint>

namespace ruk::host
{

using monotonic = std::chrono::steady_clock;
using moment = monotonic::time_point;

constexpr std::chrono::milliseconds tick{10};
constexpr moment never = moment::max();

// When a wait of so many ticks that begins now is over; `never` for OS_WAIT_FOREVER.
moment ticks_from_now(uint32_t ticks);

} // namespace ruk::host

#endif
