// The commands of the FRU areas.

#include "ruk_ipmi/fru.h"

#include <array>
#include <cstring>

#include "command_shape.h"

namespace
{

const uint8_t three_bytes[] = {0xAB, 0xCD, 0xEF};

std::vector<command_row> fru_rows()
{
    return {
        row<fru_area_info>(
            "get_fru_info",
            [](auto at, auto out) { return ipmi_location_get_fru_info(at, 0x07, out); }, 0x0A10,
            {0x07}, {0x00, 0x00, 0x02, 0x01}, {0x00, 512, 0x01})
            .by_number<fru_area_info>(
                [](int blade, auto out) { return ipmi_get_fru_info(blade, 0x07, out); })
            .converts_always(),
        row<uint8_t>(
            "write_fru",
            [](auto at, auto out) {
                return ipmi_location_write_fru(at, 0x07, 0x1234, 3, three_bytes, out);
            },
            0x0A12, {0x07, 0x34, 0x12, 0xAB, 0xCD, 0xEF}, {0x00, 0x03}, 0x00)
            .by_number<uint8_t>([](int blade, auto out) {
                return ipmi_write_fru(blade, 0x07, 0x1234, 3, three_bytes, out);
            }),
    };
}

INSTANTIATE_COMMAND_SHAPE(fru, fru_rows());

using write_fru = scripted_test;

// Reads into a buffer of 256 bytes, of which a call may write `capacity`.
class read_fru : public scripted_test
{
  protected:
    int read(uint32_t capacity)
    {
        out->buffer = buffer->data();
        return ipmi_location_read_fru(&at, 0x07, 0x1234, 0x20, capacity, out.get());
    }

    scripted_exchange &expects_read() { return platform.expects(at, 0x0A11, request); }

    // The buffer begins with `data`, and nothing else was written to it.
    bool holds(const bytes &data)
    {
        const bytes rest(256 - data.size(), decltype(buffer)::fill);
        return buffer.content() == joined(data, rest) && buffer.guards_hold();
    }

    // As the debug log names the buffer.
    std::string buffer_name()
    {
        return formatted("%x", static_cast<unsigned>(reinterpret_cast<uintptr_t>(buffer->data())));
    }

    const blade_location at = blade(5);
    const bytes request = {0x07, 0x34, 0x12, 0x20};
    guarded<std::array<uint8_t, 256>> buffer;
    guarded<fru_read_request> out;
};

} // namespace

TEST_F(write_fru, sends_251_bytes_at_once)
{
    const blade_location at = blade(5);
    const bytes data = counting(251);
    platform.expects(at, 0x0A12, joined({0x00, 0x00, 0x00}, data)).answers({0x00, 0xFB});
    guarded<uint8_t> out;
    EXPECT_EQ(ipmi_location_write_fru(&at, 0, 0, 251, data.data(), out.get()), 0);
    EXPECT_EQ(platform.calls().at(1), sent(0x18 + 254));
}

TEST_F(write_fru, refuses_more_than_251_bytes_without_a_word)
{
    const blade_location at = blade(5);
    const bytes data = counting(252);
    for (const uint32_t length : {252u, 256u, 0x10003u, 0xFFFFFFFFu}) {
        guarded<uint8_t> out;
        EXPECT_EQ(ipmi_location_write_fru(&at, 0, 0, length, data.data(), out.get()), 0x510a);
        EXPECT_TRUE(out.untouched());
    }
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(write_fru, sends_the_header_alone_for_no_bytes)
{
    const blade_location at = blade(5);
    platform.expects(at, 0x0A12, {0x07, 0x34, 0x12}).answers({0x00, 0x00});
    guarded<uint8_t> out;
    EXPECT_EQ(ipmi_location_write_fru(&at, 0x07, 0x1234, 0, nullptr, out.get()), 0);
}

TEST_F(read_fru, copies_what_the_blade_returned)
{
    const bytes data = counting(32);
    expects_read().answers(joined({0x00, 32}, data));
    EXPECT_EQ(read(256), 0);
    EXPECT_EQ(out->completion_code, 0x00);
    EXPECT_EQ(out->count, 32);
    EXPECT_TRUE(holds(data));
    EXPECT_TRUE(out.guards_hold());
}

TEST_F(read_fru, leaves_the_callers_pointer_and_what_follows_it_as_they_were)
{
    expects_read().answers(joined({0x00, 32}, counting(32)));
    out->buffer = buffer->data();
    const bytes before = out.content();
    read(256);
    EXPECT_EQ(bytes_at(out.content().data() + 1, 8), bytes_at(before.data() + 1, 8));
}

TEST_F(read_fru, waits_1000_ticks_with_room_for_483_bytes)
{
    expects_read();
    read(256);
    EXPECT_EQ(platform.calls(),
              (events{attached(), sent(0x1C), received(whole_platform::first_index, 1000, 483),
                      detached()}));
}

TEST_F(read_fru, tells_request_and_answer_to_the_debug_log_and_dumps_the_buffer)
{
    expects_read().answers({0x00, 0x02, 0xAB, 0xCD});
    read(256);
    EXPECT_EQ(platform.journal(),
              (events{debug_line("fru id 7, fru_offset 1234 fru_count 32\n"), attached(),
                      sent(0x1C), received(whole_platform::first_index, 1000, 483), detached(),
                      debug_line("buffer " + buffer_name() + " IPMI CC 0 \n"),
                      dump_line("Ipmi fru buffer ", {0xAB, 0xCD}, 1)}));
}

TEST_F(read_fru, copies_no_more_than_the_capacity)
{
    expects_read().answers(joined({0x00, 32}, counting(32)));
    EXPECT_EQ(read(16), 0);
    EXPECT_EQ(out->count, 16);
    EXPECT_TRUE(holds(counting(16)));
    EXPECT_EQ(platform.log().back(), dump_line("Ipmi fru buffer ", counting(16)));
}

TEST_F(read_fru, copies_all_when_the_capacity_is_just_enough)
{
    expects_read().answers(joined({0x00, 32}, counting(32)));
    EXPECT_EQ(read(32), 0);
    EXPECT_EQ(out->count, 32);
    EXPECT_TRUE(holds(counting(32)));
}

TEST_F(read_fru, copies_255_bytes_when_the_blade_says_so)
{
    expects_read().answers(joined({0x00, 255}, counting(255)));
    EXPECT_EQ(read(0xFFFFFFFF), 0); // a capacity is unsigned, however large
    EXPECT_EQ(out->count, 255);
    EXPECT_TRUE(holds(counting(255)));
}

TEST_F(read_fru, copies_nothing_without_capacity)
{
    expects_read().answers(joined({0x00, 32}, counting(32)));
    out->buffer = nullptr;
    EXPECT_EQ(ipmi_location_read_fru(&at, 0x07, 0x1234, 0x20, 0, out.get()), 0);
    EXPECT_EQ(out->count, 0);
    EXPECT_EQ(platform.log().back(), dump_line("Ipmi fru buffer ", {}));
}

TEST_F(read_fru, sends_a_count_of_0_and_copies_what_the_blade_returned_all_the_same)
{
    platform.expects(at, 0x0A11, {0x07, 0x34, 0x12, 0x00})
        .answers(joined({0x00, 32}, counting(32)));
    out->buffer = buffer->data();
    EXPECT_EQ(ipmi_location_read_fru(&at, 0x07, 0x1234, 0, 256, out.get()), 0);
    EXPECT_EQ(out->count, 32);
    EXPECT_TRUE(holds(counting(32)));
}

TEST_F(read_fru, believes_the_blades_count_and_gives_zeros_for_what_the_answer_lacks)
{
    expects_read().answers({0x00, 0x04, 0xAB});
    EXPECT_EQ(read(256), 0);
    EXPECT_EQ(out->count, 4);
    EXPECT_TRUE(holds({0xAB, 0x00, 0x00, 0x00}));
}

TEST_F(read_fru, copies_nothing_when_the_answer_is_a_completion_code_alone)
{
    expects_read().answers({0x00});
    EXPECT_EQ(read(256), 0);
    EXPECT_EQ(out->count, 0);
    EXPECT_TRUE(holds({}));
}

TEST_F(read_fru, returns_a_refusal_and_copies_what_came_with_it)
{
    expects_read().answers({0xC9, 0x02, 0xAB, 0xCD});
    EXPECT_EQ(read(256), 0xC9);
    EXPECT_EQ(out->completion_code, 0xC9);
    EXPECT_EQ(out->count, 2);
    EXPECT_TRUE(holds({0xAB, 0xCD}));
    EXPECT_EQ(platform.log().at(1), debug_line("buffer " + buffer_name() + " IPMI CC c9 \n"));
}

TEST_F(read_fru, returns_the_headers_code_and_hands_over_the_datas)
{
    expects_read().answers({0xC1, 0x00}).with_completion_code(0xD5);
    EXPECT_EQ(read(256), 0xD5);
    EXPECT_EQ(out->completion_code, 0xC1);
    EXPECT_EQ(platform.log().at(1), debug_line("buffer " + buffer_name() + " IPMI CC d5 \n"));
}

TEST_F(read_fru, returns_the_status_of_a_failed_attach_and_reports_no_bytes)
{
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(read(256), 0x5001);
    EXPECT_EQ(out->completion_code, 0);
    EXPECT_EQ(out->count, 0);
    EXPECT_TRUE(holds({}));
    EXPECT_EQ(platform.log(), (events{debug_line("fru id 7, fru_offset 1234 fru_count 32\n"),
                                      error_line("attach_ruk_shm returned 20481 (0x00005001)\n"),
                                      debug_line("buffer " + buffer_name() + " IPMI CC 0 \n"),
                                      dump_line("Ipmi fru buffer ", {})}));
}

TEST_F(read_fru, returns_the_status_of_a_failed_send_and_reports_no_bytes)
{
    expects_read().fails_to_send(0x5002);
    EXPECT_EQ(read(256), 0x5002);
    EXPECT_EQ(out->count, 0);
    EXPECT_TRUE(holds({}));
}

TEST_F(read_fru, returns_the_status_of_a_failed_receive_and_copies_what_it_left)
{
    expects_read().answers({0xC1, 0x02, 0xAB, 0xCD}).fails_to_receive(0x5007);
    EXPECT_EQ(read(256), 0x5007);
    EXPECT_EQ(out->completion_code, 0xC1);
    EXPECT_EQ(out->count, 2);
    EXPECT_TRUE(holds({0xAB, 0xCD}));
}

TEST_F(read_fru, refuses_a_missing_location_and_leaves_output_and_buffer_alone)
{
    EXPECT_EQ(ipmi_location_read_fru(nullptr, 0, 0, 0, 256, out.get()), 0x510a);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.journal(), (events{error_line("Invalid parameter to IPMI interface\n")}));
}

TEST_F(read_fru, refuses_a_missing_output)
{
    EXPECT_EQ(ipmi_location_read_fru(&at, 0, 0, 0, 256, nullptr), 0x510a);
    EXPECT_EQ(platform.journal(), (events{error_line("Invalid parameter to IPMI interface\n")}));
}

TEST_F(read_fru, by_number_addresses_the_slot_of_that_number)
{
    out->buffer = buffer->data();
    for (const int number : {2, 0x102, 0}) {
        platform.expects({static_cast<uint8_t>(number), 0, {0, 0}}, 0x0A11, request)
            .answers({0x00, 0x01, 0xAB});
        EXPECT_EQ(ipmi_read_fru(number, 0x07, 0x1234, 0x20, 256, out.get()), 0);
        EXPECT_EQ(out->count, 1);
    }
    EXPECT_TRUE(holds({0xAB}));
}

TEST(fru_read_request, has_11_bytes_with_the_pointer_from_byte_1_and_the_count_at_byte_9)
{
    fru_read_request record;
    memset(&record, 0, sizeof record);
    record.completion_code = 0xC1;
    record.buffer = &record;
    record.count = 0x1234;
    const void *pointer = &record;
    const uint16_t count = 0x1234;
    bytes expected(11);
    expected[0] = 0xC1;
    memcpy(expected.data() + 1, &pointer, sizeof pointer);
    memcpy(expected.data() + 9, &count, sizeof count);
    EXPECT_EQ(bytes_of(record), expected);
}
