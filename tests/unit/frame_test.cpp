// The parts of which the commands' frame is made.

#include "commands/short_command.h"

#include <csignal>

#include "support/scripted_test.h"

using namespace ruk_ipmi_testing;

namespace
{

using frame = scripted_test;
using frame_death = scripted_test;

TEST_F(frame, appends_payload_fields_as_they_travel)
{
    const blade_location at = blade(5);
    const uint8_t text[] = {'a', 'b', 'c'};
    const ruk::command command(&at, 0x30D0, 0x12, ruk::le16{0x3456}, ruk::le32{0x789ABCDE},
                               ruk::block{text, sizeof text}, 0x1FF);
    EXPECT_EQ(bytes_at(command.request.data, command.request.data_len),
              (bytes{0x12, 0x56, 0x34, 0xDE, 0xBC, 0x9A, 0x78, 'a', 'b', 'c', 0xFF}));
}

TEST_F(frame, packs_a_short_payload_of_eight_bytes_in_the_same_order)
{
    const blade_location at = blade(5);
    uint8_t out = 0xEE;
    platform.expects(at, 0x30D0, {0x12, 0x56, 0x34, 0xDE, 0xBC, 0x9A, 0x78, 0xFF}).answers({0x00});
    const ruk::short_command command(&at, 0x30D0, 0x12, ruk::le16{0x3456}, ruk::le32{0x789ABCDE},
                                     0x1FF);
    EXPECT_EQ(command.fetch(&out), 0);
    EXPECT_EQ(out, 0x00);
}

TEST_F(frame, tells_a_refusal_from_a_failure)
{
    const blade_location at = blade(5);
    ruk::command command(&at, 0x0601);
    platform.expects(at, 0x0601).answers({0xC1});
    command.exchange();
    EXPECT_TRUE(command.refused());

    platform.expects(at, 0x0601).answers({0xC1}).fails_to_receive(0x5007);
    command.exchange();
    EXPECT_FALSE(command.refused());

    platform.expects(at, 0x0601).answers({0x00});
    command.exchange();
    EXPECT_FALSE(command.refused());
}

TEST_F(frame, waits_and_takes_as_much_as_a_command_asks_for)
{
    const blade_location at = blade(5);
    platform.expects(at, 0x0601).answers({0x00});
    ruk::command(&at, 0x0601).exchange(1000, 200);
    EXPECT_EQ(platform.calls().at(2), received(whole_platform::first_index, 1000, 200));
}

TEST_F(frame, copies_a_block_that_just_fits)
{
    const blade_location at = blade(5);
    const bytes block(IPMI_REQUEST_DATA_SIZE - 1, 0x77);
    const ruk::command command(&at, 0x30D0, 0x01, ruk::block{block.data(), block.size()});
    EXPECT_EQ(command.request.data_len, 488u);
    EXPECT_EQ(command.request.data[487], 0x77);
}

TEST_F(frame, takes_no_bytes_from_nowhere)
{
    const blade_location at = blade(5);
    const ruk::command command(&at, 0x30D0, ruk::block{nullptr, 0});
    EXPECT_EQ(command.request.data_len, 0u);
}

TEST_F(frame_death, a_block_too_long_for_its_record_ends_the_process)
{
    const blade_location at = blade(5);
    const bytes block(IPMI_REQUEST_DATA_SIZE, 0x77);
    platform.echo_log();
    EXPECT_EXIT(ruk::command(&at, 0x30D0, 0x01, ruk::block{block.data(), block.size()}),
                ::testing::KilledBySignal(SIGABRT),
                "^error: 488 bytes do not fit the 487 bytes left in the request record\\\\n");
}

} // namespace
