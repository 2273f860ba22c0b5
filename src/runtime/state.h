// What the runtime holds: one record per process, and the lock over the parts of it that must
// change together.
#ifndef RUK_RUNTIME_STATE_H
#define RUK_RUNTIME_STATE_H

#include <pthread.h>

#include "platform/os.h"
#include "ruk_ipmi/async.h"
#include "ruk_ipmi/events.h"
#include "ruk_ipmi/list.h"
#include "ruk_ipmi/ring.h"

// Nothing here is exported, so calls need no indirection.
#pragma GCC visibility push(hidden)

namespace ruk
{

struct lib_state {
    void *shm; // the IPMI component's region, once it was needed
    os_notify_list notify_list;
    os_notify_handle notify_handle;
    uint32_t last_int_num;             // number of the last interrupt that was delivered
    ipmi_interrupt cur_int;            // the interrupt that is being delivered
    imc_event_callback event_callback; // the registration: callback and wanted events
    imc_event_set event_mask;
    ipmi_list pending;       // outstanding asynchronous commands
    os_thread_id thread_id;  // the callback thread; 0 while there is none
    os_event callback_event; // wakes the callback thread
    uint32_t exit_requested; // 1 once ruk_ipmi_exit was called
    uintptr_t thread_self;   // the callback thread's own idea of its identifier
};

extern lib_state ipmi_lib_state;

// Over the registration, whose callback goes with its events. Never held while a callback runs.
extern pthread_mutex_t registration_lock;

// An asynchronous command that waits for its answer.
struct pending_request {
    ipmi_request *request;
    uint32_t reserved;
    uint32_t msg_index;
    ipmi_response_callback callback;
    uint32_t ticks_left; // how many more times its answer is looked for
};

// Whether it is the caller's part to create the callback thread: of all who find none, one's.
bool claims_callback_thread();

// Creates it, for whoever claimed it: 0 or the platform's status. No lock is held, since the thread
// may be anywhere by the time this returns.
uint32_t create_callback_thread();

// Ends the callback thread's share in the platform: its event and its notifications.
void clean_up();

} // namespace ruk

#pragma GCC visibility pop

#endif
