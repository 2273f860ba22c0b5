// Setting system information parameters.

#include "ruk_ipmi/system_info.h"

#include <csignal>

#include "command_shape.h"

namespace
{

const uint8_t version[] = {'v', '1', '.', '2'};

template <uint8_t parameter>
command_row set_row(const char *name, const bytes &payload)
{
    return row<uint8_t>(
               name,
               [](auto at, auto out) {
                   return location_set_sys_info(at, parameter, version, 4, out);
               },
               0x0658, payload, {0x00, 0xEE}, 0x00)
        .template by_number<uint8_t>(
            [](int blade, auto out) { return set_sys_info(blade, parameter, version, 4, out); });
}

std::vector<command_row> set_rows()
{
    return {
        set_row<0x02>("set_text", {0x02, 0, 0, 4, 'v', '1', '.', '2'}),
        set_row<0xD0>("set_text_with_counter", {0xD0, 0, 0, 0, 4, 'v', '1', '.', '2'}),
        set_row<0xC3>("set_bytes_behind_their_count", {0xC3, 4, 'v', '1', '.', '2'}),
        set_row<0xE5>("set_bytes_alone", {0xE5, 'v', '1', '.', '2'}),
    };
}

INSTANTIATE_COMMAND_SHAPE(system_info, set_rows());

class set_system_info : public scripted_test
{
  protected:
    scripted_exchange &expects_set(const bytes &head, const bytes &data = {})
    {
        return platform.expects(at, 0x0658, joined(head, data));
    }

    int set(uint8_t parameter, uint32_t length)
    {
        return location_set_sys_info(&at, parameter, value.data(), length, out.get());
    }

    // A part of the value.
    bytes part(size_t from, size_t length) const { return bytes_at(value.data() + from, length); }

    const blade_location at = blade(5, 2);
    const bytes value = counting(600);
    guarded<uint8_t> out;
};

using set_system_info_death = set_system_info;

// What is sent ahead of a value of three bytes; nothing for a parameter that cannot be set.
bytes head_of(uint8_t parameter)
{
    if (parameter <= 0x02 || parameter == 0xD1 || (parameter >= 0xDC && parameter <= 0xE0) ||
        parameter == 0xF2 || parameter == 0xF3)
        return {parameter, 0, 0, 3};
    if (parameter == 0xD0)
        return {parameter, 0, 0, 0, 3};
    if (parameter >= 0xC0 && parameter <= 0xC7)
        return {parameter, 3};
    if (parameter == 0xE2 || parameter == 0xE5 || parameter == 0xFA)
        return {parameter};
    return {};
}

} // namespace

TEST_F(set_system_info, knows_each_parameter_and_refuses_all_others)
{
    for (int number = 0; number <= 0xFF; ++number) {
        const auto parameter = static_cast<uint8_t>(number);
        const bytes head = head_of(parameter);
        platform.forget();
        if (!head.empty())
            expects_set(head, part(0, 3));
        EXPECT_EQ(set(parameter, 3), head.empty() ? 0x510a : 0) << number;
        EXPECT_EQ(platform.calls().size(), head.empty() ? 0u : 4u);
        EXPECT_EQ(platform.log().size(), head.empty() ? 1u : 0u);
    }
}

TEST_F(set_system_info, refuses_an_unknown_parameter_and_leaves_the_output_alone)
{
    EXPECT_EQ(set(0x05, 3), 0x510a);
    EXPECT_EQ(set_sys_info(5, 0x05, value.data(), 3, out.get()), 0x510a);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events(2, error_line("Invalid parameter to IPMI interface\n")));
}

TEST_F(set_system_info, sends_a_text_of_14_bytes_in_one_block)
{
    expects_set({0x01, 0, 0, 14}, part(0, 14));
    EXPECT_EQ(set(0x01, 14), 0);
    EXPECT_EQ(out.content(), bytes{0x00});
}

TEST_F(set_system_info, sends_a_text_of_31_bytes_in_three_blocks_the_last_with_leftovers)
{
    expects_set({0x01, 0, 0, 31}, part(0, 14));
    expects_set({0x01, 1}, part(14, 16));
    expects_set({0x01, 2}, joined(part(30, 1), part(15, 15)));
    EXPECT_EQ(set(0x01, 31), 0);
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x18 + 18), received(1001, 500, 483), detached(), //
                      attached(), sent(0x18 + 18), received(1002, 500, 483), detached(), attached(),
                      sent(0x18 + 18), received(1003, 500, 483), detached()}));
}

TEST_F(set_system_info, sends_a_text_of_30_bytes_in_two_blocks)
{
    expects_set({0xF3, 0, 0, 30}, part(0, 14));
    expects_set({0xF3, 1}, part(14, 16));
    EXPECT_EQ(set(0xF3, 30), 0);
}

TEST_F(set_system_info, sends_leftovers_of_the_first_block_behind_a_short_second_one)
{
    expects_set({0x01, 0, 0, 15}, part(0, 14));
    expects_set({0x01, 1}, joined(part(14, 1), joined({15}, part(0, 14)))); // from its length on
    EXPECT_EQ(set(0x01, 15), 0);
}

TEST_F(set_system_info, counts_the_blocks_of_D0_besides_and_loses_the_last_byte_of_each_later_one)
{
    expects_set({0xD0, 0, 0, 0, 31}, part(0, 13));
    expects_set({0xD0, 0, 1}, part(13, 15)); // the request stays as long: byte 28 finds no room
    expects_set({0xD0, 0, 2}, joined(part(29, 2), part(15, 13)));
    EXPECT_EQ(set(0xD0, 31), 0);
}

TEST_F(set_system_info, tells_the_low_byte_of_a_texts_length)
{
    expects_set({0x01, 0, 0, 0x2C}, part(0, 14));
    for (uint8_t block = 1; block <= 17; ++block)
        expects_set({0x01, block}, part(14 + 16 * (block - 1u), 16));
    expects_set({0x01, 18}, joined(part(286, 14), part(284, 2)));
    EXPECT_EQ(set(0x01, 300), 0);
}

TEST_F(set_system_info, sends_bytes_in_one_block_however_many)
{
    expects_set({0xC0, 0x2C}, part(0, 300));
    EXPECT_EQ(set(0xC0, 300), 0);
    expects_set({0xC7, 0xE6}, part(0, 486));
    EXPECT_EQ(set(0xC7, 486), 0);
    expects_set({0xE2}, part(0, 487));
    EXPECT_EQ(set(0xE2, 487), 0);
}

TEST_F(set_system_info_death, bytes_that_do_not_fit_a_request_end_the_process)
{
    platform.echo_log();
    EXPECT_EXIT(set(0xC0, 487), ::testing::KilledBySignal(SIGABRT), "^error: 487 bytes do not fit");
    EXPECT_EXIT(set(0xFA, 488), ::testing::KilledBySignal(SIGABRT), "^error: 488 bytes do not fit");
    EXPECT_EXIT(set(0xFA, 0xFFFFFFFF), ::testing::KilledBySignal(SIGABRT),
                "^error: 4294967295 bytes do not fit");
}

TEST_F(set_system_info, needs_no_value_for_no_bytes)
{
    for (const uint8_t parameter : bytes{0x01, 0xD0, 0xC0, 0xFA}) {
        bytes head = head_of(parameter);
        if (head.size() > 1)
            head.back() = 0; // the length
        expects_set(head);
        EXPECT_EQ(location_set_sys_info(&at, parameter, nullptr, 0, out.get()), 0);
    }
}

TEST_F(set_system_info_death, a_missing_value_is_not_refused_but_dereferenced)
{
    EXPECT_DEATH(location_set_sys_info(&at, 0x01, nullptr, 3, out.get()), "");
}

TEST_F(set_system_info, ends_with_a_refused_block_and_leaves_the_output_alone)
{
    expects_set({0x01, 0, 0, 31}, part(0, 14));
    expects_set({0x01, 1}, part(14, 16)).answers({0xC1});
    EXPECT_EQ(set(0x01, 31), 0xC1);
    EXPECT_TRUE(out.untouched());
}

TEST_F(set_system_info, hands_over_the_refusal_of_the_last_block)
{
    expects_set({0x01, 0, 0, 30}, part(0, 14));
    expects_set({0x01, 1}, part(14, 16)).answers({0xC1}).with_completion_code(0xD5);
    EXPECT_EQ(set(0x01, 30), 0xD5);
    EXPECT_EQ(out.content(), bytes{0xC1});
}

TEST_F(set_system_info, goes_on_after_a_block_that_did_not_get_through)
{
    platform.fails_to_attach(0x5001);
    expects_set({0x01, 1}, part(14, 16)).answers({0xC1}).fails_to_receive(0x5007);
    expects_set({0x01, 2}, joined(part(30, 1), part(15, 15)));
    EXPECT_EQ(set(0x01, 31), 0);
    EXPECT_EQ(out.content(), bytes{0x00});
}

TEST_F(set_system_info, returns_the_status_of_the_last_block_with_the_byte_that_came_last)
{
    expects_set({0xD0, 0, 0, 0, 28}, part(0, 13)).answers({0xAB}).with_completion_code(0x00);
    expects_set({0xD0, 0, 1}, part(13, 15)).fails_to_send(0x5002);
    EXPECT_EQ(set(0xD0, 28), 0x5002);
    EXPECT_EQ(out.content(), bytes{0xAB});
}
