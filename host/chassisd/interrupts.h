// The blades' events on their way into the interrupt ring.
#ifndef RUK_HOST_CHASSISD_INTERRUPTS_H
#define RUK_HOST_CHASSISD_INTERRUPTS_H

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "chassisd/blade.h"
#include "producer/blade_events.h"
#include "ruk_ipmi/ring.h"

namespace chassisd
{

// Any process may hold the ring for as long as it likes, so a thread of its own waits for it, and
// no blade does.
class interrupts
{
  public:
    // `region` is the component's shared region. It is mapped as long as this lives.
    explicit interrupts(void *region);

    // Delivers first what was posted, as long as that succeeds.
    ~interrupts();

    interrupts(const interrupts &) = delete;
    interrupts &operator=(const interrupts &) = delete;

    // Queues an interrupt that asserts one event. Never waits, and never fails: what cannot be
    // delivered is lost, and the log tells. From any thread.
    void post(const blade_location &location, ruk::host::blade_event event, const bytes &data);

  private:
    void run();
    bool deliver(ipmi_interrupt &interrupt);

    void *region_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<ipmi_interrupt> queue_;
    bool stopping_ = false;
    std::thread thread_;
};

} // namespace chassisd

#endif
