// Clients that each ask a blade of their own, all at the same time: `ASKED COUNTED MILLISECONDS`,
// the blades in slots 1 to ASKED of the daemon that serves the runtime directory. Prints the median
// in nanoseconds of the round trips to the first COUNTED of them.

#include <array>

#include "exchange.h"

using namespace bench;

namespace
{

constexpr unsigned most_blades = 64;

struct common {
    starting_line line;
    std::array<uint64_t, most_blades> median_ns;
};

uint64_t median_round_trip(common &all, uint64_t window_ns, uint8_t slot)
{
    ask_blade(slot);
    const uint64_t end = all.line.wait() + window_ns;
    std::vector<uint64_t> times;
    do {
        const uint64_t asked = now_ns();
        ask_blade(slot);
        times.push_back(now_ns() - asked);
    } while (now_ns() < end);
    return median(times);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4 || number(argv[1]) > most_blades || number(argv[2]) > number(argv[1]))
        return 2;
    const unsigned asked = number(argv[1]);
    const unsigned counted = number(argv[2]);
    const uint64_t window_ns = number(argv[3]) * 1'000'000ull;
    common &all = shared_with_children<common>();
    const auto asking = start(asked, [&](unsigned i) {
        all.median_ns[i] = median_round_trip(all, window_ns, static_cast<uint8_t>(i + 1));
    });
    all.line.open_for(asked);
    wait_for_success(asking);
    const auto first = all.median_ns.begin();
    printf("%lu\n", static_cast<unsigned long>(median({first, first + counted})));
}
