// Runs a command some times, one after another, and prints the median of the nanoseconds from its
// start to its end: `TIMES COMMAND [ARGUMENT...]`. What the command prints is thrown away.

#include <fcntl.h>
#include <spawn.h>

#include "processes.h"

using namespace bench;

namespace
{

uint64_t run(char **command)
{
    posix_spawn_file_actions_t silent;
    posix_spawn_file_actions_init(&silent);
    posix_spawn_file_actions_addopen(&silent, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&silent, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    pid_t child = 0;
    const uint64_t begin = now_ns();
    check(posix_spawn(&child, command[0], &silent, nullptr, command, environ) == 0, command[0]);
    wait_for_success({child});
    const uint64_t end = now_ns();

    posix_spawn_file_actions_destroy(&silent);
    return end - begin;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3 || number(argv[1]) == 0)
        return 2;
    std::vector<uint64_t> times(number(argv[1]));
    for (uint64_t &each : times)
        each = run(argv + 2);
    printf("%lu\n", static_cast<unsigned long>(median(times)));
    return 0;
}
