// A blade at work: its own queue, its own thread, its own faults. Nothing that happens to one blade
// makes another one wait.
#ifndef RUK_HOST_CHASSISD_WORKER_H
#define RUK_HOST_CHASSISD_WORKER_H

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
    request asked;
    std::function<bool()> wanted;                // false once nobody waits for the answer any more
    std::function<void(const answer &)> deliver; // called at most once
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

  private:
    void run();
    void serve(const job &job);
    bool pause(std::chrono::milliseconds time);

    std::unique_ptr<blade> blade_;
    fault_config faults_;
    uint32_t served_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<job> queue_;
    bool stopping_ = false;
    std::thread thread_;
};

} // namespace chassisd

#endif
