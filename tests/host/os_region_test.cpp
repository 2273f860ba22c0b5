// The file that the processes of a chassis share: made once, refused when it is another.

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "daemon.h"
#include "os_mutexes.h"
#include "os_processes.h"
#include "platform/os.h"
#include "platform/os_region.h"
#include "platform/status.h"

namespace
{

using namespace tests;

class OsRegion : public os_layer_test
{
};

TEST_F(OsRegion, OneOfManyCreatorsAtOnceIsTheFirst)
{
    for (int round = 0; round < 10; ++round) {
        const temporary_directory directory;
        int gate[2];
        ASSERT_EQ(0, pipe2(gate, O_CLOEXEC));
        std::vector<child_process> creators;
        for (int i = 0; i < 8; ++i)
            creators.emplace_back([&] {
                return exec_os_client(directory.path() + "/run", "create", "first", gate[0]);
            });
        os_sleep(2);
        close(gate[0]);
        close(gate[1]);
        int first = 0;
        for (child_process &each : creators) {
            const int rc = each.wait();
            first += rc == 0;
            EXPECT_TRUE(rc == 0 || rc == as_exit_status(RUK_OS_EXISTS)) << rc;
        }
        EXPECT_EQ(1, first);
        const std::filesystem::directory_iterator files(directory.path() + "/run");
        EXPECT_EQ(1, std::distance(begin(files), end(files)));
    }
}

// What os_client says to a shared file of that content.
int verdict_on(const std::string &content)
{
    const temporary_directory directory;
    std::ofstream(directory.path() + "/os.shm") << content;
    return in_child([&] { return exec_os_client(directory.path(), "create", "x"); });
}

TEST_F(OsRegion, RefusesASharedFileOfAnotherKind)
{
    using namespace ruk::host;
    const int bad = as_exit_status(RUK_OS_BAD_FILE);
    made("so that there is a file");
    std::ifstream own(std::string(getenv("RUK_RUNTIME_DIR")) + "/os.shm");
    const std::string good(std::istreambuf_iterator<char>(own), {});
    ASSERT_EQ(sizeof(os_region), good.size());
    ASSERT_EQ(0, verdict_on(good));

    EXPECT_EQ(bad, verdict_on("")) << "empty";
    EXPECT_EQ(bad, verdict_on(good.substr(0, 5000))) << "truncated";
    EXPECT_EQ(bad, verdict_on(good + "x")) << "too long";
    EXPECT_EQ(bad, verdict_on(std::string(good.size(), '\0'))) << "zeros";
    for (const size_t word :
         {offsetof(os_region_header, magic), offsetof(os_region_header, version),
          offsetof(os_region_header, mutex_size)}) {
        std::string spoilt = good;
        spoilt[word] = static_cast<char>(spoilt[word] ^ 0x40);
        EXPECT_EQ(bad, verdict_on(spoilt)) << "byte " << word;
    }
}

TEST_F(OsRegion, SaysSoWhenThereCanBeNoSharedFile)
{
    const temporary_directory directory;
    const std::string nowhere = directory.path() + "/not/there";
    EXPECT_EQ(as_exit_status(RUK_OS_NO_FILE),
              in_child([&] { return exec_os_client(nowhere, "create", "x"); }));
}

TEST_F(OsRegion, EveryStatusHasItsText)
{
    for (uint32_t status = RUK_OS_EXISTS; status <= RUK_OS_NOT_REGISTERED; ++status)
        EXPECT_NE(nullptr, ruk_msg_status_text(status)) << std::hex << status;
}

} // namespace
