// How the shared region is found, and what is said when it is not.

#include "ring_fixture.h"

using namespace ruk_ipmi_testing;

namespace
{

using ring_region = ring_test;

} // namespace

TEST_F(ring_region, attaches_finds_the_region_and_stays_attached)
{
    EXPECT_EQ(get_ipmi_shm_ptr(&holder), 0u);
    EXPECT_EQ(holder, &region);
    EXPECT_EQ(platform.journal(), (events{attached(), finds_region}));
    EXPECT_EQ(platform.attached_times(), 1u);
}

TEST_F(ring_region, takes_what_the_holder_points_at_for_the_region)
{
    holder = &out;
    EXPECT_EQ(get_ipmi_shm_ptr(&holder), 0u);
    EXPECT_EQ(get_shm_ptr(&holder), 0u);
    EXPECT_EQ(holder, &out);
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(ring_region, refuses_a_missing_holder)
{
    EXPECT_EQ(get_ipmi_shm_ptr(nullptr), 0xFFFFFFFFu);
    EXPECT_EQ(get_shm_ptr(nullptr), 0xFFFFFFFFu);
    EXPECT_EQ(platform.journal(), (events{error_line("Error obtaining shared memory \n"),
                                          error_line("Error obtaining shared memory \n")}));
}

TEST_F(ring_region, tells_and_returns_why_it_could_not_attach)
{
    platform.fails_to_attach(0xABCDEF01);
    EXPECT_EQ(get_ipmi_shm_ptr(&holder), 0xABCDEF01u);
    EXPECT_EQ(holder, nullptr);
    EXPECT_EQ(platform.journal(),
              (events{attached(), error_line("Error obtaining shared memory abcdef01\n")}));
}

TEST_F(ring_region, tells_and_returns_why_there_is_no_region_and_detaches)
{
    platform.os.fails("find_component_shm", 0x5009);
    EXPECT_EQ(get_ipmi_shm_ptr(&holder), 0x5009u);
    EXPECT_EQ(holder, nullptr);
    EXPECT_EQ(platform.journal(),
              (events{attached(), finds_region, error_line("Error obtaining shared memory 5009 \n"),
                      detached()}));
}

TEST_F(ring_region, tries_again_after_a_failure)
{
    platform.fails_to_attach(0x5001);
    platform.os.fails("find_component_shm", 0x5009);
    EXPECT_EQ(get_ipmi_shm_ptr(&holder), 0x5001u);
    EXPECT_EQ(get_ipmi_shm_ptr(&holder), 0x5009u);
    EXPECT_EQ(get_ipmi_shm_ptr(&holder), 0u);
    EXPECT_EQ(holder, &region);
    EXPECT_EQ(platform.attached_times(), 1u);
}

TEST_F(ring_region, finds_the_same_under_either_name_and_locks_nothing)
{
    EXPECT_EQ(get_shm_ptr(&holder), 0u);
    EXPECT_EQ(holder, &region);
    EXPECT_EQ(platform.journal(), (events{attached(), finds_region}));
}

TEST_F(ring_region, fails_with_the_same_words_under_either_name)
{
    platform.fails_to_attach(0x5001);
    platform.os.fails("find_component_shm", 0x5009);
    EXPECT_EQ(get_shm_ptr(&holder), 0x5001u);
    EXPECT_EQ(get_shm_ptr(&holder), 0x5009u);
    EXPECT_EQ(holder, nullptr);
    EXPECT_EQ(platform.log(), (events{error_line("Error obtaining shared memory 5001\n"),
                                      error_line("Error obtaining shared memory 5009 \n")}));
}

TEST_F(ring_region, keeps_each_holder_for_itself)
{
    void *other = nullptr;
    EXPECT_EQ(get_ipmi_shm_ptr(&holder), 0u);
    EXPECT_EQ(get_ipmi_shm_ptr(&other), 0u);
    EXPECT_EQ(other, &region);
    EXPECT_EQ(platform.attached_times(), 2u);
}
