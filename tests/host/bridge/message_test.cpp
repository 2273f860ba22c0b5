#include <gtest/gtest.h>

#include "chassisd/bridge/rmcpplus/message.h"

namespace
{

using namespace chassisd;
using namespace chassisd::rmcpplus;

const request get_device_id{0x06, 0, 0x01, {}};
const request get_sel_entry{0x0A, 2, 0x43, {0x00, 0x00, 0x34, 0x12, 0x00, 0xFF}};

// To get_device_id, under number 5: completion code 0, then 0x20 and 0x81.
const bytes an_answer = {0x81, 0x1C, 0x63, 0x20, 0x14, 0x01, 0x00, 0x20, 0x81, 0x2A};

bytes with(size_t at, uint8_t byte)
{
    bytes changed = an_answer;
    changed[at] = byte;
    return changed;
}

// So that it adds up again.
bytes with_checksums(size_t at, uint8_t byte)
{
    bytes changed = with(at, byte);
    changed[2] = static_cast<uint8_t>(-(changed[0] + changed[1]));
    changed.back() = 0;
    for (size_t each = 3; each + 1 < changed.size(); ++each)
        changed.back() = static_cast<uint8_t>(changed.back() - changed[each]);
    return changed;
}

TEST(message, carries_a_request_between_two_checksums)
{
    EXPECT_EQ(message_of(get_device_id, 5), bytes({0x20, 0x18, 0xC8, 0x81, 0x14, 0x01, 0x6A}));
}

TEST(message, carries_lun_number_and_data)
{
    EXPECT_EQ(message_of(get_sel_entry, 63), bytes({0x20, 0x2A, 0xB6, 0x81, 0xFC, 0x43, 0x00, 0x00,
                                                    0x34, 0x12, 0x00, 0xFF, 0xFB}));
}

TEST(message, gives_completion_code_and_data_of_the_answer)
{
    EXPECT_EQ(answer_in(an_answer, get_device_id, 5), bytes({0x00, 0x20, 0x81}));
}

TEST(message, that_ends_too_early_is_no_answer)
{
    for (size_t length = 0; length < an_answer.size(); ++length)
        EXPECT_FALSE(answer_in({an_answer.begin(), an_answer.begin() + length}, get_device_id, 5));
}

TEST(message, that_does_not_add_up_is_no_answer)
{
    for (size_t at = 0; at < an_answer.size(); ++at)
        EXPECT_FALSE(answer_in(with(at, an_answer[at] ^ 0x40), get_device_id, 5)) << at;
}

TEST(message, to_something_else_is_no_answer)
{
    ASSERT_TRUE(answer_in(with_checksums(6, 0xC1), get_device_id, 5));
    const std::pair<size_t, uint8_t> changes[] = {{0, 0x82}, {1, 0x18}, {1, 0x24},
                                                  {3, 0x24}, {4, 0x18}, {5, 0x02}};
    for (const auto &[at, byte] : changes)
        EXPECT_FALSE(answer_in(with_checksums(at, byte), get_device_id, 5)) << at;
}

TEST(message, may_come_from_another_lun)
{
    EXPECT_TRUE(answer_in(with_checksums(4, 0x16), get_device_id, 5));
}

} // namespace
