#include "os_processes.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#if defined(__SANITIZE_THREAD__)
// A forked child goes on listening for notifications in a thread of its own, and may start others.
extern "C" const char *__tsan_default_options()
{
    return "die_after_fork=0";
}
#endif

namespace tests
{

temporary_directory::temporary_directory()
{
    char name[] = "/tmp/ruk-test-XXXXXX";
    if (!mkdtemp(name))
        throw std::runtime_error("no temporary directory");
    path_ = name;
}

temporary_directory::~temporary_directory()
{
    std::filesystem::remove_all(path_);
}

void os_layer_test::SetUpTestSuite()
{
    static const temporary_directory directory;
    setenv("RUK_RUNTIME_DIR", directory.path().c_str(), 1);
}

child_process::child_process(const std::function<int()> &function)
{
    fflush(nullptr);
    pid_ = fork();
    if (pid_ == 0)
        _exit(function());
}

child_process::~child_process()
{
    if (pid_ > 0) {
        kill();
        wait();
    }
}

child_process &child_process::operator=(child_process &&other) noexcept
{
    std::swap(pid_, other.pid_);
    return *this;
}

void child_process::kill()
{
    ::kill(pid_, SIGKILL);
}

int child_process::wait()
{
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int exec_os_client(const std::string &directory, const char *what, const char *argument, int input)
{
    dup2(input < 0 ? open("/dev/null", O_RDONLY | O_CLOEXEC) : input, STDIN_FILENO);
    setenv("RUK_RUNTIME_DIR", directory.c_str(), 1);
    execl(RUK_OS_CLIENT, RUK_OS_CLIENT, what, argument, nullptr);
    return 127;
}

std::chrono::milliseconds duration_of(const std::function<void()> &something)
{
    const auto begin = std::chrono::steady_clock::now();
    something();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 begin);
}

} // namespace tests
