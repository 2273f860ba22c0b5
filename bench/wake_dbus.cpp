// A signal through a bus daemon to the processes that subscribed to it: `COUNT PROCESSES`. Prints
// the median in nanoseconds until the last one's handler runs.

#include "bus.h"
#include "wake.h"

using namespace bench;

namespace
{

int on_signal(sd_bus_message *signal, void *self, sd_bus_error *)
{
    uint32_t mark = 0;
    check(sd_bus_message_read(signal, "u", &mark) > 0, "the signal");
    static_cast<waiter *>(self)->hears(mark);
    return 1;
}

void wait_for_signals(waiter &self)
{
    sd_bus *const bus = open_bus();
    check(sd_bus_match_signal(bus, nullptr, nullptr, bus_path, bus_name, "Posted", on_signal,
                              &self) >= 0,
          "sd_bus_match_signal");
    serve(bus);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3 || number(argv[2]) > most_waiters)
        return 2;
    sd_bus *bus = nullptr; // opened behind the fork: a connection belongs to one process
    const auto tell = [&](uint32_t mark) {
        if (!bus)
            bus = open_bus();
        check(sd_bus_emit_signal(bus, bus_path, bus_name, "Posted", "u", mark) >= 0 &&
                  sd_bus_flush(bus) >= 0,
              "sd_bus_emit_signal");
    };
    waiters all(number(argv[2]), wait_for_signals, tell);
    printf("%lu\n", static_cast<unsigned long>(all.median_ns(number(argv[1]))));
}
