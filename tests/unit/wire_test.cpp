// Numbers as payloads carry them, the same on every host.

#include "commands/wire.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

using namespace ruk;
using ruk_ipmi_testing::bytes;
using ruk_ipmi_testing::bytes_at;

TEST(wire, loads_the_least_significant_byte_first)
{
    const uint8_t from[] = {0xFF, 0xFE, 0xDC, 0xBA, 0x98};
    EXPECT_EQ(load_le16(from + 1), 0xDCFE);
    EXPECT_EQ(load_le32(from + 1), 0x98BADCFEu);
}

TEST(wire, stores_the_least_significant_byte_first_and_nothing_else)
{
    uint8_t to[6] = {};
    store_le16(to + 1, 0xFEDC);
    EXPECT_EQ(bytes_at(to, sizeof to), (bytes{0, 0xDC, 0xFE, 0, 0, 0}));
    store_le32(to + 1, 0xFEDCBA98);
    EXPECT_EQ(bytes_at(to, sizeof to), (bytes{0, 0x98, 0xBA, 0xDC, 0xFE, 0}));
}

TEST(wire, reads_a_field_that_was_copied_as_it_came)
{
    const uint8_t came[] = {0x78, 0x56, 0x34, 0x12};
    uint16_t half;
    memcpy(&half, came, sizeof half);
    EXPECT_EQ(from_wire(half), 0x5678);
    uint32_t word;
    memcpy(&word, came, sizeof word);
    EXPECT_EQ(from_wire(word), 0x12345678u);
}

TEST(wire, keeps_the_extremes)
{
    for (const uint32_t value : {0u, 1u, 0x7FFFu, 0x8000u, 0xFFFFu, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        uint8_t field[4];
        store_le32(field, value);
        EXPECT_EQ(load_le32(field), value);
        store_le16(field, static_cast<uint16_t>(value));
        EXPECT_EQ(load_le16(field), value & 0xFFFF);
    }
}
