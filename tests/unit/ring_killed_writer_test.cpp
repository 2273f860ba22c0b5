// A writer of the ring that is stopped after each of its instructions in turn: if it were killed
// there, a reader would still find every interrupt whole and in its turn.

#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "ring_fixture.h"

using namespace ruk_ipmi_testing;

namespace
{

// The numbers of what a reader finds from the start on; of what is not whole, 0.
std::vector<uint32_t> read_all(ipmi_shm region)
{
    void *there = &region;
    std::vector<uint32_t> found;
    uint32_t position = 0;
    for (int i = 0; i <= IPMI_RING_SLOTS; ++i) {
        ipmi_interrupt record{};
        const uint32_t before = position;
        get_next_interrupt(&position, &there, &record, i != 0);
        if (position == before)
            break;
        ipmi_interrupt whole = interrupt(position);
        record.prev_num = whole.prev_num; // which nobody looks at while there is no renumbering
        found.push_back(bytes_of(record) == bytes_of(whole) ? position : 0);
    }
    return found;
}

class killed_writer : public scripted_test
{
  protected:
    killed_writer()
        : region(static_cast<ipmi_shm *>(mmap(nullptr, sizeof *region, PROT_READ | PROT_WRITE,
                                              MAP_SHARED | MAP_ANONYMOUS, -1, 0)))
    {
    }

    ~killed_writer() override { munmap(region, sizeof *region); }

    void put(uint32_t number)
    {
        void *there = region;
        ipmi_interrupt record = interrupt(number);
        put_next_interrupt(number, &there, &record);
    }

    // Puts an interrupt in a process of its own and calls `look` whenever an instruction of it has
    // changed the region. False where no process can be followed so.
    template <typename Look>
    bool put_step_by_step(uint32_t number, Look look)
    {
        const pid_t writer = fork();
        if (writer == 0) {
            if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
                _exit(1);
            raise(SIGSTOP);
            put(number);
            _exit(0);
        }
        int status = 0;
        waitpid(writer, &status, 0);
        const bool followed = WIFSTOPPED(status);
        bytes before = bytes_of(*region);
        while (WIFSTOPPED(status)) {
            if (ptrace(PTRACE_SINGLESTEP, writer, nullptr, nullptr) != 0)
                return false;
            waitpid(writer, &status, 0);
            if (memcmp(region, before.data(), before.size()) != 0)
                look();
            memcpy(before.data(), region, before.size());
        }
        EXPECT_TRUE(!followed || (WIFEXITED(status) && WEXITSTATUS(status) == 0));
        return followed;
    }

    ipmi_shm *const region;
};

std::vector<uint32_t> numbers(uint32_t first, uint32_t last)
{
    std::vector<uint32_t> all;
    for (uint32_t number = first; number <= last; ++number)
        all.push_back(number);
    return all;
}

} // namespace

TEST_F(killed_writer, leaves_every_other_interrupt_whole_and_its_own_so_or_not_at_all)
{
    constexpr uint32_t full = IPMI_RING_SLOTS;
    for (uint32_t number = 1; number <= full; ++number)
        put(number);
    ASSERT_EQ(read_all(*region), numbers(1, full));

    // The oldest, without it, and with the new one in its place.
    const std::vector<std::vector<uint32_t>> allowed = {numbers(1, full), numbers(2, full),
                                                        numbers(2, full + 1)};
    size_t stage = 0;
    const bool followed = put_step_by_step(full + 1, [&] {
        const std::vector<uint32_t> found = read_all(*region);
        while (stage < allowed.size() && found != allowed[stage])
            ++stage;
        ASSERT_LT(stage, allowed.size()) << ::testing::PrintToString(found);
    });
    if (!followed)
        GTEST_SKIP() << "no process can be followed step by step here";
    EXPECT_EQ(stage, 2u);
    EXPECT_EQ(read_all(*region), numbers(2, full + 1));
}
