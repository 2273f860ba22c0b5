// A hook that is registered for notifications as long as a test wants it.
#ifndef RUK_TESTS_HOST_OS_REGISTRATION_H
#define RUK_TESTS_HOST_OS_REGISTRATION_H

#include <gtest/gtest.h>
#include <vector>

#include "platform/os.h"

namespace tests
{

constexpr uint32_t interrupt = 0x15;

// Registers a hook for some types; unregisters it when this goes.
class registration
{
  public:
    explicit registration(os_notify_hook to, const std::vector<uint32_t> &types = {interrupt})
    {
        os_notify_list list = 0;
        EXPECT_EQ(0u, os_notify_list_init(&list));
        for (const uint32_t type : types)
            EXPECT_EQ(0u, os_notify_list_add(type, list));
        EXPECT_EQ(0u, os_notify_init(&handle_, to));
        EXPECT_EQ(0u, os_notify_register(list, handle_));
    }
    ~registration() { os_notify_unregister(handle_); }
    registration(const registration &) = delete;
    registration &operator=(const registration &) = delete;

    os_notify_handle handle() const { return handle_; }

  private:
    os_notify_handle handle_ = 0;
};

} // namespace tests

#endif
