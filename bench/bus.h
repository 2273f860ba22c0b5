// The D-Bus peers: what each of their processes needs of the private bus whose address is in
// $DBUS_SESSION_BUS_ADDRESS.
#ifndef RUK_BENCH_BUS_H
#define RUK_BENCH_BUS_H

#include <systemd/sd-bus.h>

#include "processes.h"

namespace bench
{

constexpr char bus_name[] = "org.example.Blade";
constexpr char bus_path[] = "/blade";

inline sd_bus *open_bus()
{
    sd_bus *bus = nullptr;
    check(sd_bus_open_user(&bus) >= 0, "sd_bus_open_user");
    return bus;
}

[[noreturn]] inline void serve(sd_bus *bus)
{
    for (;;) {
        const int done = sd_bus_process(bus, nullptr);
        check(done >= 0, "sd_bus_process");
        if (done == 0)
            check(sd_bus_wait(bus, UINT64_MAX) >= 0, "sd_bus_wait");
    }
}

} // namespace bench

#endif
