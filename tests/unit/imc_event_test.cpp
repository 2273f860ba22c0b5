// The miscellaneous IMC event record.

#include "ruk_ipmi/imc_event.h"

#include <numeric>

#include "oem_shape.h"

namespace
{

constexpr char name[] = "location_blade_get_miscellaneous_imc_event";

const bytes request = {0x01, 0x1B, 0x2A, 0x00, 0x00, 0x00};

// What every answer that was understood leaves in the debug log.
events read(unsigned payload_len, unsigned feature_bits, unsigned fru_id)
{
    return {debug_line(formatted("%s(): Payload Length is %x \n", name, payload_len)),
            debug_line(formatted("%s(): FeatureBit is %x \n", name, feature_bits)),
            debug_line(formatted("%s(): Fruid is %x \n", name, fru_id))};
}

outcome get_event(const blade_location *at)
{
    guarded<misc_imc_event> event;
    const int result = location_blade_get_miscellaneous_imc_event(at, event.get());
    return outcome_of(result, event);
}

std::vector<oem_row> imc_event_rows()
{
    oem_row row = oem_query(
        "get_miscellaneous_imc_event", get_event, 0x30D0, request,
        {0x00, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0x08, 0x00, 0x34, 0x12, 0xAB, 0xA1, 0xA2, 0xA3, 0xF6},
        bytes_of(misc_imc_event{8, 0x1234, 0xAB, {0xA1, 0xA2, 0xA3}}));
    row.clears_output_first = true;
    row.after_success = read(0x8, 0x1234, 0xAB);
    row.after_refusal = {
        error_line("location_blade_get_miscellaneous_imc_event() :  ipmi cmd  failed c1 \n")};
    row.missing_location =
        events{error_line("IPMI Cmd IPMI_MISC_SUBCMD_IMCEVENT_BIT36 Invalid parameter to IPMI "
                          "interface\n"),
               os_log_line("location_blade_get_miscellaneous_imc_event: invalid parameter blade "
                           "location (none) \n")};
    return {row};
}

INSTANTIATE_OEM_SHAPE(imc_event, imc_event_rows());

class imc_event : public scripted_test
{
  protected:
    // An answer with more bytes than the record, and as many of them its own as it claims.
    scripted_exchange &expects_answer(uint16_t payload_len)
    {
        bytes answer = {0x00,
                        0,
                        0,
                        0,
                        0,
                        0,
                        static_cast<uint8_t>(payload_len),
                        static_cast<uint8_t>(payload_len >> 8),
                        0x02,
                        0x01,
                        0x03};
        answer.resize(455);
        std::iota(answer.begin() + 11, answer.end(), uint8_t{0x41});
        return platform.expects(at, 0x30D0, request).answers(answer);
    }

    int get() { return location_blade_get_miscellaneous_imc_event(&at, event.get()); }

    bytes data() { return bytes_at(event->data, sizeof event->data); }

    const blade_location at = blade(5, 2);
    guarded<misc_imc_event> event;
};

using imc_event_death = imc_event;

// The record's first bytes of data as `expects_answer` has them, and zeros.
bytes counted(size_t length)
{
    bytes data(length);
    std::iota(data.begin(), data.end(), uint8_t{0x41});
    return zero_filled(data, 37);
}

} // namespace

TEST_F(imc_event, copies_the_37_bytes_of_a_full_record)
{
    expects_answer(42);
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(hex(data()), hex(counted(37)));
    EXPECT_TRUE(event.guards_hold());
}

TEST_F(imc_event, copies_what_the_record_counts_beyond_its_first_five_bytes)
{
    for (const uint16_t length : {uint16_t{5}, uint16_t{6}, uint16_t{41}}) {
        expects_answer(length);
        EXPECT_EQ(get(), 0);
        EXPECT_EQ(hex(data()), hex(counted(length - 5u)));
        EXPECT_EQ(event->payload_len, length);
    }
}

TEST_F(imc_event, copies_nothing_of_a_record_shorter_than_five_bytes)
{
    for (uint16_t length = 0; length < 5; ++length) {
        platform.forget();
        expects_answer(length);
        EXPECT_EQ(get(), 0);
        EXPECT_EQ(hex(bytes_of(*event)), hex(bytes_of(misc_imc_event{length, 0x0102, 3, {}})));
        EXPECT_EQ(platform.log(), read(length, 0x102, 0x3));
    }
    EXPECT_TRUE(event.guards_hold());
}

TEST_F(imc_event, refuses_a_record_longer_than_42_bytes_and_tells_its_first_fields)
{
    expects_answer(43);
    EXPECT_EQ(get(), 0x510a);
    EXPECT_EQ(hex(event.content()), hex(bytes_of(misc_imc_event{43, 0x0102, 3, {}})));

    const events fields = read(0x2b, 0x102, 0x3);
    EXPECT_EQ(platform.log(),
              (events{error_line("location_blade_get_miscellaneous_imc_event():Invalid Payload "
                                 "Length received  43\n"),
                      os_log_line("location_blade_get_miscellaneous_imc_event: Payload Length "
                                  "blade location blade 5.2 \n"),
                      fields[0], fields[1], fields[2]}));
}

TEST_F(imc_event, refuses_the_longest_record_that_an_answer_can_claim)
{
    expects_answer(0xFFFF);
    EXPECT_EQ(get(), 0x510a);
    EXPECT_EQ(hex(event.content()), hex(bytes_of(misc_imc_event{0xFFFF, 0x0102, 3, {}})));
    EXPECT_EQ(platform.log().front(),
              error_line("location_blade_get_miscellaneous_imc_event():Invalid Payload Length "
                         "received  65535\n"));
    EXPECT_TRUE(event.guards_hold());
}

TEST_F(imc_event, is_zero_where_an_answer_is_short)
{
    platform.expects(at, 0x30D0, request).answers({0x00, 0, 0, 0, 0, 0, 42, 0, 0, 0, 0, 0x41});
    litter_the_stack();
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(hex(data()), hex(counted(1)));

    platform.expects(at, 0x30D0, request).answers({0x00});
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(hex(event.content()), hex(bytes(42)));
}

TEST_F(imc_event_death, a_missing_record_is_not_refused_but_cleared)
{
    EXPECT_DEATH(location_blade_get_miscellaneous_imc_event(&at, nullptr), "");
}
