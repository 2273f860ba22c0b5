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
    void deliver(const answer &given);
    job::receiver take_receiver();
    bool pause(std::chrono::milliseconds time);

    std::unique_ptr<blade> blade_;
    fault_config faults_;
    uint32_t served_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<job> queue_;
    job::receiver receiver_; // of the job under way; whoever answers it takes it
    bool stopping_ = false;
    std::atomic<bool> ended_{false};
    std::thread thread_;
};

} // namespace chassisd

#endif
