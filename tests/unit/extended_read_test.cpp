// Extended parameters, read piece by piece.

#include "ruk_ipmi/extended.h"

#include "command_shape.h"

namespace
{

const event refusal_of_arguments = error_line("Invalid parameter to IPMI interface\n");

event length_line(unsigned length)
{
    return debug_line(formatted("param len %x \n", length));
}

event retry_line(int retry)
{
    return debug_line(formatted("Received out of bounds response. May be we got wrong param "
                                "length Retry No : %d\n",
                                retry));
}

const events three_retries = {retry_line(1), retry_line(2), retry_line(3)};

// A parameter's stream, which begins with its length.
bytes stream_of(size_t length)
{
    return joined({low(length), high(length)}, counting(length - 2));
}

// The answer that brings `piece`.
bytes bringing(const bytes &piece, uint8_t completion_code = 0)
{
    return joined({completion_code, 0xA2, 0x02, 0x00, 0xEE, 0xEE, low(piece.size())}, piece);
}

class extended_read : public scripted_test
{
  protected:
    scripted_exchange &expects_read(size_t offset, uint8_t count)
    {
        return platform.expects(
            at, 0x2E02, {0xA2, 0x02, 0x00, 0x00, 0x61, 0x07, low(offset), high(offset), count});
    }

    // A request for `count` bytes from `offset` on, which the controller answers with as many.
    void brings(const bytes &stream, size_t offset, uint8_t count)
    {
        expects_read(offset, count).answers(bringing(bytes_at(stream.data() + offset, count)));
    }

    int read() { return ipmi_location_get_ext_cmd_indexed(&at, 0x61, 0x07, out.get()); }

    // The output tells the length `total` and has `stream` and zeros behind it.
    bool holds(uint16_t total, const bytes &stream)
    {
        return out->reserved == 0 && out->total == total &&
               bytes_at(out->data, 1024) == joined(stream, bytes(1024 - stream.size())) &&
               out.guards_hold();
    }

    const blade_location at = {5, 2, {0x80, 0x7F}};
    guarded<ext_cmd_data> out;
};

} // namespace

TEST_F(extended_read, takes_one_request_where_the_first_answer_brings_all)
{
    expects_read(0, 255).answers(bringing({0x05, 0x00, 'a', 'b', 'c'}));
    litter_the_stack();
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(5, {0x05, 0x00, 'a', 'b', 'c'}));
    EXPECT_EQ(platform.journal(), (events{attached(), sent(0x18 + 9), received(1001, 500, 483),
                                          detached(), length_line(5)}));
}

TEST_F(extended_read, of_255_bytes_takes_one_request)
{
    const bytes stream = stream_of(255);
    brings(stream, 0, 255);
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(255, stream));
}

TEST_F(extended_read, of_300_bytes_asks_for_the_last_45_by_themselves)
{
    const bytes stream = stream_of(300);
    brings(stream, 0, 255);
    brings(stream, 255, 45);
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(300, stream));
    EXPECT_EQ(platform.calls().at(6), received(1002, 500, 483));
    EXPECT_EQ(platform.log(), events{length_line(0x12C)});
}

TEST_F(extended_read, of_600_bytes_goes_on_by_128_at_a_time)
{
    const bytes stream = stream_of(600);
    brings(stream, 0, 255);
    brings(stream, 255, 128);
    brings(stream, 383, 128);
    brings(stream, 511, 89);
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(600, stream));
}

TEST_F(extended_read, goes_on_where_a_shorter_answer_than_asked_for_ended)
{
    const bytes stream = stream_of(200);
    expects_read(0, 255).answers(bringing(bytes_at(stream.data(), 32)));
    expects_read(32, 128).answers(bringing(bytes_at(stream.data() + 32, 100)));
    expects_read(132, 68).answers(bringing(bytes_at(stream.data() + 132, 68)));
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(200, stream));
}

TEST_F(extended_read, ends_with_an_answer_that_brings_more_than_is_left)
{
    expects_read(0, 255).answers(bringing({0x03, 0x00, 'a', 'b', 'c'}));
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(3, {0x03, 0x00, 'a', 'b', 'c'}));
    expects_read(0, 255).answers(bringing({0x04, 0x00, 'a'}));
    expects_read(3, 1).answers(bringing({'b', 'c'}));
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(4, {0x04, 0x00, 'a', 'b', 'c'}));
}

TEST_F(extended_read, believes_the_answers_count_and_gives_zeros_for_what_it_lacks)
{
    expects_read(0, 255).answers({0x00, 0xA2, 0x02, 0x00, 0x00, 0x00, 6, 0x06, 0x00, 'a'});
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(6, {0x06, 0x00, 'a', 0x00, 0x00, 0x00}));
}

TEST_F(extended_read, takes_255_bytes_left_for_a_first_request_again)
{
    const bytes stream = stream_of(510);
    brings(stream, 0, 255);
    const bytes later = joined({0x02, 0x01}, bytes(253, 'x')); // told as a length of 258
    expects_read(255, 255).answers(bringing(later));
    expects_read(255, 3).answers(bringing({'e', 'n', 'd'}));
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(258, joined(later, {'e', 'n', 'd'})));
    EXPECT_EQ(platform.log(), (events{length_line(510), length_line(258)}));
}

TEST_F(extended_read, takes_255_bytes_left_by_a_later_answer_for_a_first_request_too)
{
    const bytes stream = stream_of(383);
    expects_read(0, 255).answers(bringing(bytes_at(stream.data(), 100)));
    expects_read(100, 128).answers(bringing(bytes_at(stream.data() + 100, 28)));
    expects_read(128, 255).answers(bringing({0x03, 0x00, 'x'}));
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(out->total, 3);
    EXPECT_EQ(bytes_at(out->data, 128),
              joined({0x03, 0x00, 'x'}, bytes_at(stream.data() + 3, 125)));
}

TEST_F(extended_read, keeps_1024_bytes_of_a_longer_parameter)
{
    const bytes stream = stream_of(1300);
    brings(stream, 0, 255);
    for (size_t offset = 255; offset < 1279; offset += 128)
        brings(stream, offset, 128);
    brings(stream, 1279, 21);
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(1300, bytes_at(stream.data(), 1024)));
}

TEST_F(extended_read, stays_in_its_record_for_a_parameter_of_65535_bytes)
{
    const bytes all(255, 0xFF); // whatever is asked for, so much comes
    expects_read(0, 255).answers(bringing(all));
    for (size_t offset = 255; offset < 65280; offset += 255)
        expects_read(offset, 128).answers(bringing(all));
    expects_read(65280, 255).answers(bringing({0x02, 0x00})); // 255 left: a first request again
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(out.guards_hold());
}

TEST_F(extended_read, begins_anew_where_its_offset_is_out_of_range)
{
    const bytes old_stream = stream_of(600), stream = stream_of(300);
    brings(old_stream, 0, 255);
    expects_read(255, 128).answers(bringing({'x'}, 0xC9));
    brings(stream, 0, 255);
    brings(stream, 255, 45);
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(300, stream));
    EXPECT_EQ(platform.log(), (events{length_line(600), retry_line(1), length_line(300)}));
}

TEST_F(extended_read, begins_anew_where_an_answer_brings_nothing)
{
    const bytes stream = stream_of(300);
    brings(stream, 0, 255);
    expects_read(255, 45).answers(bringing({}));
    brings(stream, 0, 255);
    brings(stream, 255, 45);
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(300, stream));
    EXPECT_EQ(platform.log(), (events{length_line(300), retry_line(1), length_line(300)}));
}

TEST_F(extended_read, gives_up_with_the_fourth_answer_out_of_range)
{
    for (int i = 0; i < 4; ++i)
        expects_read(0, 255).answers({0xC9});
    EXPECT_EQ(read(), 0xC9);
    EXPECT_TRUE(holds(255, {}));
    EXPECT_EQ(platform.log(), three_retries);
}

TEST_F(extended_read, counts_its_new_beginnings_over_the_whole_call)
{
    const bytes stream = stream_of(300);
    for (int i = 0; i < 4; ++i) {
        brings(stream, 0, 255);
        expects_read(255, 45).answers(i % 2 ? bringing({}) : bringing({'x'}, 0xC9));
    }
    expects_read(255, 45).answers(bringing({'x'}, 0xC9)); // the fourth was empty
    EXPECT_EQ(read(), 0xC9);
    EXPECT_TRUE(holds(300, bytes_at(stream.data(), 255)));
    EXPECT_EQ(platform.log(),
              (events{length_line(300), retry_line(1), length_line(300), retry_line(2),
                      length_line(300), retry_line(3), length_line(300)}));
}

TEST_F(extended_read, takes_empty_answers_as_they_are_after_three_new_beginnings)
{
    for (int i = 0; i < 3; ++i)
        expects_read(0, 255).answers(bringing({}));
    expects_read(0, 255).answers(joined(bringing({}), {0x04, 0x00})); // a length, and no bytes
    for (int i = 0; i < 5; ++i)
        expects_read(0, 4).answers(bringing({}));
    expects_read(0, 4).answers(bringing({0x04, 0x00, 'a', 'b'}));
    EXPECT_EQ(read(), 0);
    EXPECT_TRUE(holds(4, {0x04, 0x00, 'a', 'b'}));
    EXPECT_EQ(platform.log(),
              (events{retry_line(1), retry_line(2), retry_line(3), length_line(4)}));
}

TEST_F(extended_read, ends_with_a_refusal_and_keeps_what_came_before)
{
    const bytes stream = stream_of(300);
    brings(stream, 0, 255);
    expects_read(255, 45).answers(bringing({'x'}, 0xC1));
    EXPECT_EQ(read(), 0xC1);
    EXPECT_TRUE(holds(300, bytes_at(stream.data(), 255)));
}

TEST_F(extended_read, keeps_nothing_of_a_refused_first_answer)
{
    expects_read(0, 255).answers(bringing({'x'}, 0xC1));
    EXPECT_EQ(read(), 0xC1);
    EXPECT_TRUE(holds(255, {}));
    EXPECT_EQ(platform.log(), events{});
}

TEST_F(extended_read, returns_a_refusal_without_bytes_after_three_new_beginnings)
{
    for (int i = 0; i < 4; ++i)
        expects_read(0, 255).answers({0xC1});
    EXPECT_EQ(read(), 0xC1);
    EXPECT_TRUE(holds(255, {}));
    EXPECT_EQ(platform.log(), three_retries);
}

TEST_F(extended_read, tries_four_times_to_reach_a_blade)
{
    const event line = error_line("attach_ruk_shm returned 20481 (0x00005001)\n");
    for (int i = 0; i < 4; ++i)
        platform.fails_to_attach(0x5001);
    EXPECT_EQ(read(), 0x5001);
    EXPECT_TRUE(holds(255, {}));
    EXPECT_EQ(platform.journal(),
              (events{attached(), line, retry_line(1), attached(), line, retry_line(2), attached(),
                      line, retry_line(3), attached(), line}));
}

TEST_F(extended_read, ends_at_once_where_a_later_request_does_not_get_through)
{
    const bytes stream = stream_of(300);
    brings(stream, 0, 255);
    expects_read(255, 45).fails_to_send(0x5002);
    EXPECT_EQ(read(), 0x5002);
    EXPECT_TRUE(holds(300, bytes_at(stream.data(), 255)));
}

TEST_F(extended_read, prefers_the_status_of_a_failed_receive_to_the_code_it_left)
{
    expects_read(0, 255).answers(bringing({'x'}, 0xC9)).fails_to_receive(0x5007);
    EXPECT_EQ(read(), 0x5007);
    EXPECT_TRUE(holds(255, {}));
}

TEST_F(extended_read, refuses_a_missing_location_or_output)
{
    EXPECT_EQ(ipmi_location_get_ext_cmd_indexed(nullptr, 1, 2, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_get_ext_cmd_indexed(&at, 1, 2, nullptr), 0x510a);
    EXPECT_EQ(ipmi_location_get_ext_cmd(nullptr, 1, out.get()), 0x510a);
    EXPECT_EQ(ipmi_location_get_ext_cmd(&at, 1, nullptr), 0x510a);
    EXPECT_EQ(ipmi_get_ext_cmd_indexed(5, 1, 2, nullptr), 0x510a);
    EXPECT_EQ(ipmi_get_ext_cmd(5, 1, nullptr), 0x510a);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), events(6, refusal_of_arguments));
}

TEST_F(extended_read, has_forms_by_number_and_without_an_index)
{
    const auto expects = [&](const blade_location &location, uint8_t index) {
        platform.expects(location, 0x2E02, {0xA2, 0x02, 0x00, 0x00, 0x61, index, 0, 0, 255})
            .answers(bringing({0x02, 0x00}));
    };
    expects(blade(4), 0);
    EXPECT_EQ(ipmi_get_ext_cmd(4, 0x61, out.get()), 0);
    expects(blade(4), 7);
    EXPECT_EQ(ipmi_get_ext_cmd_indexed(0x104, 0x61, 7, out.get()), 0);
    expects(at, 0);
    EXPECT_EQ(ipmi_location_get_ext_cmd(&at, 0x61, out.get()), 0);
    EXPECT_TRUE(holds(2, {0x02, 0x00}));
}
