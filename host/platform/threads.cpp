#include <cerrno>
#include <csignal>
#include <cstdio>
#include <pthread.h>
#include <semaphore.h>

#include "platform/os.h"
#include "platform/status.h"

namespace
{

// What a new thread is told, on the stack of the one that waits until it has heard.
struct beginning {
    void *(*entry)(void *);
    void *arg;
    os_thread_id *id;
    sem_t heard;
};

void *begin(void *told)
{
    auto *from = static_cast<beginning *>(told);
    const auto entry = from->entry;
    void *const arg = from->arg;
    *from->id = pthread_self();
    sem_post(&from->heard);
    return entry(arg);
}

// Detached, and with all signals blocked: they are for the process's own threads to handle.
int start_detached(beginning &told)
{
    pthread_attr_t attributes;
    int rc = pthread_attr_init(&attributes);
    if (rc != 0)
        return rc;
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    sigset_t all;
    sigset_t kept;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &kept);
    pthread_t thread;
    rc = pthread_create(&thread, &attributes, begin, &told);
    pthread_sigmask(SIG_SETMASK, &kept, nullptr);
    pthread_attr_destroy(&attributes);
    return rc;
}

} // namespace

uint32_t os_thread_create(void *(*entry)(void *), void *arg, os_thread_id *id)
{
    if (!entry || !id)
        return RUK_OS_BAD_ARGUMENT;
    beginning told = {entry, arg, id, {}};
    sem_init(&told.heard, 0, 0);
    const int rc = start_detached(told);
    while (rc == 0 && sem_wait(&told.heard) != 0 && errno == EINTR)
        ;
    sem_destroy(&told.heard);
    return rc == 0 ? 0 : RUK_OS_NO_RESOURCES;
}

uint32_t os_thread_set_name(const char *name)
{
    if (!name)
        return RUK_OS_BAD_ARGUMENT;
    char shown[16]; // all that the kernel keeps of a thread's name
    snprintf(shown, sizeof shown, "%s", name);
    return pthread_setname_np(pthread_self(), shown) == 0 ? 0 : RUK_OS_NO_RESOURCES;
}

void os_thread_exit(void)
{
    pthread_exit(nullptr);
}
