#include "runtime_processes.h"

#include <cstring>
#include <thread>
#include <unistd.h>
#include <utility>

#include "platform/notifications.h"
#include "producer/producer.h"

namespace tests
{

namespace
{

void *holder = nullptr; // this process's

std::function<void(uint32_t)> tell;

int on_event(uint32_t, imc_event_info *info)
{
    tell(mark_of(info->location));
    return 0;
}

} // namespace

ipmi_interrupt marked_interrupt(uint32_t mark)
{
    ipmi_interrupt interrupt{};
    memcpy(&interrupt.location, &mark, sizeof mark);
    imc_event_set_SET(1, &interrupt.ies);
    return interrupt;
}

uint32_t mark_of(const blade_location &location)
{
    uint32_t mark;
    memcpy(&mark, &location, sizeof mark);
    return mark;
}

void read_events(std::function<void(uint32_t mark)> on_mark, const std::function<bool()> &until)
{
    tell = std::move(on_mark);
    imc_event_set wanted;
    imc_event_set_init(&wanted);
    imc_event_set_SET(1, &wanted);
    if (ruk_ipmi_init() != 0 || ruk_register_imc_event_set(&wanted, on_event) != 0)
        _exit(1);
    while (!until())
        pause_for(std::chrono::milliseconds(2));
    _exit(0);
}

bool post_mark(uint32_t mark)
{
    ipmi_interrupt interrupt = marked_interrupt(mark);
    return ruk::host::post_interrupt(&holder, interrupt) == 0;
}

bool post_number()
{
    mutex_obj turn{};
    if (get_ipmi_shm_ptr(&holder) != 0 || acquire_mutex("test writers", &turn, 0) != 0)
        return false;
    const uint32_t number =
        __atomic_load_n(&static_cast<ipmi_shm *>(holder)->last_int_num, __ATOMIC_ACQUIRE) + 1;
    ipmi_interrupt interrupt = marked_interrupt(number);
    interrupt.int_num = number;
    const bool posted = put_next_interrupt(number, &holder, &interrupt) == 0 &&
                        os_notify_post(ruk::host::interrupt_posted) == 0;
    release_mutex(&turn);
    return posted;
}

void pause_for(std::chrono::microseconds time)
{
    std::this_thread::sleep_for(time);
}

} // namespace tests
