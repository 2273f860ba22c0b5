#include "chassisd/worker.h"

#include <utility>

#include "platform/status.h"

namespace chassisd
{

namespace
{

// Far more than clients that wait for their answers can queue; only those that do not get there.
constexpr size_t longest_queue = 4096;

void apply(const fault_config &faults, answer &given)
{
    if (given.status != 0)
        return;
    if (faults.completion_code)
        given.data = {*faults.completion_code};
    if (faults.truncate_to && given.data.size() > *faults.truncate_to)
        given.data.resize(*faults.truncate_to);
    if (faults.oversize_to && given.data.size() < *faults.oversize_to)
        given.data.resize(*faults.oversize_to, 0xEE);
}

} // namespace

worker::worker(std::unique_ptr<blade> served, const fault_config &faults)
    : blade_(std::move(served)),
      faults_(faults),
      at_once_(blade_->answers_at_once() && faults.delay_ms == 0 && faults.drop_every == 0),
      thread_([this] {
          run();
          ended_ = true;
      })
{
}

worker::~worker()
{
    stop();
    thread_.join();
}

std::optional<answer> worker::answer_at_once(const request &asked)
{
    if (!at_once_)
        return std::nullopt;
    const std::lock_guard lock(mutex_);
    if (busy_ || !queue_.empty())
        return std::nullopt;
    answer given = execute(asked);
    if (blade_->idle_period().count() != 0) { // the thread may be waiting for longer, or for ever
        overtaken_ = true;
        changed_.notify_one();
    }
    return given;
}

bool worker::post(job job)
{
    {
        const std::lock_guard lock(mutex_);
        if (queue_.size() >= longest_queue)
            return false;
        queue_.push_back(std::move(job));
    }
    changed_.notify_one();
    return true;
}

void worker::stop()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
}

void worker::retire()
{
    job::receiver waiting;
    std::deque<job> left;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        waiting = std::exchange(receiver_, nullptr);
        left.swap(queue_);
    }
    changed_.notify_all();
    const answer removed{RUK_MSG_NO_BLADE, {}};
    if (waiting)
        waiting(removed);
    for (const job &each : left)
        each.deliver(removed);
}

void worker::run()
{
    const auto something_to_do = [this] { return stopping_ || overtaken_ || !queue_.empty(); };
    std::unique_lock lock(mutex_);
    for (;;) {
        overtaken_ = false;
        const auto idle_period = blade_->idle_period();
        if (idle_period.count() == 0) {
            changed_.wait(lock, something_to_do);
        } else if (!changed_.wait_for(lock, idle_period, something_to_do)) {
            busy_ = true;
            lock.unlock();
            blade_->idle();
            lock.lock();
            busy_ = false;
            continue;
        }
        if (stopping_)
            return;
        if (queue_.empty())
            continue;
        job next = std::move(queue_.front());
        queue_.pop_front();
        receiver_ = std::exchange(next.deliver, nullptr);
        busy_ = true;
        lock.unlock();
        serve(next);
        lock.lock();
        busy_ = false;
        receiver_ = nullptr; // of a job that got no answer
    }
}

void worker::serve(const job &job)
{
    if (!job.wanted())
        return;
    if (faults_.delay_ms != 0 && !pause(std::chrono::milliseconds(faults_.delay_ms)))
        return;
    ++served_;
    if (faults_.drop_every != 0 && served_ % faults_.drop_every == 0)
        return;
    deliver(execute(job.asked));
}

answer worker::execute(const request &asked)
{
    answer given = blade_->execute(asked);
    apply(faults_, given);
    return given;
}

void worker::deliver(const answer &given)
{
    if (const job::receiver waiting = take_receiver())
        waiting(given);
}

job::receiver worker::take_receiver()
{
    const std::lock_guard lock(mutex_);
    return std::exchange(receiver_, nullptr);
}

// False when the time was cut short because the thread is to end.
bool worker::pause(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex_);
    return !changed_.wait_for(lock, time, [this] { return stopping_; });
}

} // namespace chassisd
