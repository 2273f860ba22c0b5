#include <gtest/gtest.h>

#include "chassisd/bridge/rmcpplus/packet.h"
#include "chassisd/bridge/session.h"

namespace
{

using namespace chassisd;
using namespace chassisd::rmcpplus;

const bytes a_message = {0x20, 0x18, 0xC8, 0x81, 0x04, 0x01, 0x7A};

// Both ends of a session, in each cipher suite.
class packet : public testing::TestWithParam<int>
{
  protected:
    static void SetUpTestSuite() { set_up_cryptography(); }

    const cipher_suite &suite = *find_cipher_suite(static_cast<uint8_t>(GetParam()));
    const bytes key = bytes(20, 0x4B);
    sealer console{suite, key, 0x11223344, 0x55667788};
    sealer controller{suite, key, 0x55667788, 0x11223344};
};

INSTANTIATE_TEST_SUITE_P(suites, packet, testing::Values(3, 17),
                         [](const auto &suite) { return "suite_" + std::to_string(suite.param); });

TEST_P(packet, is_unsealed_at_the_other_end_whatever_its_length)
{
    for (size_t length = 0; length <= 64; ++length) {
        const bytes message(length, 0xA5);
        EXPECT_EQ(controller.unsealed(console.sealed(message)), message);
        EXPECT_EQ(console.unsealed(controller.sealed(message)), message);
    }
}

TEST_P(packet, begins_with_format_session_number_and_length)
{
    console.sealed(a_message);
    const bytes sealed = console.sealed(a_message);
    EXPECT_EQ(bytes(sealed.begin(), sealed.begin() + 16),
              bytes({0x06, 0x00, 0xFF, 0x07, 0x06, 0xC0, 0x88, 0x77, 0x66, 0x55, 0x02, 0x00, 0x00,
                     0x00, 0x20, 0x00}));
    EXPECT_EQ((sealed.size() - 4 - suite.signature_length) % 4, 0u);
}

TEST_P(packet, never_looks_the_same)
{
    const bytes one = console.sealed(a_message);
    const bytes other = console.sealed(a_message);
    EXPECT_NE(bytes(one.begin() + 16, one.begin() + 32),
              bytes(other.begin() + 16, other.begin() + 32));
}

TEST_P(packet, is_not_genuine_when_a_bit_of_it_was_changed)
{
    const bytes sealed = controller.sealed(a_message);
    for (size_t at = 4; at < sealed.size(); ++at) {
        bytes changed = sealed;
        changed[at] ^= 0x01;
        EXPECT_FALSE(console.unsealed(changed)) << at;
    }
    EXPECT_TRUE(console.unsealed(sealed));
}

TEST_P(packet, is_not_genuine_when_it_was_cut_or_made_longer)
{
    bytes sealed = controller.sealed(a_message);
    for (size_t length = 0; length < sealed.size(); ++length)
        EXPECT_FALSE(console.unsealed({sealed.begin(), sealed.begin() + length})) << length;
    sealed.push_back(0);
    EXPECT_FALSE(console.unsealed(sealed));
}

TEST_P(packet, is_taken_once)
{
    const bytes sealed = controller.sealed(a_message);
    EXPECT_TRUE(console.unsealed(sealed));
    EXPECT_FALSE(console.unsealed(sealed));
}

TEST_P(packet, older_than_the_last_one_is_not_taken)
{
    const bytes older = controller.sealed(a_message);
    const bytes newer = controller.sealed(a_message);
    EXPECT_TRUE(console.unsealed(newer));
    EXPECT_FALSE(console.unsealed(older));
}

TEST_P(packet, of_another_session_is_not_taken)
{
    sealer other{suite, key, 0x55667788, 0x11223345};
    EXPECT_FALSE(console.unsealed(other.sealed(a_message)));
}

TEST_P(packet, of_another_key_is_not_taken)
{
    sealer stranger{suite, bytes(20, 0x4C), 0x55667788, 0x11223344};
    EXPECT_FALSE(console.unsealed(stranger.sealed(a_message)));
}

TEST_P(packet, sent_back_to_its_sender_is_not_taken)
{
    EXPECT_FALSE(console.unsealed(console.sealed(a_message)));
}

TEST(open_packet, carries_a_payload_of_its_kind)
{
    const bytes payload = {0x01, 0x04, 0xAA};
    const bytes datagram = open_packet(rakp_message_1, payload);
    EXPECT_EQ(datagram, bytes({0x06, 0x00, 0xFF, 0x07, 0x06, 0x12, 0, 0, 0, 0, 0, 0, 0, 0, 0x03,
                               0x00, 0x01, 0x04, 0xAA}));
    EXPECT_EQ(payload_of_open_packet(datagram, rakp_message_1), payload);
    EXPECT_FALSE(payload_of_open_packet(datagram, rakp_message_2));
}

TEST(open_packet, that_ends_too_early_has_no_payload)
{
    const bytes datagram = open_packet(rakp_message_1, {0x01, 0x04, 0xAA});
    for (size_t length = 0; length < datagram.size(); ++length)
        EXPECT_FALSE(
            payload_of_open_packet({datagram.begin(), datagram.begin() + length}, rakp_message_1));
}

TEST(cipher_suites, of_our_own_sessions_are_two)
{
    for (int number = 0; number < 256; ++number)
        EXPECT_EQ(find_cipher_suite(static_cast<uint8_t>(number)) != nullptr,
                  number == 3 || number == 17);
}

} // namespace
