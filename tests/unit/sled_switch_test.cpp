// The configuration of a sled's switches.

#include "ruk_ipmi/sled_switch.h"

#include <cstring>

#include "oem_shape.h"

namespace
{

constexpr char set_name[] = "ipmi_set_sled_switch_configuration";
constexpr char get_name[] = "ipmi_get_sled_switch_configuration";

// A name longer than what travels of it.
const sled_switch_config file = {{0xEE, 0xEE}, 0xEE, 0x91, 0x11223344, "sled-switch-a.bin.signed"};

const bytes set_request =
    joined({0x00, 0x0C, 0x19, 0x00, 0x00, 0x00, 0x19, 0x00, 0x91, 0x44, 0x33, 0x22, 0x11, 0, 0},
           characters("sled-switch-a.bi"));

const bytes get_request = zero_filled({0x01, 0x0C, 0x18}, 31);
const bytes get_status_request = zero_filled({0x01, 0x0C, 0x04}, 31);

// Bytes 10-14 are of no interest to the caller.
const bytes get_answer = joined({0x00, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7,
                                 SLED_SWITCH_PENDING, 0x91, 0xE1, 0xE2, 0xE3, 0xE4, 0xE5},
                                characters("sled-switch-a.bi"));

// What the caller's record, filled before, then holds.
bytes get_output()
{
    guarded<sled_switch_config> out;
    out->status = SLED_SWITCH_PENDING;
    out->len = 0x91;
    memcpy(out->name, "sled-switch-a.bi", 16);
    out->name[31] = '\0';
    return out.content();
}

event failed(const char *name, const char *numbers)
{
    return error_line(formatted("\n%s command failed %s\n", name, numbers));
}

// Both take 60 bytes, log a failure, and count the completion code first.
oem_row configuring(oem_row row, const char *name)
{
    row.capacity = 60;
    row.counts_first = preferred::completion_code;
    row.after_refusal = {failed(name, "rc: 0 cc: 0xC1")};
    row.after_failure = {failed(name, "rc: 20481 cc: 0x0")};
    row.after_both = {failed(name, "rc: 20481 cc: 0xC1")};
    return row;
}

// A caller's record in one place, for the log tells its address.
guarded<sled_switch_config> &fresh_record()
{
    static std::optional<guarded<sled_switch_config>> record;
    return record.emplace();
}

event refused_to_set(const sled_switch_config *cfg, const blade_location *at, int len)
{
    return error_line(formatted("%s: invalid param %p %p %d\n", set_name,
                                static_cast<const void *>(cfg), static_cast<const void *>(at),
                                len));
}

event refused_to_get(const sled_switch_config *out, const blade_location *at)
{
    return error_line(formatted("%s: invalid param %p %p\n", get_name,
                                static_cast<const void *>(out), static_cast<const void *>(at)));
}

oem_row set_row()
{
    oem_row row =
        configuring(oem_command(
                        "set_configuration",
                        [](auto at) { return ipmi_set_sled_switch_configuration(at, &file); },
                        0x30D0, set_request),
                    set_name);
    row.before = {debug_line("ipmi_set_sled_switch_configuration: slot: blade 5.0 CRC: 11223344 "
                             "name: sled-switch-a.bin.signed len: 145\n"),
                  dump_line(set_name, set_request, 1)};
    row.missing_location = events{refused_to_set(&file, nullptr, 0x91)};
    return row;
}

oem_row get_row()
{
    oem_row row = configuring(oem_query(
                                  "get_configuration",
                                  [](auto at) {
                                      guarded<sled_switch_config> &out = fresh_record();
                                      const int result =
                                          ipmi_get_sled_switch_configuration(at, out.get());
                                      return outcome_of(result, out);
                                  },
                                  0x30D0, get_request, get_answer, get_output()),
                              get_name);
    row.missing_location = events{refused_to_get(fresh_record().get(), nullptr)};
    return row;
}

std::vector<oem_row> configuration_rows()
{
    return {set_row(), get_row()};
}

INSTANTIATE_OEM_SHAPE(sled_switch, configuration_rows());

class sled_switch : public scripted_test
{
  protected:
    scripted_exchange &expects_get() { return platform.expects(at, 0x30D0, get_request); }
    scripted_exchange &expects_get_status()
    {
        return platform.expects(at, 0x30D0, get_status_request);
    }

    int get() { return ipmi_get_sled_switch_configuration(&at, out.get()); }

    const blade_location at = blade(5, 2);
    guarded<sled_switch_config> out;
};

using set_sled_switch = sled_switch;
using get_sled_switch = sled_switch;

} // namespace

TEST_F(sled_switch, a_code_left_by_a_failed_receive_counts_for_a_configuration_and_not_for_links)
{
    platform.expects(at, 0x30D0, set_request).answers({0xC3}).fails_to_receive(0x5002);
    EXPECT_EQ(ipmi_set_sled_switch_configuration(&at, &file), 0xC3);

    platform.expects(at, 0x30D0, {0x01, 0x0D, 0x04, 0, 0, 0})
        .answers({0xC3})
        .fails_to_receive(0x5002);
    uint8_t a, b;
    EXPECT_EQ(ipmi_location_get_sled_switch_link_status(&at, &a, &b), 0x5002);
}

TEST_F(set_sled_switch, refuses_a_length_of_0)
{
    sled_switch_config empty = file;
    empty.len = 0;
    EXPECT_EQ(ipmi_set_sled_switch_configuration(&at, &empty), 0x510a);
    EXPECT_EQ(platform.journal(), events{refused_to_set(&empty, &at, 0)});
}

TEST_F(set_sled_switch, refuses_a_missing_file_and_logs_255_for_its_length)
{
    EXPECT_EQ(ipmi_set_sled_switch_configuration(&at, nullptr), 0x510a);
    EXPECT_EQ(ipmi_set_sled_switch_configuration(nullptr, nullptr), 0x510a);
    EXPECT_EQ(platform.journal(),
              (events{refused_to_set(nullptr, &at, 255), refused_to_set(nullptr, nullptr, 255)}));
}

TEST_F(set_sled_switch, names_the_blade_and_prints_the_crc_without_leading_zeros)
{
    sled_switch_config other = file;
    other.crc = 0xABC;
    bytes request = set_request;
    request[9] = 0xBC;
    request[10] = 0x0A;
    request[11] = request[12] = 0x00;
    platform.expects(at, 0x30D0, request);
    EXPECT_EQ(ipmi_set_sled_switch_configuration(&at, &other), 0);
    EXPECT_EQ(platform.log().front(),
              debug_line("ipmi_set_sled_switch_configuration: slot: blade 5.2 CRC: ABC "
                         "name: sled-switch-a.bin.signed len: 145\n"));
}

TEST_F(set_sled_switch, sends_what_lies_behind_the_end_of_a_short_name_too)
{
    sled_switch_config other = file;
    memcpy(other.name, "a\0bcdefghijklmno", 16);
    bytes request = set_request;
    std::copy_n(other.name, 16, request.begin() + 15);
    platform.expects(at, 0x30D0, request);
    EXPECT_EQ(ipmi_set_sled_switch_configuration(&at, &other), 0);
}

TEST_F(set_sled_switch, logs_no_more_than_the_32_characters_of_a_name_without_end)
{
    *out = file;
    memset(out->name, 'x', sizeof out->name);
    platform.expects(at, 0x30D0, joined(bytes_at(set_request.data(), 15), bytes(16, 'x')));
    EXPECT_EQ(ipmi_set_sled_switch_configuration(&at, out.get()), 0);
    EXPECT_EQ(
        platform.log().front(),
        debug_line("ipmi_set_sled_switch_configuration: slot: blade 5.2 CRC: 11223344 name: " +
                   std::string(32, 'x') + " len: 145\n"));
}

TEST_F(get_sled_switch, refuses_a_missing_output)
{
    EXPECT_EQ(ipmi_get_sled_switch_configuration(&at, nullptr), 0x510a);
    EXPECT_EQ(ipmi_get_sled_switch_configuration(nullptr, nullptr), 0x510a);
    EXPECT_EQ(platform.journal(),
              (events{refused_to_get(nullptr, &at), refused_to_get(nullptr, nullptr)}));
}

TEST_F(get_sled_switch, takes_the_status_alone_when_the_blade_tells_no_length)
{
    bytes answer = get_answer;
    answer[9] = 0x00;
    expects_get().answers(answer);
    EXPECT_EQ(get(), 0);

    guarded<sled_switch_config> expected;
    expected->status = SLED_SWITCH_PENDING;
    EXPECT_EQ(hex(out.content()), hex(expected.content()));
    EXPECT_TRUE(out.guards_hold());
}

TEST_F(get_sled_switch, gives_zeros_for_the_name_that_an_answer_lacks)
{
    expects_get().answers({0x00, 0, 0, 0, 0, 0, 0, 0, 0x01, 0x91});
    litter_the_stack();
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(out->len, 0x91);
    EXPECT_EQ(bytes_at(out->name, 16), bytes(16));
}

TEST_F(get_sled_switch, asks_for_the_status_alone_after_request_data_truncated)
{
    expects_get().answers({0xC6});
    expects_get_status().answers({0x00, 0, 0, 0, 0, 0, 0, 0, SLED_SWITCH_COMPLETED, 0x00});
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(out->status, SLED_SWITCH_COMPLETED);
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x18 + 31), received(1001, 500, 60), detached(), attached(),
                      sent(0x18 + 31), received(1002, 500, 60), detached()}));
}

TEST_F(get_sled_switch, takes_a_whole_answer_to_the_second_question_too)
{
    expects_get().answers({0xC6});
    expects_get_status().answers(get_answer);
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(hex(out.content()), hex(get_output()));
}

TEST_F(get_sled_switch, returns_0_and_leaves_the_output_alone_when_the_blade_truncates_twice)
{
    expects_get().answers({0xC6});
    expects_get_status().answers({0xC6});
    EXPECT_EQ(get(), 0);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.log(), events{});
}

TEST_F(get_sled_switch, returns_the_last_status_when_the_second_truncation_came_with_one)
{
    expects_get().answers({0xC6});
    expects_get_status().answers({0xC6}).fails_to_receive(0x5002);
    EXPECT_EQ(get(), 0x5002);
    EXPECT_TRUE(out.untouched());
    EXPECT_EQ(platform.log().size(), 2u); // those of the failed receive
}

TEST_F(get_sled_switch, asks_a_second_time_also_when_the_truncation_came_with_a_status)
{
    expects_get().answers({0xC6}).fails_to_receive(0x5002);
    expects_get_status().answers(get_answer);
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(hex(out.content()), hex(get_output()));
}

TEST_F(get_sled_switch, forgets_the_first_answer_before_it_asks_again)
{
    bytes truncated = get_answer;
    truncated[0] = 0xC6;
    expects_get().answers(truncated);
    expects_get_status().answers({0x00});
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(out->status, 0);
    EXPECT_EQ(out->len, out.fill);
}

TEST_F(get_sled_switch, logs_and_returns_what_goes_wrong_with_the_second_question)
{
    expects_get().answers({0xC6});
    expects_get_status().answers({0xC1});
    EXPECT_EQ(get(), 0xC1);
    EXPECT_EQ(platform.log(), events{failed(get_name, "rc: 0 cc: 0xC1")});

    expects_get().answers({0xC6});
    platform.fails_to_attach(0x5001);
    EXPECT_EQ(get(), 0x5001);
    EXPECT_EQ(platform.log().back(), failed(get_name, "rc: 20481 cc: 0x0"));
    EXPECT_TRUE(out.untouched());
}
