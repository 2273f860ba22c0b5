// The information of chassis and storage that passes through to a blade.

#include "ruk_ipmi/pass_through.h"

#include <array>
#include <climits>
#include <csignal>
#include <cstring>

#include "command_shape.h"

namespace
{

struct RUK_IPMI_PACKED request_block {
    uint8_t unused;
    uint8_t option;
    uint16_t data_length;
    uint16_t second_number;
    uint8_t data[482];
};

const request_block block = {0xEE, 0x0F, 0x0102, 0x0304, {0xD1, 0xD2, 0xD3, 0xD4}};
const bytes payload = {0x07, 0x81, 0x02, 0x01, 0x04, 0x03, 0xD1, 0xD2, 0xD3, 0xD4};

std::vector<command_row> pass_through_rows()
{
    return {row<134>(
                "process_zat_chassis_info",
                [](auto at, auto out) {
                    return ipmi_location_process_zat_chassis_info(at, 0x07, 0x81, 10, &block, out);
                },
                0x30CB, payload, counting_answer(136))
                .by_number<134>([](int blade, auto out) {
                    return ipmi_process_zat_chassis_info(blade, 0x07, 0x81, 10, &block, out);
                })};
}

INSTANTIATE_COMMAND_SHAPE(pass_through, pass_through_rows());

class chassis_info : public scripted_test
{
  protected:
    int pass(int request_len, const void *request)
    {
        uint8_t out[134];
        litter_the_stack();
        return ipmi_location_process_zat_chassis_info(&at, 0x07, 0x81, request_len, request, out);
    }

    const blade_location at = blade(5);
};

class storage_info : public scripted_test
{
  protected:
    outcome pass(int blade_num)
    {
        litter_the_stack();
        return command_row::seen<std::array<uint8_t, 262>>(
            [](int number, auto out) {
                return ipmi_process_zat_storage_info(number, 0x07, 0x81, 10, &block, out->data());
            },
            blade_num);
    }

    scripted_exchange &expects_info() { return platform.expects(blade(5), 0x30CB, payload); }
};

using chassis_info_death = chassis_info;
using storage_info_death = storage_info;

} // namespace

TEST_F(chassis_info, takes_a_block_at_an_odd_address)
{
    alignas(4) uint8_t memory[11];
    memcpy(memory + 1, &block, 10);
    platform.expects(at, 0x30CB, payload);
    EXPECT_EQ(pass(10, memory + 1), 0);
}

TEST_F(chassis_info, sends_482_bytes_of_data_at_once)
{
    request_block longest = block;
    const bytes data = counting(482);
    memcpy(longest.data, data.data(), data.size());
    platform.expects(at, 0x30CB, joined({0x07, 0x81, 0x02, 0x01, 0x04, 0x03}, data));
    EXPECT_EQ(pass(488, &longest), 0);
    EXPECT_EQ(platform.calls().at(1), sent(512));
}

TEST_F(chassis_info, trusts_the_length_of_the_request_and_not_that_of_the_data)
{
    const request_block claiming = {0, 0, 0xFFFF, 0, {0xD1}};
    platform.expects(at, 0x30CB, {0x07, 0x81, 0xFF, 0xFF, 0x00, 0x00, 0xD1});
    EXPECT_EQ(pass(7, &claiming), 0);
}

TEST_F(chassis_info, sends_the_head_alone_or_less_for_a_request_without_data)
{
    for (uint8_t length = 0; length <= 6; ++length) {
        platform.expects(at, 0x30CB, bytes_at(payload.data(), length));
        EXPECT_EQ(pass(length, bytes_at(&block, 6).data()), 0);
    }
}

TEST_F(chassis_info, copies_no_data_for_a_negative_length)
{
    for (const int length : {-1, INT_MIN}) {
        platform.fails_to_attach(0x5001);
        EXPECT_EQ(pass(length, bytes_at(&block, 6).data()), 0x5001);
    }
}

TEST_F(chassis_info_death, a_request_longer_than_its_room_ends_the_process)
{
    platform.echo_log();
    for (const int length : {489, INT_MAX})
        EXPECT_EXIT(pass(length, &block), ::testing::KilledBySignal(SIGABRT),
                    formatted("^error: %d bytes do not fit", length - 6));
}

TEST_F(chassis_info_death, a_missing_block_is_not_refused_but_dereferenced)
{
    EXPECT_DEATH(pass(10, nullptr), "");
}

TEST_F(storage_info, passes_the_block_and_hands_over_262_bytes)
{
    const bytes answer = counting_answer(264);
    expects_info().answers(answer);
    const outcome seen = pass(5);
    EXPECT_EQ(seen.result, 0);
    EXPECT_EQ(hex(seen.output), hex(bytes_at(answer.data(), 262)));
    EXPECT_TRUE(seen.guards_hold);
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x18 + 10), received(1001, 500, 483), detached()}));
}

TEST_F(storage_info, goes_to_the_slot_in_the_low_byte_of_the_number)
{
    for (const int number : {5, 0x105, -1, 0}) {
        platform.expects({static_cast<uint8_t>(number), 0, {0, 0}}, 0x30CB, payload);
        EXPECT_EQ(pass(number).result, 0);
    }
}

TEST_F(storage_info, gives_zeros_for_what_a_short_answer_lacks)
{
    expects_info().answers({0x00, 0x01});
    const outcome seen = pass(5);
    EXPECT_EQ(seen.result, 0);
    EXPECT_EQ(hex(seen.output), hex(joined({0x00, 0x01}, bytes(260))));
}

TEST_F(storage_info, returns_a_refusal_and_hands_it_over)
{
    expects_info().answers({0xC1, 0x01});
    const outcome seen = pass(5);
    EXPECT_EQ(seen.result, 0xC1);
    EXPECT_EQ(hex(seen.output), hex(joined({0xC1, 0x01}, bytes(260))));
    EXPECT_EQ(platform.log(), events{});
}

TEST_F(storage_info, returns_the_status_of_a_failure_with_an_output_of_zeros)
{
    platform.fails_to_attach(0x5001);
    expects_info().fails_to_send(0x5002);
    expects_info().fails_to_receive(0x5007);
    for (const int status : {0x5001, 0x5002, 0x5007}) {
        const outcome seen = pass(5);
        EXPECT_EQ(seen.result, status);
        EXPECT_EQ(seen.output, bytes(262));
        EXPECT_TRUE(seen.guards_hold);
    }
}

TEST_F(storage_info, prefers_the_status_to_what_a_failed_receive_left)
{
    expects_info().answers({0xC1, 0x01}).fails_to_receive(0x5007);
    const outcome seen = pass(5);
    EXPECT_EQ(seen.result, 0x5007);
    EXPECT_EQ(hex(seen.output), hex(joined({0xC1, 0x01}, bytes(260))));
}

TEST_F(storage_info, refuses_a_missing_output_and_tells_the_arguments)
{
    EXPECT_EQ(ipmi_process_zat_storage_info(0x105, 0x07, 0x81, 10, &block, nullptr), 0x510a);
    EXPECT_EQ(platform.journal(),
              (events{error_line("ipmi_process_zat_storage_info(): Invalid parameter to IPMI "
                                 "interface\n"),
                      debug_line("ipmi_process_zat_storage_info(): blade_num=261, cmd=0x07 "
                                 "sub_cmd=0x81 option=0x0F data_length=258\n")}));
}

TEST_F(storage_info_death, a_missing_block_is_not_refused_but_dereferenced)
{
    uint8_t out[262];
    for (uint8_t *output : {out, static_cast<uint8_t *>(nullptr)})
        EXPECT_DEATH(ipmi_process_zat_storage_info(5, 0x07, 0x81, 10, nullptr, output), "");
}
