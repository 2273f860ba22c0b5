// The runtime between `ruk_ipmi_init` and the end of its callback thread, for the tests of what
// happens there.
#ifndef RUK_IPMI_UNIT_RUNTIME_H
#define RUK_IPMI_UNIT_RUNTIME_H

#include <initializer_list>
#include <pthread.h>
#include <vector>

#include "ruk_ipmi.h"
#include "runtime/state.h"
#include "support/scripted_test.h"

namespace ruk_ipmi_testing
{

// An event as its callback was told of it.
struct told {
    int slot;
    uint32_t event;

    bool operator==(const told &other) const { return slot == other.slot && event == other.event; }
};

inline std::ostream &operator<<(std::ostream &out, const told &event)
{
    return out << "event " << event.event << " of blade " << event.slot;
}

inline imc_event_set set_of(std::initializer_list<uint32_t> numbers)
{
    imc_event_set set;
    imc_event_set_init(&set);
    for (const uint32_t e : numbers)
        imc_event_set_SET(e, &set);
    return set;
}

class runtime_test : public scripted_test
{
  public:
    // What the callbacks were given.
    static inline std::vector<told> events_told;
    static inline std::vector<ipmi_response> answers;

    static int on_event(uint32_t reserved, imc_event_info *info)
    {
        EXPECT_EQ(reserved, 0u);
        events_told.push_back({info->location.slot_id, info->event});
        return 0;
    }

    static void on_answer(ipmi_response *response) { answers.push_back(*response); }

  protected:
    void SetUp() override
    {
        events_told.clear();
        answers.clear();
        ASSERT_EQ(ruk_ipmi_init(), 0u);
        platform.forget();
    }

    // What is left outstanding, nobody frees: not at the end of the thread, nor at the next init.
    void TearDown() override
    {
        ipmi_list &pending = ruk::ipmi_lib_state.pending;
        while (pending.head)
            list_delete_and_free_data(&pending, pending.head);
        scripted_test::TearDown();
    }

    // Runs the callback thread. While it waits without limit, each time the next step happens;
    // when there is none left, it is asked to end.
    void run_callback_thread(std::vector<scripted_os::step> steps = {})
    {
        for (scripted_os::step &each : steps)
            platform.os.on_wait(std::move(each));
        platform.os.on_wait(ruk_ipmi_exit);
        run_thread();
    }

    // Runs the callback thread until it ends by itself.
    void run_thread()
    {
        pthread_t thread;
        ASSERT_EQ(pthread_create(&thread, nullptr, ipmi_callback_thread, nullptr), 0);
        ASSERT_EQ(pthread_join(thread, nullptr), 0);
    }

    // All lines of the log; the addresses in them are not compared.
    events logged() const
    {
        events lines = platform.log();
        for (event &line : lines) {
            const size_t at = line.text.find("@ 0x");
            if (at != std::string::npos)
                line.text.replace(at + 2, line.text.find(' ', at + 2) - at - 2, "ADDRESS");
        }
        return lines;
    }

    // What the callback thread logs from its start to its end, with `lines` in between.
    events log_of_thread(const events &lines) const
    {
        const auto id = static_cast<unsigned>(platform.os.callback_thread());
        events all = {
            debug_line(formatted("THREAD ID %05x CREATED (ipmi_callback_thread).\n", id))};
        all.insert(all.end(), lines.begin(), lines.end());
        all.push_back(debug_line("Cleaning ipmi library. \n"));
        all.push_back(debug_line("Before unregister os notify. \n"));
        all.push_back(debug_line("After unregister os notify. \n"));
        all.push_back(debug_line(formatted("THREAD ID %05x EXITED (ipmi_callback_thread).\n", id)));
        return all;
    }

    // What a producer leaves in the ring.
    void post(uint32_t number, uint8_t slot, std::initializer_list<uint32_t> asserted)
    {
        ipmi_interrupt interrupt{};
        interrupt.int_num = interrupt.prev_num = number;
        interrupt.location = blade(slot);
        interrupt.ies = set_of(asserted);
        platform.os.put_interrupt(interrupt);
    }
};

} // namespace ruk_ipmi_testing

#endif
