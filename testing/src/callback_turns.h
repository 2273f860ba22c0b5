// The library's callback thread and the test take turns: while the one runs, the other rests. So
// callbacks run when a test says so and at no other time, and neither needs a lock or a wait.
#ifndef RUK_IPMI_TESTING_CALLBACK_TURNS_H
#define RUK_IPMI_TESTING_CALLBACK_TURNS_H

#include <condition_variable>
#include <functional>
#include <mutex>
#include <pthread.h>

namespace ruk_ipmi_testing
{

class callback_turns
{
  public:
    callback_turns() = default;
    ~callback_turns() { end(); }
    callback_turns(const callback_turns &) = delete;
    callback_turns &operator=(const callback_turns &) = delete;

    // Starts the thread and lets it run until it waits for the first time, or ends. False: there
    // is one.
    bool start(void *(*entry)(void *), void *argument);

    // Lets the thread run until it waits for something that has not happened; `ticks` of its waits
    // for a tick are over at once. False: the caller is that thread.
    bool run(unsigned ticks);

    // The thread waits: for a tick, or until something has happened. It does not return from here
    // when all is over.
    void rest(bool for_a_tick, const std::function<bool()> &happened);

    bool is_this_thread() const;

    // Ends the thread where it rests.
    void end();

  private:
    static void *run_thread(void *turns);
    void hand_over(); // the turn, to the test
    void has_ended();
    void join();

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    pthread_t thread_{};
    bool joinable_ = false;
    bool lives_ = false;
    bool starts_ = false; // it has not waited yet
    bool runs_ = false;   // it is its turn
    bool ends_ = false;
    unsigned ticks_ = 0; // that may still pass
    void *(*entry_)(void *) = nullptr;
    void *argument_ = nullptr;
};

} // namespace ruk_ipmi_testing

#endif
