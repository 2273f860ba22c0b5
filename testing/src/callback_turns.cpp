#include "callback_turns.h"

#include <utility>

namespace ruk_ipmi_testing
{

bool callback_turns::start(void *(*entry)(void *), void *argument)
{
    std::unique_lock lock(mutex_);
    if (lives_)
        return false;
    join();
    entry_ = entry;
    argument_ = argument;
    starts_ = true;
    ticks_ = 0;
    if (pthread_create(&thread_, nullptr, run_thread, this) != 0)
        return false;
    joinable_ = lives_ = runs_ = true;
    changed_.wait(lock, [this] { return !runs_; });
    return true;
}

bool callback_turns::run(unsigned ticks)
{
    std::unique_lock lock(mutex_);
    if (lives_ && pthread_equal(thread_, pthread_self()))
        return false;
    if (!lives_)
        return true;
    ticks_ = ticks;
    runs_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !runs_; });
    return true;
}

void callback_turns::rest(bool for_a_tick, const std::function<bool()> &happened)
{
    std::unique_lock lock(mutex_);
    while (std::exchange(starts_, false) || !(happened() || (for_a_tick && ticks_ != 0))) {
        hand_over();
        changed_.wait(lock, [this] { return runs_ || ends_; });
        if (ends_) {
            lock.unlock();
            pthread_exit(nullptr);
        }
    }
    if (for_a_tick && !happened())
        --ticks_;
}

bool callback_turns::is_this_thread() const
{
    const std::lock_guard lock(mutex_);
    return lives_ && pthread_equal(thread_, pthread_self());
}

void callback_turns::end()
{
    std::unique_lock lock(mutex_);
    ends_ = true;
    changed_.notify_all();
    lock.unlock();
    join();
}

void *callback_turns::run_thread(void *turns)
{
    // However the thread ends, also in the middle of a callback, the test's turn comes.
    thread_local struct at_its_end {
        callback_turns *turns;
        ~at_its_end() { turns->has_ended(); }
    } end{static_cast<callback_turns *>(turns)};
    return end.turns->entry_(end.turns->argument_);
}

void callback_turns::hand_over()
{
    runs_ = false;
    changed_.notify_all();
}

void callback_turns::has_ended()
{
    const std::lock_guard lock(mutex_);
    lives_ = false;
    hand_over();
}

void callback_turns::join()
{
    if (std::exchange(joinable_, false))
        pthread_join(thread_, nullptr);
}

} // namespace ruk_ipmi_testing
