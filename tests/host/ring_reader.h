// Readers of a chassis' interrupt ring, and what makes its blades fill it.
#ifndef RUK_TESTS_HOST_RING_READER_H
#define RUK_TESTS_HOST_RING_READER_H

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "daemon.h"
#include "producer/blade_events.h"

namespace tests
{

using ruk::host::blade_event;

// A process maps the ring once and for good, and every test has another: so each is a process.
inline void in_own_process(const std::function<void()> &test)
{
    EXPECT_EQ(0, in_child([&] {
                  test();
                  return testing::Test::HasFailure() ? 1 : 0;
              }));
}

// The only event of an interrupt and the slot of its blade.
using told = std::pair<blade_event, uint8_t>;

// Takes interrupts from the ring, the oldest first.
class ring_reader
{
  public:
    ring_reader() { EXPECT_EQ(0u, get_ipmi_shm_ptr(&region_)); }

    // The next interrupt; one that asserts nothing when none comes for some seconds.
    ipmi_interrupt next()
    {
        ipmi_interrupt interrupt{};
        const uint32_t before = last_;
        eventually([&] {
            EXPECT_EQ(0u, get_next_interrupt(&last_, &region_, &interrupt, 0));
            return last_ != before;
        });
        return interrupt;
    }

    // The next `count` interrupts. Each asserts one event.
    std::vector<told> next(size_t count)
    {
        std::vector<told> all;
        while (all.size() < count) {
            const ipmi_interrupt interrupt = next();
            const uint32_t event = imc_event_set_NEXT_ASSERTED(0, &interrupt.ies);
            EXPECT_EQ(0u, imc_event_set_NEXT_ASSERTED(event, &interrupt.ies));
            all.emplace_back(static_cast<blade_event>(event), interrupt.location.slot_id);
            if (event == 0)
                break;
        }
        return all;
    }

    uint32_t last_number() const { return static_cast<const ipmi_shm *>(region_)->last_int_num; }

  private:
    void *region_ = nullptr;
    uint32_t last_ = 0;
};

// Asks a blade. Returns the status, and in `response` the answer.
inline uint32_t ask(uint8_t slot, uint32_t netfn_cmd, const std::vector<uint8_t> &data,
                    ipmi_response &response, uint32_t timeout = 500)
{
    ipmi_request request{};
    request.location.slot_id = slot;
    request.netfn_cmd = netfn_cmd;
    request.data_len = static_cast<uint32_t>(data.size());
    std::copy(data.begin(), data.end(), request.data);
    response = empty_response();
    return get_ruk_ipmi_response(&request, &response, timeout);
}

// Has a blade carry out a command.
inline void command(uint8_t slot, uint32_t netfn_cmd, const std::vector<uint8_t> &data)
{
    ipmi_response response;
    EXPECT_EQ(0u, ask(slot, netfn_cmd, data, response));
    EXPECT_EQ(0u, response.comp_code);
}

// Resets a blade, which is an event.
inline void reset(uint8_t slot)
{
    command(slot, 0x0002, {0x03});
}

} // namespace tests

#endif
