// LLDP connection information, whole and in chunks.

#include "ruk_ipmi/lldp.h"

#include <algorithm>

#include "oem_shape.h"

namespace
{

event returns(int result)
{
    return debug_line(
        formatted("ipmi_location_set_lldp_connection_info(): Returning with rc =%d\n", result));
}

event refused(int completion_code)
{
    return os_log_line(formatted("ipmi_location_set_lldp_connection_info: rc = 0, "
                                 "response->comp_code =%d \n",
                                 completion_code));
}

const events refusal_of_arguments = {
    error_line("Invalid parameter to IPMI interface\n"),
    os_log_line("ipmi_location_set_lldp_connection_info: Invalid parameter to IPMI interface\n")};

const uint8_t three_bytes[] = {0xA1, 0xA2, 0xA3};

std::vector<oem_row> lldp_rows()
{
    oem_row row = oem_command(
        "set_lldp_connection_info",
        [](auto at) { return ipmi_location_set_lldp_connection_info(at, three_bytes, 3); }, 0x30D0,
        {0x00, 0x24, 0x05, 0x00, 0x00, 0x00, 0x05, 0x00, 0xA1, 0xA2, 0xA3});
    row.after_success = {returns(0)};
    row.after_refusal = {refused(193), returns(193)};
    row.after_failure = {returns(20481)};
    row.missing_location = refusal_of_arguments;
    return {row};
}

INSTANTIATE_OEM_SHAPE(lldp, lldp_rows());

class lldp : public scripted_test
{
  protected:
    // One request that carries `value` from its byte `offset` on.
    scripted_exchange &expects_chunk(size_t offset, const bytes &value)
    {
        return platform.expects(
            at, 0x30D0,
            joined({0x00, 0x24, low(value.size()), high(value.size()), low(offset), high(offset)},
                   value));
    }

    // The requests for a long value: 130 bytes of its stream at first, then 128 at a time.
    void expects_stream(const bytes &info)
    {
        bytes stream = joined({low(info.size()), high(info.size())}, info);
        stream.resize(info.size());
        size_t offset = 0;
        for (size_t room = 130; offset < stream.size(); room = 128) {
            const size_t length = std::min(room, stream.size() - offset);
            expects_chunk(offset, bytes_at(stream.data() + offset, length));
            offset += length;
        }
    }

    int set(const bytes &info)
    {
        return ipmi_location_set_lldp_connection_info(&at, info.data(),
                                                      static_cast<uint16_t>(info.size()));
    }

    const blade_location at = blade(5);
};

using lldp_in_three_chunks = lldp;

} // namespace

TEST_F(lldp, refuses_missing_information_of_whatever_length)
{
    EXPECT_EQ(ipmi_location_set_lldp_connection_info(&at, nullptr, 3), 0x510a);
    EXPECT_EQ(platform.journal(), refusal_of_arguments);
    EXPECT_EQ(ipmi_location_set_lldp_connection_info(&at, nullptr, 0), 0x510a);
    EXPECT_EQ(ipmi_location_set_lldp_connection_info(nullptr, three_bytes, 0), 0x510a);
    EXPECT_EQ(platform.calls(), events{});
}

TEST_F(lldp, of_no_length_sends_nothing)
{
    EXPECT_EQ(ipmi_location_set_lldp_connection_info(&at, three_bytes, 0), 0);
    EXPECT_EQ(platform.journal(), events{returns(0)});
}

TEST_F(lldp, of_up_to_128_bytes_goes_whole)
{
    for (const size_t length : {1, 127, 128}) {
        const bytes info = counting(length);
        expects_chunk(0, joined({low(length + 2), 0x00}, info));
        litter_the_stack();
        EXPECT_EQ(set(info), 0);
    }
    EXPECT_EQ(platform.calls().at(9), sent(0x18 + 136));
}

TEST_F(lldp, of_129_and_130_bytes_ends_with_the_first_chunk)
{
    for (const size_t length : {129, 130}) {
        const bytes info = counting(length);
        expects_chunk(0, joined({low(length), 0x00}, bytes_at(info.data(), 128)));
        platform.forget();
        EXPECT_EQ(set(info), 0);
        EXPECT_EQ(platform.calls().at(1), sent(0x18 + 136));
        EXPECT_EQ(platform.log(), events{returns(0)});
    }
}

TEST_F(lldp, of_300_bytes_goes_in_three_chunks_without_its_last_two)
{
    const bytes info = counting(300);
    platform.expects(
        at, 0x30D0,
        joined({0x00, 0x24, 0x82, 0x00, 0x00, 0x00, 0x2C, 0x01}, bytes_at(info.data(), 128)));
    platform.expects(
        at, 0x30D0, joined({0x00, 0x24, 0x80, 0x00, 0x82, 0x00}, bytes_at(info.data() + 128, 128)));
    platform.expects(at, 0x30D0,
                     joined({0x00, 0x24, 0x2A, 0x00, 0x02, 0x01}, bytes_at(info.data() + 256, 42)));
    EXPECT_EQ(set(info), 0);
    EXPECT_EQ(
        platform.journal(),
        (events{attached(), sent(0x18 + 136), received(1001, 500, 483), detached(), attached(),
                sent(0x18 + 134), received(1002, 500, 483), detached(), attached(), sent(0x18 + 48),
                received(1003, 500, 483), detached(), returns(0)}));
}

TEST_F(lldp, of_any_other_length_goes_as_one_stream)
{
    for (const size_t length : {131, 257, 258, 259, 386, 387, 65535}) {
        const bytes info = counting(length);
        expects_stream(info);
        EXPECT_EQ(set(info), 0) << length;
    }
}

TEST_F(lldp_in_three_chunks, forgets_a_failure_once_the_last_was_clean)
{
    const bytes info = counting(300);
    const bytes first = joined({0x2C, 0x01}, bytes_at(info.data(), 128));
    expects_chunk(0, first).answers({0xC1});
    expects_chunk(130, bytes_at(info.data() + 128, 128)).answers({0xC2});
    expects_chunk(258, bytes_at(info.data() + 256, 42));
    EXPECT_EQ(set(info), 0);
    EXPECT_EQ(platform.log(), (events{refused(0xC1), refused(0xC2), returns(0)}));
}

TEST_F(lldp_in_three_chunks, goes_on_after_the_service_failed)
{
    const bytes info = counting(300);
    platform.fails_to_attach(0x5001);
    expects_chunk(130, bytes_at(info.data() + 128, 128)).answers({0xC1}).fails_to_receive(0x5002);
    expects_chunk(258, bytes_at(info.data() + 256, 42));
    EXPECT_EQ(set(info), 0);
    EXPECT_EQ(platform.log().back(), returns(0));
}

TEST_F(lldp_in_three_chunks, returns_the_result_of_the_last)
{
    const bytes info = counting(300);
    const bytes first = joined({0x2C, 0x01}, bytes_at(info.data(), 128));
    for (const bool refuses : {true, false}) {
        expects_chunk(0, first).answers({0xC2});
        expects_chunk(130, bytes_at(info.data() + 128, 128));
        scripted_exchange &last = expects_chunk(258, bytes_at(info.data() + 256, 42));
        refuses ? last.answers({0xC1}) : last.fails_to_send(0x5002);
        EXPECT_EQ(set(info), refuses ? 0xC1 : 0x5002);
        EXPECT_EQ(platform.log().back(), returns(refuses ? 0xC1 : 0x5002));
    }
}
