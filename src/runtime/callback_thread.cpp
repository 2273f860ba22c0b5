// The callback thread: it sleeps until its event is set, then takes what is new from the interrupt
// ring, then looks once for the answer to each outstanding command, and runs the callbacks of both.

#include "platform/log.h"
#include "platform/message_service.h"
#include "runtime/state.h"
#include "runtime/threads.h"
#include "runtime/words.h"

using namespace ruk;

namespace
{

constexpr char name_in_log[] = "ipmi_callback_thread";

// A reader that is new skips what the ring holds, unless the counter cannot be believed.
constexpr uint32_t most_believed = 10000;

// False when the thread has nothing to live for.
bool start()
{
    lib_state &lib = ipmi_lib_state;
    if (os_thread_set_name("IPMI_Callback") != 0)
        slog_dlog("%s Error setting thread name", name_in_log);
    slog_dlog("THREAD ID %05x CREATED (%s).\n", static_cast<unsigned>(thread_number()),
              name_in_log);
    uint32_t rc = os_notify_register(lib.notify_list, lib.notify_handle);
    if (rc != 0) {
        slog_dlog("Error code returned by os_notify_callback %d (0x%d).Call ruk_ipmi_init first",
                  rc, rc);
        return false;
    }
    rc = get_shm_ptr(&lib.shm);
    if (rc != 0) {
        slog_elog("int_shm_ptr returned %d (0x%08x)\n", rc, rc);
        os_thread_exit();
        return false;
    }
    const uint32_t last = load(static_cast<ipmi_shm *>(lib.shm)->last_int_num);
    store(lib.last_int_num, last > most_believed ? 0u : last);
    store(lib.exit_requested, 0u);
    store(lib.thread_self, thread_identifier());
    return true;
}

void stop()
{
    clean_up();
    slog_dlog("THREAD ID %05x EXITED (%s).\n", static_cast<unsigned>(thread_number()), name_in_log);
    os_thread_exit();
}

void wait_for_work()
{
    lib_state &lib = ipmi_lib_state;
    uint32_t limit = OS_WAIT_FOREVER;
    if (load(lib.pending.head)) {
        slog_dlog("Wait for one tick \n");
        limit = 1;
    }
    const uint32_t rc = os_ev_wait(&lib.callback_event, limit);
    if (rc != 0)
        slog_elog("Error returned by os_ev_wait %x\n", rc);
}

imc_event_callback registered_callback()
{
    const guard lock(registration_lock);
    return ipmi_lib_state.event_callback;
}

// The callback, if it wants the event.
imc_event_callback registered_for(uint32_t event)
{
    const guard lock(registration_lock);
    const lib_state &lib = ipmi_lib_state;
    return imc_event_set_TEST(event, &lib.event_mask) ? lib.event_callback : nullptr;
}

void deliver(const ipmi_interrupt &interrupt)
{
    static constexpr char step[] = "call_event_callback_func";
    if (!registered_callback()) {
        os_log(1, 4, "%s(): callback is NULL!\n", step);
        return;
    }
    uint32_t e = 0;
    while ((e = imc_event_set_NEXT_ASSERTED(e, &interrupt.ies)) != 0) {
        const imc_event_callback callback = registered_for(e);
        if (!callback)
            continue;
        imc_event_info info = {interrupt.location, e};
        const int result = callback(0, &info);
        if (result != 0)
            slog_vlog("%s(): new callback for event %d returned %d\n", step, e, result);
    }
}

void drain_ring()
{
    lib_state &lib = ipmi_lib_state;
    const ipmi_interrupt &interrupt = lib.cur_int;
    int failures = 0;
    int steps_back = 0;
    for (uint32_t continuing = 0;; continuing = 1) {
        const uint32_t old = load(lib.last_int_num);
        uint32_t now = old;
        if (get_next_interrupt(&now, &lib.shm, &lib.cur_int, continuing) != 0) {
            slog_elog("Error in getting the interrupt info \n");
            if (++failures == 3) {
                slog_nlog("Failure to get next IPMI event.\n");
                return;
            }
            os_sleep(1);
            continue;
        }
        // A registration has meanwhile sent the position back to the start: what was just read
        // will come again from there.
        if (replace(lib.last_int_num, old, now) != old)
            continue;
        if (now == old)
            return;
        slog_vlog("process_blade_alert last int num %d cur_int_num %d blade %d-%d data @ %p len "
                  "%d\n",
                  old, now, interrupt.location.slot_id, interrupt.location.sub_slot_id,
                  static_cast<const void *>(interrupt.data), interrupt.data_len);
        deliver(interrupt);
        if (old != 0 && old + 1 < now)
            slog_nlog("IPMI client missed events between %d and %d.\n", old, now);
        // After a renumbering a reader may be led back, once for each slot at the very most.
        // Numbers that lead in a circle are nobody's.
        if (now < old && ++steps_back > IPMI_RING_SLOTS)
            return;
    }
}

// What the callback gets when no blade answered.
void make_answer(ipmi_response &response, const ipmi_request &request, uint32_t status)
{
    response.location = request.location;
    response.reserved_0c = request.reserved_0c;
    response.netfn_cmd = request.netfn_cmd;
    response.comp_code = status;
    response.data_len = 0;
}

// Looks for the answer to a command, and hands it, or what stands for it, to the callback. False
// when it is still to come.
bool answered(pending_request &pending)
{
    ipmi_response response{};
    uint32_t length = sizeof response;
    const uint32_t rc =
        receive_ruk_response(pending.msg_index, 1, IPMI_COMPONENT, &response, &length);
    if (rc == 0) {
        slog_dlog("Received response from ipmi \n");
    } else {
        slog_dlog("pid %d receive_ruk_command returned %d (0x(%x))\n", thread_number(), rc, rc);
        slog_dlog("    idx %d    maxTO %d ticks  comp %d  \n", pending.msg_index,
                  pending.ticks_left, IPMI_COMPONENT);
        if (--pending.ticks_left != 0 && rc == RUK_MSG_NOT_ANSWERED)
            return false;
        slog_dlog("Timed out \n");
        make_answer(response, *pending.request, rc);
    }
    pending.callback(&response);
    return true;
}

void poll_pending()
{
    ipmi_list &list = ipmi_lib_state.pending;
    ipmi_list_node *node = load(list.head);
    while (node) {
        const bool done = answered(*static_cast<pending_request *>(node->data));
        // Read only now: the callback may have sent another command.
        ipmi_list_node *next = load(node->next);
        if (done)
            list_delete_and_free_data(&list, node);
        node = next;
    }
}

} // namespace

void *ipmi_callback_thread(void *)
{
    if (!start())
        return nullptr;
    while (load(ipmi_lib_state.exit_requested) == 0) {
        wait_for_work();
        drain_ring();
        poll_pending();
    }
    stop();
    return nullptr;
}
