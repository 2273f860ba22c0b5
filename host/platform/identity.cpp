#include "platform/identity.h"

#include <pthread.h>
#include <unistd.h>

namespace ruk::host
{

namespace
{

thread_local identity mine;

const int at_fork = pthread_atfork(nullptr, nullptr, [] { mine = identity{}; });

} // namespace

identity own_identity()
{
    if (mine.thread == 0)
        mine = {static_cast<uint32_t>(getpid()), static_cast<uint32_t>(gettid())};
    return mine;
}

} // namespace ruk::host
