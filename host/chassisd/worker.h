// A blade at work: its own queue, its own thread, its own faults. Nothing that happens to one blade
// makes another one wait.
#ifndef RUK_HOST_CHASSISD_WORKER_H
#define RUK_HOST_CHASSISD_WORKER_H

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "chassisd/blade.h"
#include "chassisd/config.h"

namespace chassisd
{

struct job {
    using receiver = std::function<void(const answer &)>;

    request asked;
    std::function<bool()> wanted; // false once nobody waits for the answer any more
    receiver deliver;             // called at most once
};

class worker
{
  public:
    worker(std::unique_ptr<blade> served, const fault_config &faults);
    ~worker();

    // The answer of a blade that has nothing else to do and will not keep the caller waiting: it
    // saves waking the worker's thread. None of any other, which has to be posted a job.
    std::optional<answer> answer_at_once(const request &asked);

    // Queues a job; false when the queue is full.
    bool post(job job);

    // Asks the thread to end; the destructor waits for it.
    void stop();

    // The blade was removed: whoever waits for it is told so at once, also when it is busy with
    // their request. Asks the thread to end.
    void retire();

    // True when the destructor has nothing to wait for.
    bool has_ended() const { return ended_; }

  private:
    void run();
    void serve(const job &job);
    answer execute(const request &asked);
    void deliver(const answer &given);
    job::receiver take_receiver();
    bool pause(std::chrono::milliseconds time);

    std::unique_ptr<blade> blade_;
    const fault_config faults_;
    const bool at_once_;
    uint32_t served_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<job> queue_;
    job::receiver receiver_; // of the job under way; whoever answers it takes it
    bool busy_ = false;      // with the blade, outside the lock
    bool overtaken_ = false; // the blade was used since its idle period was asked for
    bool stopping_ = false;
    std::atomic<bool> ended_{false};
    std::thread thread_;
};

} // namespace chassisd

#endif
