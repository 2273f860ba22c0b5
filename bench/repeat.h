// What the programs of the bench share that do one thing many times in one process.
#ifndef RUK_BENCH_REPEAT_H
#define RUK_BENCH_REPEAT_H

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace bench
{

// Of the processor's time: what others take of it on a shared machine is not in it.
inline double processor_ns()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

// Does an operation as often as a text says and prints the nanoseconds that one took. An operation
// is false when it failed: a figure of that would be a figure of something else.
template <typename Operation>
int repeat(const char *times, Operation operation)
{
    const unsigned long count = strtoul(times, nullptr, 10);
    const double begin = processor_ns();
    for (unsigned long i = 0; i < count; ++i)
        if (!operation())
            return 1;
    printf("%.2f\n", (processor_ns() - begin) / static_cast<double>(count));
    return 0;
}

// For the compiler, the memory at this address is read here, and anything may be written there.
inline void touch(void *at)
{
    __asm__ volatile("" : : "r"(at) : "memory");
}

} // namespace bench

#endif
