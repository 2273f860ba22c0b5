#include "scripted_os.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

#include "stage.h"

namespace ruk_ipmi_testing
{

namespace
{

// Names are short enough for their objects, or the library has gone wrong.
template <typename Object>
void give_name(Object *object, const char *name)
{
    const size_t length = strlen(name);
    if (length >= sizeof object->name)
        throw std::length_error("a name that fits no object");
    *object = {};
    memcpy(object->name, name, length);
}

template <typename Object>
std::string name_of(const Object *object)
{
    return object ? std::string(object->name) : "(null)";
}

} // namespace

// Script.

void scripted_os::fails(const std::string &function, uint32_t status, unsigned times,
                        unsigned after)
{
    const std::lock_guard lock(mutex_);
    faults_[function] = {status, times, after};
}

void scripted_os::fails_after(unsigned after, uint32_t status)
{
    const std::lock_guard lock(mutex_);
    failing_call_ = calls_ + after;
    its_status_ = status;
}

unsigned scripted_os::calls() const
{
    const std::lock_guard lock(mutex_);
    return calls_;
}

std::string scripted_os::failed() const
{
    const std::lock_guard lock(mutex_);
    return failed_;
}

void scripted_os::run_callbacks(unsigned ticks)
{
    if (!turns_.run(ticks)) {
        const std::lock_guard lock(mutex_);
        complaints_ += "run_callbacks was called from a callback\n";
    }
}

void scripted_os::end_callbacks()
{
    turns_.end();
}

void scripted_os::keeps_callback_thread()
{
    const std::lock_guard lock(mutex_);
    callback_thread_is_kept_ = true;
}

void scripted_os::on_wait(step happens)
{
    const std::lock_guard lock(mutex_);
    waits_.push_back(std::move(happens));
}

void scripted_os::on_tick(step happens)
{
    const std::lock_guard lock(mutex_);
    ticks_.push_back(std::move(happens));
}

void scripted_os::before(const std::string &function, step happens)
{
    const std::lock_guard lock(mutex_);
    steps_[function].push_back(std::move(happens));
}

void scripted_os::put_interrupt(const ipmi_interrupt &interrupt)
{
    std::unique_lock lock(mutex_);
    unlocked_.wait(lock, [this] {
        const auto found = mutexes_.find("ruk_mutex_ipmi");
        return found == mutexes_.end() || found->second != held::by_a_thread;
    });
    const uint32_t slot = region.next_slot % IPMI_RING_SLOTS;
    region.ring[slot] = interrupt;
    region.next_slot = slot + 1;
    // Read without the mutex by a reader that begins.
    __atomic_store_n(&region.last_int_num, interrupt.int_num, __ATOMIC_RELAXED);
}

void scripted_os::append_interrupt(ipmi_interrupt interrupt)
{
    interrupt.int_num = interrupt.prev_num = region.last_int_num + 1;
    put_interrupt(interrupt);
}

namespace
{

void call_hook(os_notify_hook hook, uint32_t type)
{
    hook(0, type);
}

} // namespace

void scripted_os::notify(uint32_t type)
{
    std::vector<os_notify_hook> registered;
    {
        const std::lock_guard lock(mutex_);
        for (const auto &[handle, list] : registrations_)
            registered.push_back(hooks_.at(handle - 1));
    }
    for (const os_notify_hook hook : registered)
        call_hook(hook, type);
}

void scripted_os::hold(const std::string &mutex)
{
    const std::lock_guard lock(mutex_);
    mutexes_[mutex] = held::by_another_process;
}

void scripted_os::let_go(const std::string &mutex)
{
    const std::lock_guard lock(mutex_);
    mutexes_[mutex] = held::no;
}

// What happened.

unsigned scripted_os::threads_created() const
{
    const std::lock_guard lock(mutex_);
    return threads_;
}

unsigned scripted_os::registered_hooks() const
{
    const std::lock_guard lock(mutex_);
    return static_cast<unsigned>(registrations_.size());
}

bool scripted_os::is_set(const std::string &event) const
{
    const std::lock_guard lock(mutex_);
    const auto found = events_.find(event);
    return found != events_.end() && found->second;
}

pthread_t scripted_os::callback_thread() const
{
    const std::lock_guard lock(mutex_);
    return callback_thread_;
}

std::string scripted_os::complaint() const
{
    const std::lock_guard lock(mutex_);
    std::string all = complaints_;
    for (const auto &[function, planned] : faults_)
        if (planned.times != 0)
            all += "never called, and so never failed: " + function + "\n";
    for (const auto &[name, state] : mutexes_)
        if (state != held::no)
            all += "never unlocked: " + name + "\n";
    for (const auto &[function, steps] : steps_)
        if (!steps.empty())
            all += "never called, so that what comes before never happened: " + function + "\n";
    if (!waits_.empty() || !ticks_.empty())
        all += "the callback thread did not wait as often as the script has it\n";
    return all;
}

// The platform's side.

uint32_t scripted_os::counted(const char *function)
{
    if (calls_++ != failing_call_)
        return 0;
    failed_ = function;
    return its_status_;
}

uint32_t scripted_os::service_called(const char *function)
{
    const std::lock_guard lock(mutex_);
    return counted(function);
}

uint32_t scripted_os::called(std::unique_lock<std::mutex> &lock, const char *function,
                             const std::string &arguments)
{
    if (const auto steps = steps_.find(function); steps != steps_.end())
        happens_next(steps->second, lock);
    stage::current().log(
        {channel::os, arguments.empty() ? function : std::string(function) + " " + arguments});
    if (const uint32_t rc = counted(function))
        return rc;
    const auto found = faults_.find(function);
    if (found == faults_.end() || found->second.times == 0)
        return 0;
    fault &planned = found->second;
    if (planned.after != 0) {
        --planned.after;
        return 0;
    }
    --planned.times;
    return planned.status;
}

// Takes the next step, if there is one.
bool scripted_os::happens_next(std::deque<step> &steps, std::unique_lock<std::mutex> &lock)
{
    if (steps.empty())
        return false;
    const step happens = std::move(steps.front());
    steps.pop_front();
    lock.unlock();
    std::thread(happens).join();
    lock.lock();
    return true;
}

// Memory as it may come: full of something.
void *scripted_os::allocate(size_t size)
{
    std::unique_lock lock(mutex_);
    last_allocated = called(lock, "os_malloc") != 0 ? nullptr : calloc(1, size);
    return last_allocated ? memset(last_allocated, 0xA5, size) : nullptr;
}

uint32_t scripted_os::find_shm(uint32_t component, void **holder)
{
    std::unique_lock lock(mutex_);
    const uint32_t rc = called(lock, "find_component_shm", formatted("%u", component));
    if (rc == 0)
        *holder = &region;
    return rc;
}

uint32_t scripted_os::create_mutex(const char *name, os_mutex *mutex)
{
    std::unique_lock lock(mutex_);
    if (const uint32_t rc = called(lock, "os_mutex_create", name))
        return rc;
    if (!mutexes_.emplace(name, held::no).second)
        return exists;
    give_name(mutex, name);
    return 0;
}

uint32_t scripted_os::find_mutex(const char *name, os_mutex *mutex)
{
    std::unique_lock lock(mutex_);
    if (const uint32_t rc = called(lock, "os_mutex_ident", name))
        return rc;
    if (mutexes_.count(name) == 0)
        return unknown;
    give_name(mutex, name);
    return 0;
}

uint32_t scripted_os::lock(os_mutex *mutex, uint32_t ticks)
{
    std::unique_lock lock(mutex_);
    const uint32_t rc =
        called(lock, "os_mutex_get", name_of(mutex) + formatted(", %u ticks", ticks));
    if (rc != 0)
        return rc;
    const auto found = mutexes_.find(name_of(mutex));
    if (found == mutexes_.end())
        return unknown;
    unlocked_.wait(lock, [&] { return found->second != held::by_a_thread; });
    if (found->second == held::by_another_process)
        return busy;
    found->second = held::by_a_thread;
    return 0;
}

uint32_t scripted_os::unlock(os_mutex *mutex)
{
    std::unique_lock lock(mutex_);
    const uint32_t rc = called(lock, "os_mutex_put", name_of(mutex));
    const auto found = mutexes_.find(name_of(mutex));
    if (found == mutexes_.end())
        return unknown;
    found->second = held::no;
    unlocked_.notify_all();
    return rc;
}

uint32_t scripted_os::create_event(const char *name, os_event *event)
{
    std::unique_lock lock(mutex_);
    if (const uint32_t rc = called(lock, "os_ev_create", name))
        return rc;
    events_[name] = false;
    give_name(event, name);
    return 0;
}

uint32_t scripted_os::set_event(os_event *event)
{
    std::unique_lock lock(mutex_);
    const std::string name = name_of(event);
    const uint32_t rc = called(lock, "os_ev_set", name);
    const auto found = events_.find(name);
    if (found == events_.end())
        return unknown;
    found->second = true;
    return rc;
}

// The lock is given up before that of the turns is taken: they look at events under theirs.
void scripted_os::rest(std::unique_lock<std::mutex> &lock, const std::string &event, uint32_t ticks)
{
    lock.unlock();
    const bool may_rest = turns_.is_this_thread();
    if (may_rest)
        turns_.rest(ticks != OS_WAIT_FOREVER, [&] { return is_set(event); });
    lock.lock();
    if (!may_rest)
        complaints_ +=
            "waits for an event on a thread that is not the callback thread: " + event + "\n";
}

uint32_t scripted_os::wait(os_event *event, uint32_t ticks)
{
    std::unique_lock lock(mutex_);
    const std::string name = name_of(event);
    const uint32_t rc =
        called(lock, "os_ev_wait",
               name + (ticks == OS_WAIT_FOREVER ? ", forever" : formatted(", %u ticks", ticks)));
    if (!callback_thread_is_kept_) {
        rest(lock, name, ticks);
    } else if (ticks != OS_WAIT_FOREVER) {
        happens_next(ticks_, lock);
    } else if (!happens_next(waits_, lock)) {
        complaints_ += "the callback thread waits, and nobody would ever wake it\n";
        lock.unlock();
        pthread_exit(nullptr);
    }
    const auto found = events_.find(name);
    if (found != events_.end())
        found->second = false;
    return rc;
}

uint32_t scripted_os::delete_event(os_event *event)
{
    std::unique_lock lock(mutex_);
    const uint32_t rc = called(lock, "os_ev_delete", name_of(event));
    events_.erase(name_of(event));
    *event = {};
    return rc;
}

uint32_t scripted_os::create_thread(void *(*entry)(void *), void *arg, os_thread_id *id)
{
    std::unique_lock lock(mutex_);
    if (const uint32_t rc = called(lock, "os_thread_create"))
        return rc;
    thread_entry = entry;
    thread_argument = arg;
    *id = ++threads_;
    if (callback_thread_is_kept_)
        return 0;
    lock.unlock();
    if (turns_.start(entry, arg))
        return 0;
    lock.lock();
    complaints_ += "a callback thread was started while there is one\n";
    return exists;
}

uint32_t scripted_os::name_thread(const char *name)
{
    std::unique_lock lock(mutex_);
    callback_thread_ = pthread_self();
    return called(lock, "os_thread_set_name", name);
}

void scripted_os::end_thread()
{
    std::unique_lock lock(mutex_);
    called(lock, "os_thread_exit");
    lock.unlock();
    pthread_exit(nullptr);
}

uint32_t scripted_os::make_list(os_notify_list *list)
{
    std::unique_lock lock(mutex_);
    if (const uint32_t rc = called(lock, "os_notify_list_init"))
        return rc;
    lists_.emplace_back();
    *list = lists_.size();
    return 0;
}

uint32_t scripted_os::add_to_list(uint32_t type, os_notify_list list)
{
    std::unique_lock lock(mutex_);
    if (const uint32_t rc = called(lock, "os_notify_list_add", formatted("0x%02X", type)))
        return rc;
    if (list == 0 || list > lists_.size())
        return unknown;
    lists_[list - 1].insert(type);
    return 0;
}

uint32_t scripted_os::make_handle(os_notify_handle *handle, os_notify_hook hook)
{
    std::unique_lock lock(mutex_);
    if (const uint32_t rc = called(lock, "os_notify_init"))
        return rc;
    hooks_.push_back(hook);
    *handle = hooks_.size();
    return 0;
}

uint32_t scripted_os::register_list(os_notify_list list, os_notify_handle handle)
{
    std::unique_lock lock(mutex_);
    if (const uint32_t rc = called(lock, "os_notify_register"))
        return rc;
    if (list == 0 || list > lists_.size() || handle == 0 || handle > hooks_.size())
        return unknown;
    registrations_[handle] = list;
    return 0;
}

uint32_t scripted_os::unregister(os_notify_handle handle)
{
    std::unique_lock lock(mutex_);
    const uint32_t rc = called(lock, "os_notify_unregister");
    return registrations_.erase(handle) == 0 ? unknown : rc;
}

uint32_t scripted_os::read_type(uint32_t *type, uint32_t reserved, va_list args)
{
    std::unique_lock lock(mutex_);
    if (reserved != 0)
        complaints_ += "the reserved word of os_notify_get is not 0\n";
    const uint32_t rc = called(lock, "os_notify_get");
    if (rc == 0)
        *type = va_arg(args, uint32_t);
    return rc;
}

uint32_t scripted_os::sleep(uint32_t ticks)
{
    std::unique_lock lock(mutex_);
    const uint32_t rc = called(lock, "os_sleep", formatted("%u ticks", ticks));
    return rc;
}

} // namespace ruk_ipmi_testing
