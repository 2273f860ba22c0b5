// The system information parameters, in the blocks that they travel in.

#include <numeric>

#include "blade_under_test.h"

namespace chassisd::simulated
{

namespace
{

bytes characters(const std::string &text)
{
    return bytes(text.begin(), text.end());
}

bytes counting(size_t size)
{
    bytes numbers(size);
    std::iota(numbers.begin(), numbers.end(), uint8_t{1});
    return numbers;
}

class info_blade : public blade_under_test
{
  public:
    using blade_under_test::blade_under_test;

    bytes set(const bytes &request) { return ask(0x06, 0x58, request); }

    bytes get(uint8_t selector, uint8_t set = 0, const bytes &more = {})
    {
        return ask(0x06, 0x59, joined({0, selector, set, 0}, more));
    }

    // A text as readers put it together, and its encoding ahead of it. Its first block has `first`
    // characters.
    bytes text(uint8_t selector, size_t first = 14)
    {
        const bytes head = get(selector);
        const size_t at = head.size() - first;
        bytes whole = from(at, head);
        for (uint8_t set = 1; whole.size() < head.at(at - 1); ++set)
            whole = joined(whole, part(3, 16, get(selector, set)));
        return joined({head.at(at - 2)}, part(0, head.at(at - 1), whole));
    }
};

TEST(simulated_system_info, has_texts_in_three_encodings_at_the_start)
{
    info_blade blade(named("B"));
    EXPECT_EQ(blade.text(1), joined({0}, characters("2.14.0")));
    EXPECT_EQ(blade.text(2), joined({1}, characters("B in Malm\xB6\xC3")));
    EXPECT_EQ(part(0, 5, blade.text(3)), (bytes{2, 'G', 0, 'N', 0}));
    EXPECT_EQ(blade.text(4), joined({0}, characters("GNU/Linux, in service")));
}

TEST(simulated_system_info, heads_the_first_block_of_a_text_with_encoding_and_length)
{
    EXPECT_EQ(info_blade().get(1),
              joined({0x00, 0x11, 0, 0, 6}, joined(characters("2.14.0"), bytes(8))));
    EXPECT_EQ(info_blade().get(4, 1).size(), 19u);
}

TEST(simulated_system_info, of_a_long_name_is_still_counted_by_a_byte)
{
    info_blade blade(named(std::string(200, 'n')));
    EXPECT_EQ(blade.text(2), joined({1}, characters(std::string(64, 'n') + " in Malm\xB6\xC3")));
}

TEST(simulated_system_info, keeps_a_text_whose_blocks_come_with_remains_of_the_one_before)
{
    const bytes text = counting(31);
    info_blade blade;
    EXPECT_EQ(blade.set(joined({2, 0, 0, 31}, part(0, 14, text))), (bytes{0x00}));
    EXPECT_EQ(blade.set(joined({2, 1}, part(14, 16, text))), (bytes{0x00}));
    EXPECT_EQ(blade.set(joined({2, 2, 31}, part(15, 15, text))), (bytes{0x00}));
    EXPECT_EQ(blade.text(2), joined({0}, text));
}

TEST(simulated_system_info, refuses_blocks_behind_the_end_of_a_text)
{
    info_blade blade;
    EXPECT_EQ(blade.get(1, 1), (bytes{0xC9}));
    EXPECT_EQ(blade.set(joined({1, 1}, bytes(16))), (bytes{0xC9}));
    EXPECT_EQ(blade.set(joined({1, 0, 0, 4}, bytes(15))), (bytes{0xC7}));
    EXPECT_EQ(blade.set({1, 0, 3, 0}), (bytes{0xCC}));
    EXPECT_EQ(blade.set({1, 0, 0}), (bytes{0xC7}));
    EXPECT_EQ(blade.text(1), joined({0}, characters("2.14.0")));
}

TEST(simulated_system_info, has_all_texts_that_can_be_written)
{
    info_blade blade;
    for (const uint8_t selector : bytes{1, 2, 3, 4, 0xD1, 0xDC, 0xDD, 0xDE, 0xDF, 0xE0}) {
        EXPECT_EQ(blade.set({selector, 0, 0, 2, 'o', 'k'}), (bytes{0x00}));
        EXPECT_EQ(blade.text(selector), (bytes{0, 'o', 'k'})) << +selector;
    }
    EXPECT_EQ(blade.set({1, 0, 0, 0}), (bytes{0x00}));
    EXPECT_EQ(blade.text(1), (bytes{0})) << "an empty one";
}

TEST(simulated_system_info, numbers_the_blocks_of_one_text_in_a_byte_of_their_own)
{
    const bytes text = counting(30);
    info_blade blade;
    EXPECT_EQ(blade.set(joined({0xD0, 0, 0, 0, 30}, part(0, 13, text))), (bytes{0x00}));
    EXPECT_EQ(blade.set(joined({0xD0, 0, 1}, part(13, 16, text))), (bytes{0x00}));
    EXPECT_EQ(blade.set({0xD0, 0, 2, 30}), (bytes{0x00}));
    EXPECT_EQ(blade.text(0xD0, 13), joined({0}, text));
    EXPECT_EQ(blade.get(0xD0).size(), 19u);
}

TEST(simulated_system_info, leaves_zeros_where_a_block_came_short)
{
    info_blade blade;
    blade.set(joined({0xD0, 0, 0, 0, 30}, bytes(13, 'a')));
    blade.set(joined({0xD0, 0, 1}, bytes(15, 'b')));
    blade.set({0xD0, 0, 2, 'c'});
    EXPECT_EQ(from(27, blade.text(0xD0, 13)), (bytes{'b', 'b', 0, 'c'})) << "behind 13 and 13";
}

TEST(simulated_system_info, keeps_bytes_behind_their_number)
{
    info_blade blade;
    for (uint8_t selector = 0xC0; selector <= 0xC7; ++selector) {
        EXPECT_EQ(blade.get(selector), (bytes{0x00, 0x11, 0}));
        EXPECT_EQ(blade.set({selector, 3, selector, 8, 9}), (bytes{0x00}));
        EXPECT_EQ(blade.get(selector), (bytes{0x00, 0x11, 3, selector, 8, 9}));
    }
    EXPECT_EQ(blade.set({0xC0, 3, 8, 9}), (bytes{0xC7}));
}

TEST(simulated_system_info, keeps_bytes_and_texts_that_are_read_raw)
{
    info_blade blade;
    for (const uint8_t selector : bytes{0xE2, 0xE5, 0xFA}) {
        EXPECT_EQ(blade.get(selector), (bytes{0x00, 0x11}));
        EXPECT_EQ(blade.set({selector, 7, 8, 9}), (bytes{0x00}));
        EXPECT_EQ(blade.get(selector), (bytes{0x00, 0x11, 7, 8, 9}));
    }
    for (const uint8_t selector : bytes{0xF2, 0xF3}) {
        EXPECT_EQ(blade.set({selector, 0, 0, 2, 'o', 'k'}), (bytes{0x00}));
        EXPECT_EQ(blade.get(selector), (bytes{0x00, 0x11, 'o', 'k'}));
    }
}

TEST(simulated_system_info, counts_its_parts_before_it_lists_them)
{
    info_blade blade;
    EXPECT_EQ(blade.get(0xDA, 0, {0, 0}), (bytes{0x00, 0x11, 3}));
    EXPECT_EQ(blade.get(0xDA, 0, {4, 3}), (bytes{0x00, 0x11, 3, 0, 1, 2}));
    EXPECT_EQ(blade.get(0xDA, 0, {255, 0}), (bytes{0x00, 0x11, 3, 0, 1, 2}));
    EXPECT_EQ(blade.get(0xDA), (bytes{0x00, 0x11, 3}));
    EXPECT_EQ(blade.set({0xDA, 0, 0}), (bytes{0x82}));
}

TEST(simulated_system_info, lists_interfaces_one_for_each_set)
{
    info_blade blade;
    EXPECT_EQ(blade.get(0xD4, 1), (bytes{0x00, 0x11, 2, 1, 0x02, 0x52, 0x55, 0x4B, 7, 0x10}));
    EXPECT_EQ(blade.get(0xD4, 2), (bytes{0x00, 0x11, 2, 2, 0x02, 0x52, 0x55, 0x4B, 7, 0x20}));
    EXPECT_EQ(blade.get(0xD5, 2), (bytes{0x00, 0x11, 2, 2, 0x02, 0x52, 0x55, 0x4B, 7, 0x40}));
    EXPECT_EQ(blade.get(0xD4, 0), (bytes{0xC9}));
    EXPECT_EQ(blade.get(0xD4, 3), (bytes{0xC9}));
    EXPECT_EQ(blade.set({0xD5, 0, 0}), (bytes{0x82}));
}

TEST(simulated_system_info, is_set_by_one_at_a_time)
{
    info_blade blade;
    EXPECT_EQ(blade.set({0, 1}), (bytes{0x00}));
    EXPECT_EQ(blade.set({0, 1}), (bytes{0x81}));
    EXPECT_EQ(blade.get(0), (bytes{0x00, 0x11, 1}));
    EXPECT_EQ(blade.set({0, 0}), (bytes{0x00}));
}

TEST(simulated_system_info, refuses_what_it_does_not_have)
{
    info_blade blade;
    for (const uint8_t selector : bytes{0x05, 0x40, 0xBF, 0xC8, 0xD2, 0xE1, 0xFF}) {
        EXPECT_EQ(blade.get(selector), (bytes{0x80}));
        EXPECT_EQ(blade.set({selector, 0, 0, 0}), (bytes{0x80}));
    }
    EXPECT_EQ(blade.get(1, 0, {0}), (bytes{0xC7}));
    EXPECT_EQ(blade.ask(0x06, 0x59, {0x80, 1, 0, 0}), (bytes{0x00, 0x11})) << "the revision alone";
    EXPECT_EQ(blade.ask(0x06, 0x59, {0x01, 1, 0, 0}), (bytes{0xCC}));
}

} // namespace

} // namespace chassisd::simulated
