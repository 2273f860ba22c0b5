// Extended parameters, written and read in chunks.

#include <numeric>

#include "blade_under_test.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint8_t command = 0x21;

bytes counting(size_t size)
{
    bytes numbers(size);
    std::iota(numbers.begin(), numbers.end(), uint8_t{1});
    return numbers;
}

class extended_blade : public blade_under_test
{
  public:
    bytes group(uint8_t number, const bytes &request)
    {
        return ask(0x2E, number, joined({0xA2, 0x02, 0x00}, request));
    }

    uint8_t begin() { return group(0x01, {}).at(4); }

    bytes get(size_t offset, uint8_t count, uint8_t index = 0)
    {
        return group(0x02, joined({0, command, index}, joined(le16_bytes(offset), {count})));
    }

    bytes set(uint8_t handle, size_t offset, bool is_last, const bytes &chunk, uint8_t index = 0)
    {
        const bytes head = joined({handle, command, index}, le16_bytes(offset));
        return group(0x03, joined(joined(head, {is_last}), chunk));
    }

    // Writes a value as clients do; the answer to its last chunk.
    bytes write(const bytes &value, uint8_t index = 0)
    {
        const uint8_t handle = begin();
        size_t at = 0;
        for (; value.size() - at > 128; at += 128)
            set(handle, at, false, part(at, 128, value), index);
        return set(handle, at, true, from(at, value), index);
    }

    // The stream: the value's length and the value.
    bytes read(uint8_t index = 0)
    {
        bytes stream = from(7, get(0, 128, index));
        while (stream.size() < word_at(0, stream))
            stream = joined(stream, from(7, get(stream.size(), 128, index)));
        return stream;
    }
};

const bytes done = {0x00, 0xA2, 0x02, 0x00};

TEST(simulated_extended_parameter, is_read_behind_a_length_that_counts_itself)
{
    extended_blade blade;
    EXPECT_EQ(blade.write({'a', 'b', 'c'}), done);
    EXPECT_EQ(blade.get(0, 255), joined(done, {command, 0, 5, 5, 0, 'a', 'b', 'c'}));
    EXPECT_EQ(blade.get(2, 2), joined(done, {command, 0, 2, 'a', 'b'}));
}

TEST(simulated_extended_parameter, is_kept_whole_in_every_size)
{
    extended_blade blade;
    for (const size_t size : {1, 127, 128, 129, 300, 1022}) {
        EXPECT_EQ(blade.write(counting(size)), done);
        EXPECT_EQ(blade.read(), joined(le16_bytes(size + 2), counting(size)));
    }
}

TEST(simulated_extended_parameter, that_a_reader_has_no_room_for_is_refused)
{
    extended_blade blade;
    blade.write({1, 2, 3});
    EXPECT_EQ(blade.write(counting(1023)), (bytes{0xC9}));
    EXPECT_EQ(blade.read(), (bytes{5, 0, 1, 2, 3}));
}

TEST(simulated_extended_parameter, has_a_value_for_each_index)
{
    extended_blade blade;
    blade.write({1}, 0);
    blade.write({2}, 1);
    EXPECT_EQ(blade.read(0), (bytes{3, 0, 1}));
    EXPECT_EQ(blade.read(1), (bytes{3, 0, 2}));
}

TEST(simulated_extended_parameter, that_was_never_written_is_an_empty_chunk)
{
    extended_blade blade;
    EXPECT_EQ(blade.get(0, 255), joined(done, {command, 0, 0}));
    EXPECT_EQ(blade.get(1, 255), (bytes{0xC9}));
}

TEST(simulated_extended_parameter, cannot_be_read_behind_its_end)
{
    extended_blade blade;
    blade.write({1, 2, 3});
    EXPECT_EQ(blade.get(4, 128), joined(done, {command, 0, 1, 3}));
    EXPECT_EQ(blade.get(5, 128), (bytes{0xC9}));
}

TEST(simulated_extended_parameter, counts_once_its_last_chunk_is_there)
{
    extended_blade blade;
    blade.write({1, 2, 3});
    const uint8_t handle = blade.begin();
    EXPECT_EQ(blade.set(handle, 0, false, {9, 8}), done);
    EXPECT_EQ(blade.read(), (bytes{5, 0, 1, 2, 3}));
    EXPECT_EQ(blade.set(handle, 2, true, {7}), done);
    EXPECT_EQ(blade.read(), (bytes{5, 0, 9, 8, 7}));
}

TEST(simulated_extended_parameter, is_written_by_the_last_who_began_and_once)
{
    extended_blade blade;
    EXPECT_EQ(blade.set(0, 0, true, {1}), (bytes{0xC5}));
    const uint8_t first = blade.begin();
    const uint8_t second = blade.begin();
    EXPECT_EQ(blade.set(first, 0, true, {1}), (bytes{0xC5}));
    EXPECT_EQ(blade.set(second, 0, true, {2}), done);
    EXPECT_EQ(blade.set(second, 0, true, {3}), (bytes{0xC5}));
    EXPECT_EQ(blade.read(), (bytes{3, 0, 2}));
}

TEST(simulated_extended_parameter, refuses_chunks_that_do_not_follow)
{
    extended_blade blade;
    const uint8_t handle = blade.begin();
    EXPECT_EQ(blade.set(handle, 1, false, {2}), (bytes{0xC9})) << "a hole";
    EXPECT_EQ(blade.set(handle, 0, false, {1}), done);
    EXPECT_EQ(blade.set(handle, 1, true, {2}, 5), (bytes{0xCC})) << "another value's";
    EXPECT_EQ(blade.set(handle, 1, true, bytes(129)), (bytes{0xC7}));
    EXPECT_EQ(blade.set(handle, 1, true, {}), (bytes{0xC7}));
    EXPECT_EQ(blade.set(handle, 1, true, {2}), done);
    EXPECT_EQ(blade.read(), (bytes{4, 0, 1, 2}));
}

TEST(simulated_extended_parameter, has_room_for_sixty_four_values)
{
    extended_blade blade;
    for (uint8_t index = 0; index < 64; ++index)
        EXPECT_EQ(blade.write({index}, index), done);
    EXPECT_EQ(blade.write({1}, 64), (bytes{0xC4}));
    EXPECT_EQ(blade.write({99}, 63), done);
    EXPECT_EQ(blade.read(63), (bytes{3, 0, 99}));
}

TEST(simulated_extended_parameter, belongs_to_a_group_of_commands)
{
    extended_blade blade;
    EXPECT_EQ(blade.ask(0x2E, 0x01, {0xA2, 0x02, 0x01}), (bytes{0xC1}));
    EXPECT_EQ(blade.ask(0x2E, 0x01, {0xA2, 0x02}), (bytes{0xC7}));
}

} // namespace

} // namespace chassisd::simulated
