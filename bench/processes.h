// What the programs of the bench share that measure several processes: a clock that all read alike,
// memory that they share, and children that end with their parent.
#ifndef RUK_BENCH_PROCESSES_H
#define RUK_BENCH_PROCESSES_H

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <new>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace bench
{

inline bool is_child = false;

// What fails in one process ends them all: its parent might wait for it for ever.
[[noreturn]] inline void fail(const char *what)
{
    perror(what);
    if (is_child)
        kill(getppid(), SIGTERM);
    _exit(1);
}

// A figure of something that failed would be a figure of something else.
inline void check(bool fine, const char *what)
{
    if (!fine)
        fail(what);
}

inline uint64_t now_ns()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1'000'000'000 + static_cast<uint64_t>(now.tv_nsec);
}

inline void pause_us(unsigned time)
{
    const timespec length = {time / 1'000'000, time % 1'000'000 * 1000L};
    nanosleep(&length, nullptr);
}

// The nanoseconds that one of `count` calls takes, once some have warmed everything up.
template <typename Operation>
double ns_each(unsigned count, Operation operation)
{
    for (unsigned i = 0; i < 100; ++i)
        operation();
    const uint64_t begin = now_ns();
    for (unsigned i = 0; i < count; ++i)
        operation();
    return static_cast<double>(now_ns() - begin) / count;
}

inline uint64_t median(std::vector<uint64_t> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

// For the children that are started afterwards; never given back.
template <typename Record>
Record &shared_with_children()
{
    void *at =
        mmap(nullptr, sizeof(Record), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    check(at != MAP_FAILED, "mmap");
    return *new (at) Record{};
}

// Where children wait, each ready for what it does, until all begin together; in memory that they
// share.
struct starting_line {
    std::atomic<unsigned> ready;
    std::atomic<uint64_t> begin_ns; // 0: not known yet

    // Returns when the time has come: that time.
    uint64_t wait()
    {
        ++ready;
        while (begin_ns == 0 || now_ns() < begin_ns)
            pause_us(1000);
        return begin_ns;
    }

    // Lets them begin once so many wait.
    void open_for(unsigned many)
    {
        while (ready < many)
            pause_us(1000);
        begin_ns = now_ns() + 20'000'000; // by then everybody has heard of it
    }
};

inline unsigned number(const char *argument)
{
    return static_cast<unsigned>(strtoul(argument, nullptr, 10));
}

inline void stay_on_processor(unsigned processor)
{
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(processor, &one);
    check(sched_setaffinity(0, sizeof one, &one) == 0, "sched_setaffinity");
}

// Runs a function in a child process, which does not outlive its parent.
inline pid_t start(const std::function<void()> &function)
{
    const pid_t parent = getpid();
    const pid_t child = fork();
    check(child >= 0, "fork");
    if (child != 0)
        return child;
    is_child = true;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() == parent)
        function();
    _exit(0);
}

inline std::vector<pid_t> start(unsigned many, const std::function<void(unsigned)> &function)
{
    std::vector<pid_t> started;
    for (unsigned i = 0; i < many; ++i)
        started.push_back(start([&] { function(i); }));
    return started;
}

inline void wait_for_success(const std::vector<pid_t> &children)
{
    for (const pid_t child : children) {
        int status = 0;
        check(waitpid(child, &status, 0) == child && status == 0, "a child process");
    }
}

inline void stop(const std::vector<pid_t> &children)
{
    for (const pid_t child : children) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
}

} // namespace bench

#endif
