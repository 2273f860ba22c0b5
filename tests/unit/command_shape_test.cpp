// What every row of every family's table has to do.

#include "command_shape.h"

#include <cstdint>

namespace
{

const events refusal_of_arguments = {error_line("Invalid parameter to IPMI interface\n")};

bytes resized(bytes data, size_t size)
{
    data.resize(size);
    return data;
}

// What the caller holds after the row's answer came with another completion code.
bytes output_with(const command_row &row, uint8_t completion_code, bool converted)
{
    bytes output = converted ? row.output : resized(row.answer, row.output.size());
    output[0] = completion_code;
    return output;
}

bytes after_refusal(const command_row &row, uint8_t completion_code)
{
    return output_with(row, completion_code, row.converts == conversion::always);
}

bytes after_failure(const command_row &row, uint8_t completion_code)
{
    return output_with(row, completion_code, row.converts != conversion::after_success);
}

bytes answer_with(const command_row &row, uint8_t completion_code)
{
    bytes answer = row.answer;
    answer[0] = completion_code;
    return answer;
}

} // namespace

void litter_the_stack()
{
    volatile uint8_t litter[4096];
    for (volatile uint8_t &byte : litter)
        byte = 0xEE;
}

TEST_P(command_shape, sends_its_request_and_hands_over_the_answer)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers(GetParam().answer);
    litter_the_stack();
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0);
    EXPECT_EQ(hex(seen.output), hex(GetParam().output));
    EXPECT_TRUE(seen.guards_hold);
    RecordProperty("output", hex(seen.output));
}

TEST_P(command_shape, waits_500_ticks_with_room_for_483_bytes_in_one_exchange)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers(GetParam().answer);
    GetParam().call(&at);
    const auto length = static_cast<uint32_t>(0x18 + GetParam().payload.size());
    EXPECT_EQ(platform.calls(),
              (events{attached(), sent(length), received(whole_platform::first_index, 500, 483),
                      detached()}));
}

TEST_P(command_shape, copies_all_four_bytes_of_the_location)
{
    const blade_location at = {0xFE, 0x02, {0x80, 0x7F}};
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers(GetParam().answer);
    EXPECT_EQ(GetParam().call(&at).result, 0);
}

TEST_P(command_shape, sends_to_a_location_of_zeros_too)
{
    const blade_location nowhere{};
    platform.expects(nowhere, GetParam().netfn_cmd, GetParam().payload).answers({0x00});
    EXPECT_EQ(GetParam().call(&nowhere).result, 0);
}

TEST_P(command_shape, gives_zeros_for_what_a_short_answer_lacks)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers({0x00});
    litter_the_stack();
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0);
    EXPECT_EQ(seen.output, bytes(GetParam().output.size()));
}

TEST_P(command_shape, hands_over_zeros_for_an_answer_without_data)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers({});
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0);
    EXPECT_EQ(seen.output, bytes(GetParam().output.size()));
}

TEST_P(command_shape, takes_no_notice_of_what_a_long_answer_adds)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers(bytes(455, 0x00));
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0);
    EXPECT_TRUE(seen.guards_hold);
}

TEST_P(command_shape, returns_a_refusal_and_hands_it_over_as_received)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload)
        .answers(answer_with(GetParam(), 0xC1));
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0xC1);
    EXPECT_EQ(hex(seen.output), hex(after_refusal(GetParam(), 0xC1)));
    EXPECT_TRUE(seen.guards_hold);
}

TEST_P(command_shape, believes_the_completion_code_of_the_header)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload)
        .answers({0xC1})
        .with_completion_code(0xD5);
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0xD5);
    EXPECT_EQ(seen.output[0], 0xC1);
}

TEST_P(command_shape, returns_the_status_of_a_failed_attach_with_an_output_of_zeros)
{
    const blade_location at = blade(5);
    platform.fails_to_attach(0x5001);
    litter_the_stack();
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0x5001);
    EXPECT_EQ(seen.output, bytes(GetParam().output.size()));
    EXPECT_TRUE(seen.guards_hold);
}

TEST_P(command_shape, returns_the_status_of_a_failed_send_with_an_output_of_zeros)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).fails_to_send(0x5002);
    litter_the_stack();
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0x5002);
    EXPECT_EQ(seen.output, bytes(GetParam().output.size()));
    EXPECT_TRUE(seen.guards_hold);
}

TEST_P(command_shape, returns_the_status_of_a_failed_receive_with_an_output_of_zeros)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).fails_to_receive(0x5007);
    litter_the_stack();
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0x5007);
    EXPECT_EQ(seen.output, bytes(GetParam().output.size()));
    EXPECT_TRUE(seen.guards_hold);
}

TEST_P(command_shape, hands_over_what_a_failed_receive_left_and_prefers_its_status)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload)
        .answers(answer_with(GetParam(), 0xC1))
        .fails_to_receive(0x5007);
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0x5007);
    EXPECT_EQ(hex(seen.output), hex(after_failure(GetParam(), 0xC1)));
}

TEST_P(command_shape, does_not_take_what_a_failed_receive_left_for_a_success)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload)
        .answers(GetParam().answer)
        .fails_to_receive(0x5007);
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0x5007);
    EXPECT_EQ(hex(seen.output), hex(after_failure(GetParam(), 0x00)));
}

TEST_P(command_shape, refuses_a_missing_output)
{
    const blade_location at = blade(5);
    EXPECT_EQ(GetParam().call_without_output(&at), 0x510a);
    EXPECT_EQ(platform.journal(), refusal_of_arguments);
}

TEST_P(command_shape, refuses_a_missing_output_before_it_looks_at_the_location)
{
    EXPECT_EQ(GetParam().call_without_output(nullptr), 0x510a);
    EXPECT_EQ(platform.journal(), refusal_of_arguments);
}

TEST_P(command_shape, writes_no_log_line_unless_it_is_one_of_those_that_do)
{
    const blade_location at = blade(5);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers(GetParam().answer);
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers({0xC1});
    GetParam().call(&at);
    GetParam().call(&at);
    EXPECT_EQ(platform.log().empty(), GetParam().is_silent);
}

TEST_P(checked_location, is_refused_when_missing)
{
    const outcome seen = GetParam().call(nullptr);
    EXPECT_EQ(seen.result, 0x510a);
    EXPECT_TRUE(seen.untouched);
    EXPECT_EQ(platform.journal(), refusal_of_arguments);
}

TEST_P(unchecked_location_death, is_not_refused_when_missing_but_dereferenced)
{
    EXPECT_DEATH(GetParam().call(nullptr), "");
}

TEST_P(number_form, addresses_the_slot_of_that_number)
{
    platform.expects({5, 0, {0, 0}}, GetParam().netfn_cmd, GetParam().payload)
        .answers(GetParam().answer);
    const outcome seen = GetParam().call_by_number(5);
    EXPECT_EQ(seen.result, 0);
    EXPECT_EQ(hex(seen.output), hex(GetParam().output));
}

TEST_P(number_form, takes_the_low_byte_of_a_larger_number)
{
    platform.expects(blade(5), GetParam().netfn_cmd, GetParam().payload);
    EXPECT_EQ(GetParam().call_by_number(0x105).result, 0);
    platform.expects(blade(0xFF), GetParam().netfn_cmd, GetParam().payload);
    EXPECT_EQ(GetParam().call_by_number(-1).result, 0);
}

TEST_P(number_form, sends_blade_0_as_it_is)
{
    platform.expects({0, 0, {0, 0}}, GetParam().netfn_cmd, GetParam().payload);
    EXPECT_EQ(GetParam().call_by_number(0).result, 0);
}

TEST_P(number_form, returns_what_the_location_form_returns)
{
    platform.expects(blade(5), GetParam().netfn_cmd, GetParam().payload).answers({0xCB});
    EXPECT_EQ(GetParam().call_by_number(5).result, 0xCB);
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(GetParam().call_by_number(5).result, 0x5001);
}
