// Processes around the OS layer: a runtime directory for the test's own, children and what they
// share with it, and programs that begin anew.
#ifndef RUK_TESTS_HOST_OS_PROCESSES_H
#define RUK_TESTS_HOST_OS_PROCESSES_H

#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <sys/mman.h>
#include <sys/types.h>

namespace tests
{

// A directory that goes when this goes.
class temporary_directory
{
  public:
    temporary_directory();
    ~temporary_directory();
    temporary_directory(const temporary_directory &) = delete;
    temporary_directory &operator=(const temporary_directory &) = delete;

    const std::string &path() const { return path_; }

  private:
    std::string path_;
};

// A process maps the OS layer's file once: all these tests have one runtime directory.
class os_layer_test : public testing::Test
{
  protected:
    static void SetUpTestSuite();
};

// A function that runs in a child process, which is killed at the latest when this goes.
class child_process
{
  public:
    explicit child_process(const std::function<int()> &function);
    ~child_process();
    child_process(child_process &&other) noexcept : pid_(other.pid_) { other.pid_ = -1; }
    child_process &operator=(child_process &&other) noexcept;

    void kill();
    // Its exit status, or minus the number of the signal that ended it.
    int wait();

  private:
    pid_t pid_;
};

// os_client with two arguments in a runtime directory, and an input, or none; does not return.
int exec_os_client(const std::string &directory, const char *what, const char *argument,
                   int input = -1);

// Something that the test and its children see alike.
template <typename T>
class shared
{
  public:
    shared() : there_(new (map()) T{}) {}
    ~shared() { munmap(there_, sizeof(T)); }
    shared(const shared &) = delete;
    shared &operator=(const shared &) = delete;

    T *operator->() const { return there_; }
    T &operator*() const { return *there_; }

  private:
    static void *map()
    {
        return mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    }

    T *there_;
};

// How long something takes.
std::chrono::milliseconds duration_of(const std::function<void()> &something);

} // namespace tests

#endif
