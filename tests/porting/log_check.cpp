// The log: whatever is said, by whichever thread, the caller notices nothing.

#include <cerrno>
#include <thread>
#include <vector>

#include "check.h"
#include "platform/log.h"

namespace
{

using namespace tests;

void say_everything()
{
    slog_elog("check: an error %d (0x%08x)\n", -1, 0x5007);
    slog_nlog("check: a notice without an end");
    slog_dlog("check: debug %s %hhu %.32s\n", "text", uint8_t{200},
              "a text that is cut off somewhere here");
    slog_vlog("check: verbose @ %p\n", static_cast<void *>(nullptr));
    os_log(1, 4, "check: %s\n", "the OS layer's");
}

TEST(Log, KeepsErrno)
{
    errno = ENOLCK;
    say_everything();
    slog_dump("check: bytes", "\x01\x02\xFF", 3, 1);
    EXPECT_EQ(ENOLCK, errno);
}

TEST(Log, DumpsNothingAndAWholeRecord)
{
    const char record[512] = {};
    slog_dump("check: none", record, 0, 1);
    slog_dump("check: many", record, sizeof record, 1);
}

TEST(Log, IsWrittenByManyThreadsAtOnce)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([] {
            for (int round = 0; round < 20; ++round)
                say_everything();
        });
    for (std::thread &each : threads)
        each.join();
}

} // namespace
