// The LAN configuration of a blade's controller.

#include "ruk_ipmi/lan.h"

#include "command_shape.h"

namespace
{

const event refusal_of_arguments = error_line("Invalid parameter to IPMI interface\n");

const uint8_t address[] = {192, 168, 0, 5};

std::vector<command_row> lan_rows()
{
    return {row<uint8_t>(
                "set_lan_parameters",
                [](auto at, auto out) {
                    return ipmi_location_set_lan_parameters(at, 3, address, 4, out);
                },
                0x0C01, {0x01, 3, 192, 168, 0, 5}, {0x00}, 0x00)
                .by_number<uint8_t>([](int blade, auto out) {
                    return ipmi_set_lan_parameters(blade, 3, address, 4, out);
                })
                .logs()};
}

INSTANTIATE_COMMAND_SHAPE(lan, lan_rows());

class set_lan : public scripted_test
{
  protected:
    int set(const uint8_t *data, uint32_t length)
    {
        return ipmi_location_set_lan_parameters(&at, 3, data, length, out.get());
    }

    const blade_location at = blade(5);
    guarded<uint8_t> out;
};

using set_lan_death = set_lan;

// Reads parameter 3, whose answer's second byte gives way to the parameter's length.
class get_lan : public scripted_test
{
  protected:
    scripted_exchange &expects_get() { return platform.expects(at, 0x0C02, {0x01, 3, 0x00, 0x00}); }

    int get() { return ipmi_location_get_lan_parameters(&at, 3, out.get()); }

    // The output begins with `head`, has zeros behind it, and nothing around it was written.
    bool holds(const bytes &head)
    {
        return out.content() == joined(head, bytes(202 - head.size())) && out.guards_hold();
    }

    const blade_location at = {5, 2, {0x80, 0x7F}};
    guarded<lan_parameter_data> out;
};

} // namespace

TEST_F(set_lan, tells_the_length_to_the_debug_log_before_it_sends)
{
    platform.expects(at, 0x0C01, {0x01, 3, 192, 168, 0, 5}).answers({0x82});
    EXPECT_EQ(set(address, 4), 0x82);
    EXPECT_EQ(platform.journal(),
              (events{debug_line(" set lan parameters param len 4\n"), attached(), sent(0x18 + 6),
                      received(whole_platform::first_index, 500, 483), detached()}));
}

TEST_F(set_lan, sends_253_bytes_at_once)
{
    const bytes data = counting(253);
    platform.expects(at, 0x0C01, joined({0x01, 3}, data));
    EXPECT_EQ(set(data.data(), 253), 0);
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 255));
    EXPECT_EQ(platform.log(), events{debug_line(" set lan parameters param len fd\n")});
}

TEST_F(set_lan, refuses_more_than_253_bytes_without_a_word)
{
    const bytes data = counting(256);
    for (const uint32_t length : {254u, 255u, 256u, 0x10004u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
        EXPECT_EQ(set(data.data(), length), 0x510a);
        EXPECT_EQ(ipmi_set_lan_parameters(5, 3, data.data(), length, out.get()), 0x510a);
    }
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(set_lan, looks_at_its_pointers_before_it_looks_at_the_length)
{
    EXPECT_EQ(ipmi_location_set_lan_parameters(nullptr, 3, address, 254, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_set_lan_parameters(&at, 3, address, 254, nullptr), 0x510a);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events(2, refusal_of_arguments));
}

TEST_F(set_lan, sends_the_header_alone_for_no_bytes)
{
    platform.expects(at, 0x0C01, {0x01, 3});
    EXPECT_EQ(set(nullptr, 0), 0);
    EXPECT_EQ(platform.log(), events{debug_line(" set lan parameters param len 0\n")});
}

TEST_F(set_lan_death, missing_data_are_not_refused_but_dereferenced)
{
    EXPECT_DEATH(set(nullptr, 4), "");
}

TEST_F(get_lan, hands_over_the_parameter_behind_its_length)
{
    expects_get().answers({0x00, 0x11, 1, 2, 3, 4, 5, 6});
    litter_the_stack();
    EXPECT_EQ(get(), 0);
    EXPECT_TRUE(holds({0x00, 6, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x1C), received(whole_platform::first_index, 500, 483),
                      detached()}));
}

TEST_F(get_lan, hands_over_200_bytes_at_the_most)
{
    const bytes data = counting(201);
    expects_get().answers(joined({0x00, 0x11}, data));
    EXPECT_EQ(get(), 0);
    EXPECT_TRUE(holds(joined({0x00, 201}, bytes_at(data.data(), 200))));
}

TEST_F(get_lan, gives_the_low_byte_of_the_length_that_the_answer_claims)
{
    for (const uint32_t claimed : {0x103u, 3u, 0xFFFFFF03u}) {
        expects_get().answers({0x00, 0x11, 0xAB}).with_data_len(claimed);
        EXPECT_EQ(get(), 0);
        EXPECT_TRUE(holds({0x00, 1, 0xAB}));
    }
}

TEST_F(get_lan, counts_down_from_256_for_an_answer_without_revision)
{
    expects_get().answers({0x00});
    EXPECT_EQ(get(), 0);
    EXPECT_TRUE(holds({0x00, 0xFF}));
    expects_get().answers({});
    EXPECT_EQ(get(), 0);
    EXPECT_TRUE(holds({0x00, 0xFE}));
}

TEST_F(get_lan, leaves_the_revision_of_a_refusal_as_it_came)
{
    expects_get().answers({0x80, 0x11, 0xAB});
    EXPECT_EQ(get(), 0x80);
    EXPECT_TRUE(holds({0x80, 0x11, 0xAB}));
}

TEST_F(get_lan, believes_the_completion_code_of_the_header)
{
    expects_get().answers({0x00, 0x11, 0xAB}).with_completion_code(0xD5);
    EXPECT_EQ(get(), 0xD5);
    EXPECT_TRUE(holds({0x00, 0x11, 0xAB}));
}

TEST_F(get_lan, gives_the_length_of_the_untouched_room_when_nothing_came)
{
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(get(), 0x5001);
    EXPECT_TRUE(holds({0x00, low(483 - 2)}));
    expects_get().fails_to_send(0x5002);
    EXPECT_EQ(get(), 0x5002);
    EXPECT_TRUE(holds({0x00, low(483 - 2)}));
    expects_get().fails_to_receive(0x5007);
    EXPECT_EQ(get(), 0x5007);
    EXPECT_TRUE(holds({0x00, low(483 - 2)}));
}

TEST_F(get_lan, gives_the_length_of_a_refusal_too_that_a_failed_receive_left)
{
    expects_get().answers({0x80, 0x11, 0xAB}).fails_to_receive(0x5007);
    EXPECT_EQ(get(), 0x5007);
    EXPECT_TRUE(holds({0x80, 1, 0xAB}));
}

TEST_F(get_lan, refuses_a_missing_location_or_output)
{
    EXPECT_EQ(ipmi_location_get_lan_parameters(nullptr, 3, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_get_lan_parameters(&at, 3, nullptr), 0x510a);
    EXPECT_EQ(ipmi_get_lan_parameters(5, 3, nullptr), 0x510a);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events(3, refusal_of_arguments));
}

TEST_F(get_lan, by_number_addresses_the_slot_of_that_number)
{
    for (const int number : {5, 0x105, 0}) {
        platform.expects(blade(static_cast<uint8_t>(number)), 0x0C02, {0x01, 4, 0x00, 0x00})
            .answers({0x00, 0x11, 0x02});
        EXPECT_EQ(ipmi_get_lan_parameters(number, 4, out.get()), 0);
        EXPECT_TRUE(holds({0x00, 1, 0x02}));
    }
}
