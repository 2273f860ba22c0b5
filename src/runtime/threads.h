// The calling thread as the library names it, and the lock of its own process.
#ifndef RUK_RUNTIME_THREADS_H
#define RUK_RUNTIME_THREADS_H

#include <cstdint>
#include <pthread.h>

namespace ruk
{

inline uintptr_t thread_identifier()
{
    return static_cast<uintptr_t>(pthread_self());
}

// As log lines and object names have it.
inline int thread_number()
{
    return static_cast<int>(pthread_self());
}

// Holds a mutex while it lives.
class guard
{
  public:
    explicit guard(pthread_mutex_t &mutex) : mutex_(mutex) { pthread_mutex_lock(&mutex_); }
    ~guard() { pthread_mutex_unlock(&mutex_); }
    guard(const guard &) = delete;
    guard &operator=(const guard &) = delete;

  private:
    pthread_mutex_t &mutex_;
};

} // namespace ruk

#endif
