// Start and stop of the runtime.

#include <cstdarg>
#include <cstring>

#include "platform/log.h"
#include "runtime/state.h"
#include "runtime/threads.h"
#include "runtime/words.h"

namespace ruk
{

lib_state ipmi_lib_state;
pthread_mutex_t registration_lock = PTHREAD_MUTEX_INITIALIZER;

namespace
{

constexpr os_thread_id none = 0;
constexpr os_thread_id being_created = 1; // no thread's

} // namespace

bool claims_callback_thread()
{
    return replace(ipmi_lib_state.thread_id, none, being_created) == none;
}

uint32_t create_callback_thread()
{
    os_thread_id id = none;
    const uint32_t rc = os_thread_create(ipmi_callback_thread, nullptr, &id);
    store(ipmi_lib_state.thread_id, id);
    return rc;
}

void clean_up()
{
    slog_dlog("Cleaning ipmi library. \n");
    os_ev_delete(&ipmi_lib_state.callback_event);
    slog_dlog("Before unregister os notify. \n");
    os_notify_unregister(ipmi_lib_state.notify_handle);
    slog_dlog("After unregister os notify. \n");
    store(ipmi_lib_state.thread_self, uintptr_t{0}); // the next thread may get the same identifier
}

} // namespace ruk

using namespace ruk;

namespace
{

// The notification that says: there is an interrupt in the ring.
constexpr uint32_t interrupt_posted = 0x15;

void on_notification(uint32_t reserved, ...)
{
    va_list args;
    va_start(args, reserved);
    uint32_t type = 0;
    os_notify_get(&type, 0, args);
    va_end(args);
    if (type == interrupt_posted)
        os_ev_set(&ipmi_lib_state.callback_event);
}

} // namespace

// The log lines print statuses in decimal behind a literal "0x": so they have always read.

uint32_t ruk_ipmi_init()
{
    lib_state &lib = ipmi_lib_state;
    // The lock too: in a child process it may be held by a thread that is not there.
    pthread_mutex_init(&registration_lock, nullptr);
    memset(static_cast<void *>(&lib), 0, sizeof lib);
    ipmi_list_init(&lib.pending, "IPMI pending req list mutex");

    uint32_t rc = os_notify_list_init(&lib.notify_list);
    if (rc != 0) {
        slog_dlog("Error code returned by os_notify_list_init %d (0x%d) ", rc, rc);
        return rc;
    }
    rc = os_notify_list_add(interrupt_posted, lib.notify_list);
    if (rc != 0) {
        slog_dlog("Error code returned by os_notify_list_add %d (0x%d) ", rc, rc);
        return rc;
    }
    rc = os_notify_init(&lib.notify_handle, on_notification);
    if (rc != 0) {
        slog_dlog("Error code returned by os_notify_init %d (0x%d) ", rc, rc);
        return rc;
    }
    rc = create_event("IPMI Callback event", &lib.callback_event, 1);
    if (rc != 0)
        slog_dlog("create event returned error %d (0x%d) ", rc, rc);
    return rc;
}

void ruk_ipmi_exit()
{
    lib_state &lib = ipmi_lib_state;
    slog_dlog("ruk_ipmi_exit() called. \n");
    store(lib.exit_requested, 1u);
    os_ev_set(&lib.callback_event);
    if (load(lib.thread_self) == thread_identifier()) {
        clean_up();
        pthread_exit(nullptr);
    }
}
