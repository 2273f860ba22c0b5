#include "cli/ring_reader.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

#include "cli/shared_region.h"
#include "platform/directory.h"
#include "platform/region.h"
#include "producer/producer.h"

using namespace cli;

namespace
{

// A chassis without a daemon, whose ring is empty when a test begins.
class ring_reading : public testing::Test
{
  protected:
    static void SetUpTestSuite()
    {
        char directory[] = "/tmp/ring_reader_test.XXXXXX";
        ASSERT_NE(mkdtemp(directory), nullptr);
        runtime() = directory;
        setenv("RUK_RUNTIME_DIR", directory, true);
        ASSERT_NE(ruk::host::map_region(directory, true), nullptr);
    }

    static void TearDownTestSuite() { std::filesystem::remove_all(runtime()); }

    void SetUp() override { *shared_region() = {}; }

    static std::string &runtime()
    {
        static std::string directory;
        return directory;
    }
};

// Every interrupt has the next mark, so that it is known whatever number it has.
void post(int count, uint8_t first_mark = 1)
{
    for (int at = 0; at < count; ++at) {
        ipmi_interrupt interrupt{};
        interrupt.data[0] = static_cast<uint8_t>(first_mark + at);
        void *holder = shared_region();
        ASSERT_EQ(ruk::host::post_interrupt(&holder, interrupt), 0u);
    }
}

void put(uint32_t number, uint8_t mark)
{
    ipmi_interrupt interrupt{};
    interrupt.int_num = number;
    interrupt.data[0] = mark;
    void *holder = shared_region();
    ASSERT_EQ(put_next_interrupt(number, &holder, &interrupt), 0u);
}

// The marks of what a reader finds, and what it misses as "[first-last]".
std::string news(ring_reader &reader)
{
    std::string text;
    reader.read_on(
        [&](const ipmi_interrupt &interrupt) { text += std::to_string(interrupt.data[0]) + " "; },
        [&](uint32_t first, uint32_t last) {
            text += "[" + std::to_string(first) + "-" + std::to_string(last) + "] ";
        });
    return text;
}

} // namespace

TEST_F(ring_reading, begins_with_what_comes_after_its_start)
{
    post(3);
    ring_reader reader;
    EXPECT_EQ(news(reader), "");
    post(2, 11);
    EXPECT_EQ(news(reader), "11 12 ");
    EXPECT_EQ(news(reader), "");
}

TEST_F(ring_reading, begins_there_also_after_more_than_ten_thousand_interrupts)
{
    post(3);
    put(20000, 4);
    ring_reader reader;
    post(2, 11);
    EXPECT_EQ(news(reader), "11 12 ");
}

TEST_F(ring_reading, goes_on_where_it_was_however_full_the_ring_is)
{
    ring_reader reader;
    for (uint8_t round = 1; round <= 5; ++round) {
        post(IPMI_RING_SLOTS - 50, round);
        const std::string found = news(reader);
        EXPECT_EQ(std::count(found.begin(), found.end(), ' '), IPMI_RING_SLOTS - 50);
        EXPECT_EQ(found.find('['), std::string::npos);
    }
}

TEST_F(ring_reading, tells_what_the_ring_has_overrun)
{
    ring_reader reader;
    post(IPMI_RING_SLOTS + 7);
    EXPECT_EQ(news(reader).substr(0, 8), "[1-7] 8 ");
}

TEST_F(ring_reading, follows_a_renumbering_without_loss_or_repetition)
{
    put(20000, 1);
    ring_reader reader;
    put(20001, 2);
    put(20002, 3);
    put(4, 4); // those in the ring are now 1, 2 and 3
    EXPECT_EQ(news(reader), "2 3 4 ");
    EXPECT_EQ(news(reader), "");
    put(5, 5);
    EXPECT_EQ(news(reader), "5 ");
    EXPECT_EQ(news(reader), "");
}

TEST_F(ring_reading, that_begins_after_a_renumbering_shows_nothing_older)
{
    put(20001, 1);
    put(20002, 2);
    put(3, 3);
    ring_reader reader;
    EXPECT_EQ(news(reader), "");
    put(4, 4);
    EXPECT_EQ(news(reader), "4 ");
}

TEST_F(ring_reading, tells_what_is_gone_when_the_ring_was_emptied)
{
    ring_reader reader;
    post(3);
    void *holder = shared_region();
    ASSERT_EQ(init_shm_ptr(&holder), 0u);
    EXPECT_EQ(news(reader), "[1-3] ");
    post(1, 11);
    EXPECT_EQ(news(reader), "11 ");
}

TEST_F(ring_reading, does_not_follow_numbers_that_lead_in_a_circle)
{
    ring_reader reader;
    post(3);
    shared_region()->ring[1].prev_num = 0;
    shared_region()->last_int_num = 100;
    EXPECT_EQ(news(reader), "1 2 [3-100] ");
    EXPECT_EQ(news(reader), "");
}

TEST_F(ring_reading, ends_whatever_numbers_the_region_holds)
{
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        ring_reader reader;
        auto *words = reinterpret_cast<uint32_t *>(shared_region());
        for (size_t at = 0; at < sizeof(ipmi_shm) / sizeof *words; ++at)
            words[at] = static_cast<uint32_t>(random()) >> (random() % 32);
        news(reader);
        EXPECT_EQ(news(reader), "");
    }
}
