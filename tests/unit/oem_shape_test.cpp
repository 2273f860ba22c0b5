// What every row of every table of the chassis's own commands has to do.

#include "oem_shape.h"

#include <cstdint>

namespace
{

const blade_location at = blade(5);

events joined(events head, const events &middle, const events &tail)
{
    head.insert(head.end(), middle.begin(), middle.end());
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

uint32_t length_of(const oem_row &row)
{
    return static_cast<uint32_t>(0x18 + row.payload.size());
}

// The exchange as it goes when the service does its part, and as it ends with status 0x5001.
events exchanged(const oem_row &row)
{
    return {attached(), sent(length_of(row)),
            received(whole_platform::first_index, 500, row.capacity), detached()};
}

events unattached()
{
    return {attached(), error_line("attach_ruk_shm returned 20481 (0x00005001)\n")};
}

events unsent(const oem_row &row)
{
    return {attached(), sent(length_of(row)),
            error_line(
                formatted("pid %d send_ruk_command returned 20481 (0x00005001)\n", this_thread())),
            error_line(formatted("    idx 0    len %u   comp 4   \n", length_of(row))), detached()};
}

events unreceived(const oem_row &row)
{
    return {attached(),
            sent(length_of(row)),
            received(whole_platform::first_index, 500, row.capacity),
            error_line(formatted("pid %d receive_ruk_command returned 20481 (0x00005001)\n",
                                 this_thread())),
            error_line("    idx 1001    maxTO 500 ticks  comp 4  \n"),
            detached()};
}

bytes answer_with(const oem_row &row, uint8_t completion_code)
{
    bytes answer = row.answer;
    answer[0] = completion_code;
    return answer;
}

bytes zeros(const oem_row &row)
{
    return bytes(row.output.size());
}

// The output of a call that was refused.
void expect_left_or_cleared(const oem_row &row, const outcome &seen)
{
    if (row.clears_output_first)
        EXPECT_EQ(hex(seen.output), hex(zeros(row)));
    else
        EXPECT_TRUE(seen.untouched);
    EXPECT_TRUE(seen.guards_hold);
}

// The output of a call that did not get through, where the answer's record held `left`.
void expect_unreached(const oem_row &row, const outcome &seen, const bytes &left)
{
    if (row.writes_output_if_unreached)
        EXPECT_EQ(hex(seen.output), hex(left));
    else
        expect_left_or_cleared(row, seen);
    EXPECT_TRUE(seen.guards_hold);
}

} // namespace

TEST_P(oem_shape, sends_its_request_hands_over_the_answer_and_logs_what_it_did)
{
    const oem_row &row = GetParam();
    platform.expects(at, row.netfn_cmd, row.payload).answers(row.answer);
    litter_the_stack();
    const outcome seen = row.call(&at);
    EXPECT_EQ(seen.result, 0);
    EXPECT_EQ(hex(seen.output), hex(row.output));
    EXPECT_TRUE(seen.guards_hold);
    EXPECT_EQ(platform.journal(), joined(row.before, exchanged(row), row.after_success));
}

TEST_P(oem_shape, copies_all_four_bytes_of_the_location)
{
    const blade_location there = {0xFE, 0x02, {0x80, 0x7F}};
    platform.expects(there, GetParam().netfn_cmd, GetParam().payload).answers(GetParam().answer);
    EXPECT_EQ(GetParam().call(&there).result, 0);
}

TEST_P(oem_shape, takes_a_refusal_as_it_is_to)
{
    const oem_row &row = GetParam();
    platform.expects(at, row.netfn_cmd, row.payload).answers(answer_with(row, 0xC1));
    const outcome seen = row.call(&at);
    EXPECT_EQ(seen.result, row.refusal_is_a_success ? 0 : 0xC1);
    expect_left_or_cleared(row, seen);
    EXPECT_EQ(platform.journal(), joined(row.before, exchanged(row), row.after_refusal));
}

TEST_P(oem_shape, takes_a_refusal_that_is_a_completion_code_alone_for_the_same)
{
    const oem_row &row = GetParam();
    platform.expects(at, row.netfn_cmd, row.payload).answers({0xC1});
    const outcome seen = row.call(&at);
    EXPECT_EQ(seen.result, row.refusal_is_a_success ? 0 : 0xC1);
    expect_left_or_cleared(row, seen);
}

TEST_P(oem_shape, believes_the_completion_code_of_the_header)
{
    const oem_row &row = GetParam();
    platform.expects(at, row.netfn_cmd, row.payload)
        .answers(answer_with(row, 0xD5))
        .with_completion_code(0x00);
    EXPECT_EQ(hex(row.call(&at).output), hex(row.output));
    platform.expects(at, row.netfn_cmd, row.payload).answers(row.answer).with_completion_code(0xC1);
    EXPECT_EQ(row.call(&at).result, row.refusal_is_a_success ? 0 : 0xC1);
}

TEST_P(oem_shape, returns_the_status_of_a_failed_attach)
{
    platform.fails_to_attach(0x5001);
    litter_the_stack();
    const outcome seen = GetParam().call(&at);
    EXPECT_EQ(seen.result, 0x5001);
    expect_unreached(GetParam(), seen, zeros(GetParam()));
    EXPECT_EQ(platform.journal(),
              joined(GetParam().before, unattached(), GetParam().after_failure));
}

TEST_P(oem_shape, returns_the_status_of_a_failed_send)
{
    const oem_row &row = GetParam();
    platform.expects(at, row.netfn_cmd, row.payload).fails_to_send(0x5001);
    litter_the_stack();
    const outcome seen = row.call(&at);
    EXPECT_EQ(seen.result, 0x5001);
    expect_unreached(row, seen, zeros(row));
    EXPECT_EQ(platform.journal(), joined(row.before, unsent(row), row.after_failure));
}

TEST_P(oem_shape, returns_the_status_of_a_failed_receive)
{
    const oem_row &row = GetParam();
    platform.expects(at, row.netfn_cmd, row.payload).fails_to_receive(0x5001);
    litter_the_stack();
    const outcome seen = row.call(&at);
    EXPECT_EQ(seen.result, 0x5001);
    expect_unreached(row, seen, zeros(row));
    EXPECT_EQ(platform.journal(), joined(row.before, unreceived(row), row.after_failure));
}

TEST_P(oem_shape, does_not_trust_a_clean_answer_that_a_failed_receive_left)
{
    const oem_row &row = GetParam();
    platform.expects(at, row.netfn_cmd, row.payload).answers(row.answer).fails_to_receive(0x5001);
    const outcome seen = row.call(&at);
    EXPECT_EQ(seen.result, 0x5001);
    expect_unreached(row, seen, row.output);
    EXPECT_EQ(platform.journal(), joined(row.before, unreceived(row), row.after_failure));
}

TEST_P(oem_shape, prefers_one_of_the_two_when_a_failed_receive_left_a_completion_code)
{
    const oem_row &row = GetParam();
    platform.expects(at, row.netfn_cmd, row.payload)
        .answers(answer_with(row, 0xC1))
        .fails_to_receive(0x5001);
    const outcome seen = row.call(&at);
    EXPECT_EQ(seen.result, row.counts_first == preferred::status ? 0x5001 : 0xC1);
    expect_unreached(row, seen, row.output);
    EXPECT_EQ(platform.journal(),
              joined(row.before, unreceived(row), row.after_both.value_or(row.after_failure)));
}

TEST_P(oem_checked_location, is_refused_when_missing)
{
    const outcome seen = GetParam().call(nullptr);
    EXPECT_EQ(seen.result, 0x510a);
    expect_left_or_cleared(GetParam(), seen);
    EXPECT_EQ(platform.journal(), *GetParam().missing_location);
}

TEST_P(oem_unchecked_location_death, is_not_refused_when_missing_but_dereferenced)
{
    EXPECT_DEATH(GetParam().call(nullptr), "");
}

TEST_P(oem_location_of_zeros, is_sent_as_it_is)
{
    const blade_location nowhere{};
    platform.expects(nowhere, GetParam().netfn_cmd, GetParam().payload).answers(GetParam().answer);
    EXPECT_EQ(GetParam().call(&nowhere).result, 0);
}

TEST_P(oem_number_form, addresses_the_slot_in_the_low_byte_of_that_number)
{
    for (const int number : {5, 0x105, -1, 0}) {
        platform
            .expects({static_cast<uint8_t>(number), 0, {0, 0}}, GetParam().netfn_cmd,
                     GetParam().payload)
            .answers(GetParam().answer);
        litter_the_stack();
        const outcome seen = GetParam().call_by_number(number);
        EXPECT_EQ(seen.result, 0);
        EXPECT_EQ(hex(seen.output), hex(GetParam().output));
    }
}

TEST_P(oem_number_form, returns_what_the_location_form_returns)
{
    platform.expects(at, GetParam().netfn_cmd, GetParam().payload).answers({0xCB});
    EXPECT_EQ(GetParam().call_by_number(5).result, 0xCB);
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(GetParam().call_by_number(5).result, 0x5001);
}
