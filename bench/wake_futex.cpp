// The least that waking processes costs: a word that they wait for, and one system call; with two
// hops, the thread that is woken hands on to a second one of its process. `COUNT PROCESSES HOPS`;
// prints the median in nanoseconds until the last one runs.

#include <climits>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <thread>

#include "wake.h"

using namespace bench;

namespace
{

using word = std::atomic<uint32_t>;

void wake(word &told, uint32_t mark)
{
    told = mark;
    syscall(SYS_futex, &told, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

// Gives `hear` each mark that the word takes on, for ever.
template <typename Hear>
void follow(word &told, Hear hear)
{
    for (uint32_t seen = 0;;) {
        syscall(SYS_futex, &told, FUTEX_WAIT, seen, nullptr, nullptr, 0);
        if (told != seen)
            hear(seen = told);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4 || number(argv[2]) > most_waiters)
        return 2;
    const bool handed_on = number(argv[3]) == 2;
    auto &shared = shared_with_children<word>();
    const auto wait = [&](waiter &self) {
        const auto hear = [&](uint32_t mark) { self.hears(mark); };
        if (!handed_on)
            follow(shared, hear);
        word own{0};
        std::thread second([&] { follow(own, hear); });
        follow(shared, [&](uint32_t mark) { wake(own, mark); });
    };
    waiters all(number(argv[2]), wait, [&](uint32_t mark) { wake(shared, mark); });
    printf("%lu\n", static_cast<unsigned long>(all.median_ns(number(argv[1]))));
}
