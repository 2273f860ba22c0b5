// The least that waking processes costs: a word that they wait for, and one system call. `COUNT
// PROCESSES`; prints the median in nanoseconds until the last one runs.

#include <climits>
#include <linux/futex.h>
#include <sys/syscall.h>

#include "wake.h"

using namespace bench;

int main(int argc, char **argv)
{
    if (argc < 3 || number(argv[2]) > most_waiters)
        return 2;
    auto &word = shared_with_children<std::atomic<uint32_t>>();
    const auto wait = [&](waiter &self) {
        for (uint32_t seen = 0;;) {
            syscall(SYS_futex, &word, FUTEX_WAIT, seen, nullptr, nullptr, 0);
            if (word != seen)
                self.hears(seen = word);
        }
    };
    const auto tell = [&](uint32_t mark) {
        word = mark;
        syscall(SYS_futex, &word, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
    };
    waiters all(number(argv[2]), wait, tell);
    printf("%lu\n", static_cast<unsigned long>(all.median_ns(number(argv[1]))));
}
