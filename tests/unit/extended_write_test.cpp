// Extended parameters, written piece by piece.

#include "ruk_ipmi/extended.h"

#include "command_shape.h"

namespace
{

const event refusal_of_arguments = error_line("Invalid parameter to IPMI interface\n");

class extended_write : public scripted_test
{
  protected:
    scripted_exchange &expects_begin() { return platform.expects(at, 0x2E01, {0xA2, 0x02, 0x00}); }

    void begins() { expects_begin().answers({0x00, 0xA2, 0x02, 0x00, 0x42}); }

    scripted_exchange &expects_piece(size_t offset, size_t length, uint8_t is_last)
    {
        const bytes piece = bytes_at(value.data() + offset, length);
        return platform.expects(
            at, 0x2E03,
            joined({0xA2, 0x02, 0x00, 0x42, 0x61, 0x07, low(offset), high(offset), is_last},
                   piece));
    }

    int write(uint32_t length)
    {
        return ipmi_location_set_ext_cmd_indexed(&at, 0x61, 0x07, value.data(), length, out.get());
    }

    const blade_location at = {5, 2, {0x80, 0x7F}};
    const bytes value = counting(400);
    guarded<uint8_t> out;
};

} // namespace

TEST_F(extended_write, of_300_bytes_begins_and_goes_in_three_pieces)
{
    begins();
    expects_piece(0, 128, 0).answers({0x00, 0xA2, 0x02, 0x00, 0x99});
    expects_piece(128, 128, 0);
    expects_piece(256, 44, 1);
    litter_the_stack();
    EXPECT_EQ(write(300), 0);
    EXPECT_EQ(out.content(), bytes{0x00});
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x18 + 3), received(1001, 500, 483), detached(), //
                      attached(), sent(0x18 + 137), received(1002, 500, 483), detached(),
                      attached(), sent(0x18 + 137), received(1003, 500, 483), detached(),
                      attached(), sent(0x18 + 53), received(1004, 500, 483), detached()}));
}

TEST_F(extended_write, of_up_to_128_bytes_goes_in_one_piece)
{
    for (const uint32_t length : {1u, 127u, 128u}) {
        begins();
        expects_piece(0, length, 1);
        EXPECT_EQ(write(length), 0);
    }
}

TEST_F(extended_write, of_129_and_256_bytes_goes_in_two_pieces)
{
    for (const uint32_t length : {129u, 256u}) {
        begins();
        expects_piece(0, 128, 0);
        expects_piece(128, length - 128, 1);
        EXPECT_EQ(write(length), 0);
    }
}

TEST_F(extended_write, of_nothing_begins_and_sends_no_piece)
{
    begins();
    EXPECT_EQ(write(0), 0);
    EXPECT_EQ(out.content(), bytes{0x00});
    EXPECT_EQ(platform.calls().size(), 4u);
}

TEST_F(extended_write, takes_a_missing_handle_for_0)
{
    expects_begin();
    platform.expects(at, 0x2E03, {0xA2, 0x02, 0x00, 0x00, 0x61, 0x07, 0, 0, 1, value[0]});
    EXPECT_EQ(write(1), 0);
}

TEST_F(extended_write, that_cannot_begin_leaves_the_output_alone)
{
    expects_begin().answers({0xC1, 0xA2, 0x02, 0x00, 0x42});
    EXPECT_EQ(write(1), 0xC1);
    expects_begin().answers({0xC1}).fails_to_receive(0x5007);
    EXPECT_EQ(write(1), 0x5007);
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(write(0), 0x5001);
    EXPECT_TRUE(out.untouched());
}

TEST_F(extended_write, ends_with_a_refused_piece_and_leaves_the_output_alone)
{
    begins();
    expects_piece(0, 128, 0).answers({0xC1});
    EXPECT_EQ(write(300), 0xC1);
    begins();
    expects_piece(0, 1, 1).answers({0xC2});
    EXPECT_EQ(write(1), 0xC2);
    EXPECT_TRUE(out.untouched());
}

TEST_F(extended_write, goes_on_after_a_piece_that_did_not_get_through)
{
    begins();
    platform.fails_to_attach(0x5001);
    expects_piece(128, 128, 0).answers({0xC1}).fails_to_receive(0x5007);
    expects_piece(256, 44, 1);
    EXPECT_EQ(write(300), 0);
    EXPECT_EQ(out.content(), bytes{0x00});
}

TEST_F(extended_write, returns_the_status_of_the_last_piece_with_the_code_that_came_last)
{
    begins();
    expects_piece(0, 128, 0);
    expects_piece(128, 1, 1).fails_to_send(0x5002);
    EXPECT_EQ(write(129), 0x5002);
    EXPECT_EQ(out.content(), bytes{0x00});
    begins();
    expects_piece(0, 1, 1).with_completion_code(0x1C1).answers({0x00}).fails_to_receive(0x5007);
    EXPECT_EQ(write(1), 0x5007);
    EXPECT_EQ(out.content(), bytes{0xC1});
}

TEST_F(extended_write, refuses_a_missing_location_value_or_output)
{
    const uint8_t *data = value.data();
    EXPECT_EQ(ipmi_location_set_ext_cmd_indexed(nullptr, 1, 2, data, 1, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_set_ext_cmd_indexed(&at, 1, 2, nullptr, 0, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_set_ext_cmd_indexed(&at, 1, 2, data, 1, nullptr), 0x510a);
    EXPECT_EQ(ipmi_location_set_ext_cmd(nullptr, 1, data, 1, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_set_ext_cmd(&at, 1, nullptr, 1, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_set_ext_cmd(&at, 1, data, 1, nullptr), 0x510a);
    EXPECT_EQ(ipmi_set_ext_cmd_indexed(5, 1, 2, nullptr, 1, out.get()), 0x510a);
    EXPECT_EQ(ipmi_set_ext_cmd(5, 1, data, 1, nullptr), 0x510a);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events(8, refusal_of_arguments));
}

TEST_F(extended_write, has_forms_by_number_and_without_an_index)
{
    const auto expects = [&](const blade_location &location, uint8_t index) {
        platform.expects(location, 0x2E01, {0xA2, 0x02, 0x00});
        platform.expects(location, 0x2E03, {0xA2, 0x02, 0x00, 0, 0x61, index, 0, 0, 1, value[0]});
    };
    expects(blade(4), 0);
    EXPECT_EQ(ipmi_set_ext_cmd(4, 0x61, value.data(), 1, out.get()), 0);
    expects(blade(4), 7);
    EXPECT_EQ(ipmi_set_ext_cmd_indexed(0x104, 0x61, 7, value.data(), 1, out.get()), 0);
    expects(at, 0);
    EXPECT_EQ(ipmi_location_set_ext_cmd(&at, 0x61, value.data(), 1, out.get()), 0);
}
