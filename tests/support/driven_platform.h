// A platform that does whatever its driver says, call by call: fail, answer anything, hold
// anything in the shared region. It sees to it that the library keeps to the platform's rules: what
// is attached is detached, what is locked is unlocked, every message and every log text can be
// read. A broken rule ends the process.
//
// It has no threads: for the runtime's own, see scripted_os.h.
#ifndef RUK_TESTS_SUPPORT_DRIVEN_PLATFORM_H
#define RUK_TESTS_SUPPORT_DRIVEN_PLATFORM_H

#include "ruk_ipmi.h"

namespace ruk_ipmi_testing
{

class platform_driver
{
  public:
    platform_driver();
    virtual ~platform_driver();
    platform_driver(const platform_driver &) = delete;
    platform_driver &operator=(const platform_driver &) = delete;

    // The status of the next call of the platform that can fail.
    virtual uint32_t status() = 0;

    // A request that was sent; nothing has to be done about it.
    virtual void sent(const ipmi_request &) {}

    // Fills an answer, of which `room` bytes of data are taken.
    virtual void answer(ipmi_response &response, uint32_t room) = 0;

    // A word of the platform information.
    virtual uint32_t platform_word() = 0;

    // End the process unless nothing is attached, or locked, any more.
    static void check_nothing_is_attached();
    static void check_nothing_is_locked();

    static constexpr uint32_t not_answered = 0x5007;

    ipmi_shm region{};
};

} // namespace ruk_ipmi_testing

#endif
