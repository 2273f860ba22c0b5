// Getting system information parameters that are no texts; what all have in common.

#include <algorithm>

#include "system_info_fixture.h"

namespace
{

const event refusal_of_arguments = error_line("Invalid parameter to IPMI interface\n");

class get_system_info_ex : public get_system_info
{
  protected:
    get_system_info_ex()
    {
        param->parameter = 0xD7;
        param->set_selector = 0x02;
        param->block_selector = 0x03;
        param->length = 2;
        param->data[0] = 0xB1;
        param->data[1] = 0xB2;
    }

    scripted_exchange &expects_get_ex()
    {
        return platform.expects(at, 0x0659, {0x00, 0xD7, 0x02, 0x03, 0xB1, 0xB2});
    }

    int get_ex() { return location_get_sys_info_ex(&at, param.get()); }

    // A failed call, which leaves the record alone and tells of it in its last line.
    void fails(int result, const char *what)
    {
        const bytes before = param.content();
        EXPECT_EQ(get_ex(), result);
        EXPECT_EQ(param.content(), before);
        EXPECT_EQ(platform.log().back(),
                  error_line(formatted("location_get_sys_info_ex command failed %s\n", what)));
    }

    guarded<sys_info_param> param;
};

} // namespace

// Other values.

TEST_F(get_system_info, hands_over_the_whole_answer_for_C0_to_C7)
{
    for (uint8_t parameter = 0xC0; parameter <= 0xC7; ++parameter) {
        expects_get(parameter).answers({0x00, 0x12, 0x34, 0x56, 0x78});
        EXPECT_EQ(get(parameter), 0);
        EXPECT_EQ(out.content(), joined({0x00, 0x12, 0x34, 0x56, 0x78}, bytes(254)));
    }
}

TEST_F(get_system_info, keeps_of_a_whole_answer_what_fits_the_record)
{
    const bytes answer = joined({0x00}, counting(300));
    for (const uint32_t claimed : {301u, 0xFFFFFFFFu}) {
        expects_get(0xC0).answers(answer).with_data_len(claimed);
        EXPECT_EQ(get(0xC0), 0);
        EXPECT_EQ(out.content(), bytes_at(answer.data(), 259));
        EXPECT_TRUE(out.guards_hold());
    }
}

TEST_F(get_system_info, asks_for_the_length_of_DA_first)
{
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 0, 0}).answers({0x00, 0x11, 3});
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 4, 3}).answers({0x00, 0x99, 3, 'a', 'b', 'c'});
    EXPECT_EQ(get(0xDA), 0);
    EXPECT_TRUE(holds(4, {3, 'a', 'b', 'c'}));
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x1E), received(1001, 500, 483), detached(), attached(),
                      sent(0x1E), received(1002, 500, 483), detached()}));
}

TEST_F(get_system_info, reads_up_to_255_bytes_of_DA)
{
    const bytes value = joined({254}, counting(300));
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 0, 0}).answers({0x00, 0x11, 254});
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 255, 254}).answers(joined({0x00, 0x11}, value));
    EXPECT_EQ(get(0xDA), 0);
    EXPECT_TRUE(holds(255, bytes_at(value.data(), 255)));
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 0, 0}).answers({0x00, 0x11, 255});
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 0, 255}).answers(joined({0x00, 0x11}, value));
    EXPECT_EQ(get(0xDA), 0);
    EXPECT_TRUE(holds(0, {}));
}

TEST_F(get_system_info, keeps_the_length_of_DA_where_its_value_did_not_come)
{
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 0, 0}).answers({0x00, 0x11, 3});
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 4, 3}).answers({0xC1});
    EXPECT_EQ(get(0xDA), 0xC1);
    EXPECT_TRUE(holds(4, {}));
    platform.expects(at, 0x0659, {0x00, 0xDA, 0, 0, 0, 0}).answers({0x00, 0x11, 3});
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(get(0xDA), 0x5001);
    EXPECT_TRUE(holds(4, {}));
}

TEST_F(get_system_info, puts_the_values_of_all_sets_of_D4_and_D5_behind_each_other)
{
    for (const uint8_t parameter : bytes{0xD4, 0xD5}) {
        expects_get(parameter, 1).answers({0x00, 0x11, 3, 'a', 'b'});
        expects_get(parameter, 2).answers({0x00, 0x99, 3, 'c'});
        expects_get(parameter, 3).answers({0x00, 0x99, 'd', 'e'});
        EXPECT_EQ(get(parameter), 0);
        EXPECT_TRUE(holds(7, {3, 'a', 'b', 3, 'c', 'd', 'e'}));
    }
    EXPECT_EQ(platform.calls().at(10), received(1003, 500, 483));
}

TEST_F(get_system_info, reads_one_set_where_there_are_no_more)
{
    for (const uint8_t sets : bytes{0, 1}) {
        expects_get(0xD4, 1).answers({0x00, 0x11, sets, 'a'});
        EXPECT_EQ(get(0xD4), 0);
        EXPECT_TRUE(holds(2, {sets, 'a'}));
    }
}

TEST_F(get_system_info, ends_with_the_set_that_failed_and_keeps_those_before)
{
    expects_get(0xD4, 1).answers({0x00, 0x11, 4, 'a'});
    expects_get(0xD4, 2).answers({0x00, 0x11, 'b'});
    expects_get(0xD4, 3).answers({0xC1, 0x11, 'c'});
    EXPECT_EQ(get(0xD4), 0xC1);
    EXPECT_TRUE(holds(3, {4, 'a', 'b'}));
}

TEST_F(get_system_info, hands_over_whatever_stands_in_the_place_of_the_completion_code)
{
    expects_get(0x05).answers({0x42, 0x11, 'a'}).with_completion_code(0);
    EXPECT_EQ(get(0x05), 0);
    EXPECT_EQ(out->revision, 0x42);
}

TEST_F(get_system_info, passes_over_a_set_that_is_shorter_than_what_stands_before_a_value)
{
    for (const uint32_t claimed : {0u, 1u, 2u}) {
        expects_get(0xD4, 1).answers({0x00, 0x11, 3, 'a'});
        expects_get(0xD4, 2).answers({0x00, 0x11, 'b'}).with_data_len(claimed);
        expects_get(0xD4, 3).answers({0x00, 0x11, 'c'});
        EXPECT_EQ(get(0xD4), 0);
        EXPECT_TRUE(holds(3, {3, 'a', 'c'}));
    }
}

TEST_F(get_system_info, keeps_of_255_sets_what_fits_the_record)
{
    expects_get(0xD5, 1).answers(joined({0x00, 0x11, 255}, bytes(99, 'a')));
    for (int set = 2; set <= 255; ++set)
        expects_get(0xD5, low(static_cast<size_t>(set)))
            .answers(joined({0x00, 0x11}, bytes(100, 'b')))
            .with_data_len(set % 2 ? 102 : 0xFFFFFFFF);
    EXPECT_EQ(get(0xD5), 0);
    EXPECT_EQ(out->value[0], 255);
    EXPECT_TRUE(out.guards_hold());
}

TEST_F(get_system_info, reads_every_other_parameter_in_one_block)
{
    for (int number = 0x05; number <= 0xFF; ++number) {
        const auto parameter = static_cast<uint8_t>(number);
        const bytes others = {0xD0, 0xD1, 0xD4, 0xD5, 0xDA, 0xDC, 0xDD, 0xDE, 0xDF, 0xE0};
        if (std::count(others.begin(), others.end(), parameter) ||
            (parameter >= 0xC0 && parameter <= 0xC7))
            continue;
        expects_get(parameter).answers({0x00, 0x11, 'a', 'b', 5});
        EXPECT_EQ(get(parameter), 0);
        EXPECT_TRUE(holds(3, {'a', 'b', 5})) << number;
    }
}

TEST_F(get_system_info, counts_the_bytes_of_one_block_in_8_bits)
{
    const bytes value = counting(300);
    expects_get(0x05).answers(joined({0x00, 0x11}, value));
    EXPECT_EQ(get(0x05), 0);
    EXPECT_TRUE(holds(300 - 256, bytes_at(value.data(), 300 - 256)));
    expects_get(0x05).answers({0x00, 0x11, 'a'}).with_data_len(0xFFFFFFFF);
    EXPECT_EQ(get(0x05), 0);
    EXPECT_TRUE(holds(0xFD, {'a'}));
}

// Failures, arguments and forms.

TEST_F(get_system_info, leaves_the_output_cleared_where_the_first_block_failed)
{
    for (const uint8_t parameter : bytes{0x01, 0x05, 0xC0, 0xD0}) {
        expects_get(parameter).answers({0xC1, 0x11, 0x22, 0x01, 0x05, 'x', 'x'});
        EXPECT_EQ(get(parameter), 0xC1);
        EXPECT_TRUE(is_cleared());
        expects_get(parameter).answers({0xC1, 0x11}).fails_to_receive(0x5007);
        EXPECT_EQ(get(parameter), 0x5007);
        EXPECT_TRUE(is_cleared());
        platform.fails_to_attach(0x5001);
        EXPECT_EQ(get(parameter), 0x5001);
        EXPECT_TRUE(is_cleared());
    }
}

TEST_F(get_system_info, refuses_a_missing_location_or_output)
{
    EXPECT_EQ(location_get_sys_info(nullptr, 0x01, out.get()), 0x510a);
    EXPECT_EQ(location_get_sys_info(&at, 0x01, nullptr), 0x510a);
    EXPECT_EQ(get_sys_info(5, 0x01, nullptr), 0x510a);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events(3, refusal_of_arguments));
}

TEST_F(get_system_info, by_number_addresses_the_slot_of_that_number)
{
    for (const int number : {5, 0x105, 0}) {
        platform.expects(blade(static_cast<uint8_t>(number)), 0x0659, {0x00, 0x01, 0x00, 0x00})
            .answers(text_answer(characters("x")));
        EXPECT_EQ(get_sys_info(number, 0x01, out.get()), 0);
        EXPECT_TRUE(holds(1, characters("x")));
    }
}

// By selectors.

TEST_F(get_system_info_ex, sends_its_selectors_and_data_and_takes_the_answer)
{
    expects_get_ex().answers({0x00, 0x11, 0xA1, 0xA2, 0xA3});
    EXPECT_EQ(get_ex(), 0);
    EXPECT_EQ(param.content(),
              joined({0xD7, 0x02, 0x03, 0x00, 0x11, 3, 0xA1, 0xA2, 0xA3}, bytes(252, param.fill)));
    EXPECT_TRUE(param.guards_hold());
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x18 + 6), received(1001, 500, 483), detached()}));
}

TEST_F(get_system_info_ex, sends_between_0_and_255_bytes)
{
    for (const uint8_t length : bytes{0, 255}) {
        const bytes data = counting(length);
        std::copy(data.begin(), data.end(), param->data);
        param->length = length;
        platform.expects(at, 0x0659, joined({0x00, 0xD7, 0x02, 0x03}, data));
        EXPECT_EQ(get_ex(), 0);
    }
    EXPECT_TRUE(param.guards_hold());
}

TEST_F(get_system_info_ex, counts_the_bytes_of_the_answer_in_8_bits)
{
    const bytes value = counting(300);
    expects_get_ex().answers(joined({0x00, 0x11}, value));
    EXPECT_EQ(get_ex(), 0);
    EXPECT_EQ(param->length, 300 - 256);
    EXPECT_EQ(bytes_at(param->data, 255),
              joined(bytes_at(value.data(), 300 - 256), bytes(255 - (300 - 256), param.fill)));
}

TEST_F(get_system_info_ex, stays_in_its_record_whatever_the_answer_claims)
{
    expects_get_ex().answers(bytes(455)).with_data_len(257); // 255 bytes, in 8 bits
    EXPECT_EQ(get_ex(), 0);
    EXPECT_EQ(param->length, 255);
    EXPECT_EQ(bytes_at(param->data, 255), bytes(255));
    EXPECT_TRUE(param.guards_hold());
}

TEST_F(get_system_info_ex, counts_down_from_256_for_an_answer_without_two_bytes)
{
    expects_get_ex().answers({0x00});
    EXPECT_EQ(get_ex(), 0);
    EXPECT_EQ(param.content(), joined({0xD7, 0x02, 0x03, 0x00, 0x00, 0xFF}, bytes(255)));
    EXPECT_TRUE(param.guards_hold());
}

TEST_F(get_system_info_ex, tells_of_a_refusal)
{
    expects_get_ex().answers({0xC1, 0x11, 0xA1});
    fails(0xC1, "rc: 0 cc: 0xC1");
    EXPECT_EQ(platform.log().size(), 1u);
}

TEST_F(get_system_info_ex, tells_of_a_failure_behind_the_transports_lines)
{
    platform.fails_to_attach(0x5001);
    fails(0x5001, "rc: 20481 cc: 0x0");
    EXPECT_EQ(platform.log().size(), 2u);
}

TEST_F(get_system_info_ex, prefers_the_code_that_a_failed_receive_left_to_its_status)
{
    expects_get_ex().answers({0xC1, 0x11}).fails_to_receive(0x5007);
    fails(0xC1, "rc: 20487 cc: 0xC1");
}

TEST_F(get_system_info_ex, refuses_a_missing_location_or_record_with_a_line_of_its_own)
{
    const bytes before = param.content();
    EXPECT_EQ(location_get_sys_info_ex(nullptr, param.get()), 0x510a);
    EXPECT_EQ(location_get_sys_info_ex(&at, nullptr), 0x510a);
    EXPECT_EQ(param.content(), before);
    EXPECT_EQ(platform.journal(),
              events(2, error_line("location_get_sys_info_ex: NULL parameter found.\n")));
}
