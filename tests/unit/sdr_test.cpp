// The commands of the sensor data record repository.

#include "ruk_ipmi/sdr.h"

#include <numeric>

#include "command_shape.h"

namespace
{

// A record with 255 different bytes of data behind completion code and next record ID.
sdr_record long_record()
{
    sdr_record record{0x00, 0x1235, {}};
    std::iota(record.data, record.data + sizeof record.data, uint8_t{1});
    return record;
}

bytes long_answer()
{
    const sdr_record record = long_record();
    return joined({0x00, 0x35, 0x12}, bytes_at(record.data, sizeof record.data));
}

std::vector<command_row> sdr_rows()
{
    return {
        row<sdr_repository_info>("get_sdr_info", ipmi_location_get_sdr_info, 0x0A20, {},
                                 {0x00, 0x51, 0x34, 0x12, 0x78, 0x56, 0x01, 0x02, 0x03, 0x04, 0x05,
                                  0x06, 0x07, 0x08, 0x8F},
                                 {0x00, 0x51, 0x1234, 0x5678, 0x04030201, 0x08070605, 0x8F}),
        row<sdr_reservation>("reserve_sdr", ipmi_location_reserve_sdr, 0x0A22, {},
                             {0x00, 0x0A, 0x00}, {0x00, 0x000A})
            .leaves_location_unchecked()
            .by_number(ipmi_reserve_sdr),
        row<sdr_record>(
            "get_sdr",
            [](auto at, auto out) { return ipmi_location_get_sdr(at, 0x1234, 0x0005, out); },
            0x0A23, {0x34, 0x12, 0x05, 0x00, 0x00, 0xFF}, long_answer(), long_record()),
    };
}

INSTANTIATE_COMMAND_SHAPE(sdr, sdr_rows());

using sdr = scripted_test;

} // namespace

TEST_F(sdr, a_record_ends_where_its_answer_ended_and_zeros_follow)
{
    const blade_location at = blade(5);
    platform.expects(at, 0x0A23, {0, 0, 0, 0, 0, 0xFF}).answers({0x00, 0xFF, 0xFF, 0x0A, 0x0B});
    guarded<sdr_record> out;
    EXPECT_EQ(ipmi_location_get_sdr(&at, 0, 0, out.get()), 0);
    EXPECT_EQ(out->next_record_id, 0xFFFF);
    EXPECT_EQ(out->data[0], 0x0A);
    EXPECT_EQ(out->data[1], 0x0B);
    EXPECT_EQ(bytes_at(out->data + 2, 253), bytes(253));
}

TEST_F(sdr, a_record_does_not_depend_on_the_length_that_the_answer_claims)
{
    const blade_location at = blade(5);
    platform.expects(at, 0x0A23, {0, 0, 0, 0, 0, 0xFF}).answers(long_answer()).with_data_len(3);
    guarded<sdr_record> out;
    EXPECT_EQ(ipmi_location_get_sdr(&at, 0, 0, out.get()), 0);
    EXPECT_EQ(hex(out.content()), hex(bytes_of(long_record())));
}
