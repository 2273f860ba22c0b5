#include "check.h"

#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tests
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;

std::optional<uint8_t> blade_to_ask()
{
    const char *slot = getenv("RUK_CHECK_BLADE");
    return slot ? std::optional(static_cast<uint8_t>(strtoul(slot, nullptr, 10))) : std::nullopt;
}

bool can_post()
{
    return getenv("RUK_CHECK_POST") != nullptr;
}

bool post_event()
{
    return system(getenv("RUK_CHECK_POST")) == 0; // NOLINT(cert-env33-c): what the caller asked for
}

milliseconds ticks(uint32_t count)
{
    const char *length = getenv("RUK_CHECK_TICK_MS");
    return milliseconds(length ? strtoul(length, nullptr, 10) : 10) * count;
}

milliseconds duration_of(const std::function<void()> &something)
{
    const auto begin = steady_clock::now();
    something();
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
}

bool eventually(const std::function<bool()> &so)
{
    for (int tries = 0; tries < 500; ++tries) {
        if (so())
            return true;
        std::this_thread::sleep_for(milliseconds(10));
    }
    return so();
}

uint32_t in_thread(const std::function<uint32_t()> &function)
{
    uint32_t result = 0;
    std::thread([&] { result = function(); }).join();
    return result;
}

int in_child(const std::function<int()> &function)
{
    fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0)
        _exit(function());
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string new_name()
{
    static int last = 0;
    return "ruk_platform_check-" + std::to_string(getpid()) + "-" + std::to_string(++last);
}

uint32_t look_up(const std::string &name, os_mutex &mutex)
{
    mutex = os_mutex{};
    return os_mutex_create(name.c_str(), &mutex) == 0 ? 0 : os_mutex_ident(name.c_str(), &mutex);
}

} // namespace tests
