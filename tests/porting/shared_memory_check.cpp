// What the platform shares with every process: the IPMI component's region, and what it says about
// the chassis.

#include <cstdint>
#include <cstring>

#include "check.h"
#include "platform/message_service.h"
#include "platform/platform_info.h"
#include "ruk_ipmi/ring.h"

namespace
{

using namespace tests;

class SharedRegion : public testing::Test
{
  protected:
    void SetUp() override
    {
        ASSERT_EQ(0u, attach_ruk_shm()); // and stays attached, as the library does
        void *region = nullptr;
        ASSERT_EQ(0u, find_component_shm(IPMI_COMPONENT, &region));
        ASSERT_NE(nullptr, region);
        shm = static_cast<ipmi_shm *>(region);
    }

    ipmi_shm *shm = nullptr;
};

TEST_F(SharedRegion, LiesOnAWord)
{
    EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(shm) % sizeof(uint32_t));
}

TEST_F(SharedRegion, IsThereFromTheFirstByteToTheLast)
{
    ipmi_shm copy;
    memcpy(&copy, shm, sizeof copy);
    EXPECT_LE(copy.next_slot, uint32_t{IPMI_RING_SLOTS}) << "it holds something else";
}

// The counter of the last row, which hardly a chassis has a blade for.
TEST_F(SharedRegion, IsTheSameInAChildProcess)
{
    uint32_t &counter = shm->timeouts[IPMI_TIMEOUT_ENTRIES - 1].new_sessions;
    const uint32_t before = __atomic_load_n(&counter, __ATOMIC_SEQ_CST);
    EXPECT_EQ(0, in_child([&] {
                  __atomic_add_fetch(&counter, 1, __ATOMIC_SEQ_CST);
                  return 0;
              }));
    EXPECT_EQ(before + 1, __atomic_fetch_sub(&counter, 1, __ATOMIC_SEQ_CST));
}

TEST_F(SharedRegion, LeavesTheHolderAloneOfAComponentThatHasNone)
{
    int own = 0;
    void *holder = &own;
    EXPECT_NE(0u, find_component_shm(0xFFFF, &holder));
    EXPECT_EQ(&own, holder);
}

TEST(PlatformInformation, TellsTheSlots)
{
    const uint32_t *const info = _gPlatInfo();
    ASSERT_NE(nullptr, info);
    EXPECT_GE(info[PLAT_INFO_SLOTS], 1u);
    EXPECT_LE(info[PLAT_INFO_SLOTS], 255u) << "is it in this machine's byte order?";
}

} // namespace
