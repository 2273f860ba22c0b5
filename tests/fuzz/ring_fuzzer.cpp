// The interrupt ring and the time-out counters in a region that holds anything:
// words are overwritten at any time, between the calls and, since any call of
// the platform may do it, in the middle of them.

#include <cstring>

#include "fuzz/drawn_platform.h"

using namespace ruk_ipmi_testing;

namespace
{

// Overwrites a word, mostly one of those that lead from one to another.
void damage(ipmi_shm &region, arguments &input)
{
    uint32_t *const words = reinterpret_cast<uint32_t *>(&region);
    constexpr uint32_t words_of_slot = sizeof(ipmi_interrupt) / sizeof *words;
    const uint8_t kind = input.byte();
    uint32_t at = kind % 3;
    if (kind >= 0x40)
        at = 3 + input.byte() % IPMI_RING_SLOTS * words_of_slot + kind % 2;
    if (kind >= 0xC0)
        at = input.half() % (sizeof region / sizeof *words);
    words[at] = input.byte() < 0xC0 ? input.byte() : input.word();
}

void put(void *&holder, arguments &input)
{
    ipmi_interrupt record{};
    record.int_num = input.byte();
    record.data_len = input.word();
    put_next_interrupt(record.int_num, &holder, &record);
}

void read(uint32_t &position, void *&holder, arguments &input)
{
    ipmi_interrupt record{};
    get_next_interrupt(&position, &holder, &record, input.byte() & 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    arguments input(data, size);
    drawn_platform platform(input);
    void *holder = nullptr;
    uint32_t position = 0;
    while (input.left() != 0) {
        const blade_location *const location = input.sure_location();
        uint32_t bumps = 0;
        uint32_t sessions = 0;
        switch (input.byte() % 8) {
        case 0:
            init_shm_ptr(&holder);
            break;
        case 1:
        case 2:
            put(holder, input);
            break;
        case 3:
        case 4:
            read(position, holder, input);
            break;
        case 5:
            SetTimeout(&platform.region, location, input.byte(), "fuzzer", 1);
            GetTimeouts(&platform.region, location, &bumps, &sessions);
            ClearTimeouts(&platform.region, location);
            break;
        case 6:
            position = input.word();
            break;
        default:
            damage(platform.region, input);
        }
        drawn_platform::check_nothing_is_locked();
    }
    return 0;
}
