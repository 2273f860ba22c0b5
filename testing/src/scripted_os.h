// The operating-system layer, shared memory and platform information of the scripted platform.
//
// The callback thread does not sleep here. It runs in its turns (callback_turns.h), and rests where
// it would wait. The library's own tests run it by themselves (`keeps_callback_thread`); where it
// would wait, the next step of a script of theirs happens instead:
//
//     os.on_wait([] { ... });   // what the rest of the world does while it sleeps
//
// and where there is none it ends, with a complaint: nobody would ever wake it.
#ifndef RUK_IPMI_TESTING_SCRIPTED_OS_H
#define RUK_IPMI_TESTING_SCRIPTED_OS_H

#include <array>
#include <condition_variable>
#include <cstdarg>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <pthread.h>
#include <set>
#include <string>
#include <vector>

#include "callback_turns.h"
#include "journal.h"
#include "platform/os.h"
#include "ruk_ipmi/ring.h"

namespace ruk_ipmi_testing
{

// The number by which log lines and object names mean the calling thread.
inline int this_thread()
{
    return static_cast<int>(pthread_self());
}

class scripted_os
{
  public:
    // Statuses that no real platform knows.
    static constexpr uint32_t exists = 0x5E01;
    static constexpr uint32_t unknown = 0x5E02;
    static constexpr uint32_t busy = 0x5E03;

    using step = std::function<void()>;

    // What find_component_shm finds, and what _gPlatInfo tells.
    ipmi_shm region{};
    std::array<uint32_t, 64> platform_info{};

    // From the call after the next `after` ones on, `times` calls of a platform function fail with
    // `status`: "os_notify_init". An allocation gives null.
    void fails(const std::string &function, uint32_t status, unsigned times = 1,
               unsigned after = 0);

    // Of all calls of the platform that have a status, those of the message service included, the
    // one after the next `after` ones fails.
    void fails_after(unsigned after, uint32_t status);

    // How many calls there were, and which it was that failed so; "" when it was none.
    unsigned calls() const;
    std::string failed() const;

    // Lets the callback thread run: see callback_turns.
    void run_callbacks(unsigned ticks);
    void end_callbacks();
    bool is_callback_thread() const { return turns_.is_this_thread(); }

    // From now on the callback thread is the test's to run: none is started.
    void keeps_callback_thread();

    // What happens, on a thread of its own, while the callback thread waits without limit; while
    // it waits a tick.
    void on_wait(step happens);
    void on_tick(step happens);

    // What happens, on a thread of its own, when a platform function is called next, before it does
    // anything.
    void before(const std::string &function, step happens);

    // Puts an interrupt into the ring, as a producer does: under its own number, under the next.
    void put_interrupt(const ipmi_interrupt &interrupt);
    void append_interrupt(ipmi_interrupt interrupt);

    // Calls every registered hook as for a notification that was posted, wanted or not.
    void notify(uint32_t type);

    // As if another process held the mutex: it is refused at once. Threads wait for each other.
    void hold(const std::string &mutex);
    void let_go(const std::string &mutex);

    unsigned threads_created() const;
    unsigned registered_hooks() const;
    bool is_set(const std::string &event) const;

    // The callback thread, once it has given itself a name.
    pthread_t callback_thread() const;

    // As stage::complaint().
    std::string complaint() const;

    // What the thread that was created last begins with.
    void *(*thread_entry)(void *) = nullptr;
    void *thread_argument = nullptr;

    // Memory that the library asked for last.
    void *last_allocated = nullptr;

    // Counts a call of the message service; its status if it is to fail.
    uint32_t service_called(const char *function);

    // The platform's functions end here.
    void *allocate(size_t size);
    uint32_t find_shm(uint32_t component, void **holder);
    uint32_t create_mutex(const char *name, os_mutex *mutex);
    uint32_t find_mutex(const char *name, os_mutex *mutex);
    uint32_t lock(os_mutex *mutex, uint32_t ticks);
    uint32_t unlock(os_mutex *mutex);
    uint32_t create_event(const char *name, os_event *event);
    uint32_t set_event(os_event *event);
    uint32_t wait(os_event *event, uint32_t ticks);
    uint32_t delete_event(os_event *event);
    uint32_t create_thread(void *(*entry)(void *), void *arg, os_thread_id *id);
    uint32_t name_thread(const char *name);
    [[noreturn]] void end_thread();
    uint32_t make_list(os_notify_list *list);
    uint32_t add_to_list(uint32_t type, os_notify_list list);
    uint32_t make_handle(os_notify_handle *handle, os_notify_hook hook);
    uint32_t register_list(os_notify_list list, os_notify_handle handle);
    uint32_t unregister(os_notify_handle handle);
    uint32_t read_type(uint32_t *type, uint32_t reserved, va_list args);
    uint32_t sleep(uint32_t ticks);

  private:
    struct fault {
        uint32_t status;
        unsigned times;
        unsigned after;
    };

    // Writes the call to the journal; its status if it is to fail, else 0.
    uint32_t called(std::unique_lock<std::mutex> &lock, const char *function,
                    const std::string &arguments = "");
    uint32_t counted(const char *function);
    void rest(std::unique_lock<std::mutex> &lock, const std::string &event, uint32_t ticks);
    static bool happens_next(std::deque<step> &steps, std::unique_lock<std::mutex> &lock);

    mutable std::mutex mutex_;
    std::map<std::string, fault> faults_;
    unsigned calls_ = 0;
    unsigned failing_call_ = ~0u;
    uint32_t its_status_ = 0;
    std::string failed_;
    bool callback_thread_is_kept_ = false;
    callback_turns turns_;
    std::deque<step> waits_, ticks_;
    std::map<std::string, std::deque<step>> steps_; // by function
    enum class held { no, by_a_thread, by_another_process };
    std::map<std::string, held> mutexes_; // by name
    std::condition_variable unlocked_;
    std::map<std::string, bool> events_; // by name: whether it is set
    std::vector<std::set<uint32_t>> lists_;
    std::vector<os_notify_hook> hooks_;
    std::map<os_notify_handle, os_notify_list> registrations_;
    unsigned threads_ = 0;
    pthread_t callback_thread_{};
    std::string complaints_;
};

} // namespace ruk_ipmi_testing

#endif
