// Interrupts, from the put to the callback in the last of some processes: `COUNT PROCESSES`, in the
// runtime directory that a daemon serves. Prints the median in nanoseconds.

#include <cstring>

#include "platform/notifications.h"
#include "producer/producer.h"
#include "ruk_ipmi.h"
#include "wake.h"

using namespace bench;

namespace
{

waiter *mine = nullptr;

// An interrupt carries its mark in the four bytes where the blade's location is.
int on_event(uint32_t, imc_event_info *info)
{
    uint32_t mark = 0;
    memcpy(&mark, &info->location, sizeof mark);
    mine->hears(mark);
    return 0;
}

void wait_for_interrupts(waiter &self)
{
    mine = &self;
    imc_event_set wanted;
    imc_event_set_init(&wanted);
    imc_event_set_SET(1, &wanted);
    check(ruk_ipmi_init() == 0 && ruk_register_imc_event_set(&wanted, on_event) == 0,
          "ruk_register_imc_event_set");
    for (;;)
        pause();
}

// As producer.h does, without the turn that several producers take.
void tell(uint32_t mark)
{
    static void *holder = nullptr;
    check(get_ipmi_shm_ptr(&holder) == 0, "get_ipmi_shm_ptr");
    ipmi_interrupt interrupt{};
    interrupt.int_num = static_cast<ipmi_shm *>(holder)->last_int_num + 1;
    memcpy(&interrupt.location, &mark, sizeof mark);
    imc_event_set_SET(1, &interrupt.ies);
    check(put_next_interrupt(interrupt.int_num, &holder, &interrupt) == 0 &&
              os_notify_post(ruk::host::interrupt_posted) == 0,
          "put_next_interrupt");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3 || number(argv[2]) > most_waiters)
        return 2;
    waiters all(number(argv[2]), wait_for_interrupts, tell);
    printf("%lu\n", static_cast<unsigned long>(all.median_ns(number(argv[1]))));
}
