#include "chassisd/interrupts.h"

#include <algorithm>

#include "platform/log.h"
#include "platform/message_service.h"
#include "producer/producer.h"

namespace chassisd
{

namespace
{

// Several rings full: who waits that long for the ring finds only the last 200 there anyway.
constexpr size_t longest_queue = 1000;

ipmi_interrupt interrupt_of(const blade_location &location, ruk::host::blade_event event,
                            const bytes &data)
{
    ipmi_interrupt interrupt{};
    interrupt.location = location;
    imc_event_set_SET(static_cast<uint32_t>(event), &interrupt.ies);
    const size_t length = std::min(data.size(), sizeof interrupt.data);
    std::copy_n(data.begin(), length, interrupt.data);
    interrupt.data_len = static_cast<uint32_t>(length);
    return interrupt;
}

void say_lost(const ipmi_interrupt &interrupt, const char *why, uint32_t status)
{
    const uint32_t event = imc_event_set_NEXT_ASSERTED(0, &interrupt.ies);
    slog_elog("lost an interrupt of blade %s, event %u (%s): %s (0x%04x)\n",
              ruk_blade_clt_to_str(&interrupt.location), event, ruk::host::blade_event_name(event),
              why, status);
}

} // namespace

interrupts::interrupts(void *region) : region_(region), thread_([this] { run(); }) {}

interrupts::~interrupts()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void interrupts::post(const blade_location &location, ruk::host::blade_event event,
                      const bytes &data)
{
    const ipmi_interrupt interrupt = interrupt_of(location, event, data);
    {
        const std::lock_guard lock(mutex_);
        if (queue_.size() < longest_queue) {
            queue_.push_back(interrupt);
            changed_.notify_one();
            return;
        }
    }
    say_lost(interrupt, "too many are waiting for the ring", 0);
}

void interrupts::run()
{
    for (;;) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
        if (queue_.empty())
            return;
        ipmi_interrupt next = queue_.front();
        queue_.pop_front();
        const bool last_try = stopping_;
        lock.unlock();
        if (!deliver(next) && last_try)
            return;
    }
}

bool interrupts::deliver(ipmi_interrupt &interrupt)
{
    const uint32_t rc = ruk::host::post_interrupt(&region_, interrupt);
    if (rc != 0)
        say_lost(interrupt, "the ring cannot be had", rc);
    return rc == 0;
}

} // namespace chassisd
