// A blade's small settings: the messages of the LCD, link tuning, automatic throttling.

#include "ruk_ipmi/settings.h"

#include "oem_shape.h"

namespace
{

const event refusal_of_arguments = error_line("Invalid parameter to IPMI interface\n");

const bytes lcd_payload = {0x01, 0x02, 0x05, 0x00, 0x00, 0x00};
const bytes lcd_answer = {0x00, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0x0A, 0x0B, 0xF8};

const bytes version_payload = {0x01, 0x11, 0x0B, 0x00, 0x00, 0x00, 0x01};
const bytes version_answer = {0x00, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xC0,
                              0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1, 0xB2, 0xB3};

const bytes tx_payload = {0x01, 0x11, 0x03, 0x00, 0x00, 0x00, 0x02};
const bytes tx_answer = {0x00, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0x0D};

// A row whose function checks no location.
oem_row trusting(oem_row row)
{
    row.missing_location.reset();
    return row;
}

template <typename Function, typename Blade>
outcome lcd_status(Function get, Blade blade)
{
    guarded<uint8_t> a, b;
    const int result = get(blade, a.get(), b.get());
    return outcome_of(result, a, b);
}

oem_row lcd_status_row()
{
    oem_row row = trusting(
        oem_query("get_lcd_hide_status",
                  [](auto at) { return lcd_status(ipmi_location_get_lcd_hide_status, at); }, 0x30D0,
                  lcd_payload, lcd_answer, {0x0A, 0x0B}));
    row.call_by_number = [](int number) { return lcd_status(ipmi_get_lcd_hide_status, number); };
    row.writes_output_if_unreached = true;
    return row;
}

oem_row lcd_row(const char *name, int (*location_form)(const blade_location *),
                int (*number_form)(int), uint8_t hidden)
{
    oem_row row = trusting(oem_command(name, location_form, 0x30D0,
                                       {0x00, 0x02, 0x03, 0x00, 0x00, 0x00, 0x03, 0x00, hidden}));
    row.call_by_number = [=](int number) { return outcome_of(number_form(number)); };
    return row;
}

outcome link_tuning_version(const blade_location *at)
{
    guarded<uint32_t> a, b;
    guarded<uint8_t> c;
    const int result = ipmi_location_get_link_tuning_version(at, a.get(), b.get(), c.get());
    return outcome_of(result, a, b, c);
}

outcome link_tuning_tx_status(const blade_location *at)
{
    guarded<uint8_t> status;
    const int result = ipmi_location_get_link_tuning_tx_status(at, status.get());
    return outcome_of(result, status);
}

oem_row autothrottle_row()
{
    oem_row row =
        oem_command("set_autothrottle_delay", ipmi_location_set_autothrottle_delay, 0x30D0,
                    {0x00, 0x1A, 0x05, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x01, 0x59});
    row.missing_location =
        events{refusal_of_arguments, os_log_line("ipmi_location_set_autothrottle_delay: invalid "
                                                 "parameter blade location\n")};
    return row;
}

std::vector<oem_row> settings_rows()
{
    return {
        lcd_status_row(),
        lcd_row("hide_lcd_messages", ipmi_location_hide_lcd_messages, ipmi_hide_lcd_messages, 0x01),
        lcd_row("unhide_lcd_messages", ipmi_location_unhide_lcd_messages, ipmi_unhide_lcd_messages,
                0x00),
        oem_query("get_link_tuning_version", link_tuning_version, 0x30D0, version_payload,
                  version_answer, {0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1, 0xB2, 0xB3, 0xC0}),
        oem_query("get_link_tuning_tx_status", link_tuning_tx_status, 0x30D0, tx_payload, tx_answer,
                  {0x0D}),
        autothrottle_row()};
}

INSTANTIATE_OEM_SHAPE(settings, settings_rows());

class settings : public scripted_test
{
  protected:
    const blade_location at = blade(5, 2);
};

class lcd : public settings
{
  protected:
    scripted_exchange &expects_get() { return platform.expects(at, 0x30D0, lcd_payload); }

    outcome get() { return lcd_status(ipmi_location_get_lcd_hide_status, &at); }
};

using link_tuning = settings;

} // namespace

TEST_F(lcd, refuses_each_missing_output_before_it_looks_at_the_location)
{
    guarded<uint8_t> status;
    for (const blade_location *location : {&at, static_cast<const blade_location *>(nullptr)}) {
        EXPECT_EQ(ipmi_location_get_lcd_hide_status(location, nullptr, status.get()), 0x510a);
        EXPECT_EQ(ipmi_location_get_lcd_hide_status(location, status.get(), nullptr), 0x510a);
    }
    EXPECT_TRUE(status.untouched());
    EXPECT_EQ(platform.journal(), events(4, refusal_of_arguments));
}

TEST_F(lcd, gives_zeros_for_what_a_short_answer_lacks)
{
    expects_get().answers({0x00, 0, 0, 0, 0, 0, 0, 0, 0x0A});
    EXPECT_EQ(get().output, (bytes{0x0A, 0x00}));
    expects_get().answers({0x00});
    EXPECT_EQ(get().output, (bytes{0x00, 0x00}));
}

TEST_F(lcd, reads_no_further_than_the_answer_claims_to_go)
{
    expects_get().answers(lcd_answer).with_data_len(9);
    EXPECT_EQ(get().output, (bytes{0x0A, 0x00}));
    expects_get().answers(lcd_answer).with_data_len(0xFFFFFFFF);
    EXPECT_EQ(get().output, (bytes{0x0A, 0x0B}));
}

TEST_F(lcd, takes_no_notice_of_what_a_long_answer_adds)
{
    expects_get().answers(zero_filled(lcd_answer, 455));
    const outcome seen = get();
    EXPECT_EQ(seen.result, 0);
    EXPECT_EQ(seen.output, (bytes{0x0A, 0x0B}));
}

TEST_F(link_tuning, refuses_each_missing_output_but_the_last_of_the_version)
{
    guarded<uint32_t> word;
    guarded<uint8_t> byte;
    EXPECT_EQ(ipmi_location_get_link_tuning_version(&at, nullptr, word.get(), byte.get()), 0x510a);
    EXPECT_EQ(ipmi_location_get_link_tuning_version(&at, word.get(), nullptr, byte.get()), 0x510a);
    EXPECT_EQ(ipmi_location_get_link_tuning_tx_status(&at, nullptr), 0x510a);
    EXPECT_TRUE(word.untouched() && byte.untouched());
    EXPECT_EQ(platform.journal(), events(3, refusal_of_arguments));

    platform.expects(at, 0x30D0, version_payload).answers({0xC1});
    EXPECT_EQ(ipmi_location_get_link_tuning_version(&at, word.get(), word.get(), nullptr), 0xC1);
}

TEST_F(link_tuning, refuses_a_version_that_is_not_17_bytes_long)
{
    for (const size_t length : {0, 16, 18, 455}) {
        platform.forget();
        platform.expects(at, 0x30D0, version_payload).answers(bytes(length));
        const outcome seen = link_tuning_version(&at);
        EXPECT_EQ(seen.result, 0x5109);
        EXPECT_TRUE(seen.untouched);
        EXPECT_EQ(platform.log(), events{error_line("Invalid response length\n")});
    }
}

TEST_F(link_tuning, refuses_a_transmit_status_that_is_not_9_bytes_long)
{
    for (const size_t length : {0, 8, 10, 455}) {
        platform.forget();
        platform.expects(at, 0x30D0, tx_payload).answers(bytes(length));
        const outcome seen = link_tuning_tx_status(&at);
        EXPECT_EQ(seen.result, 0x5109);
        EXPECT_TRUE(seen.untouched);
        EXPECT_EQ(platform.log(), events{error_line("Invalid response length\n")});
    }
}

TEST_F(link_tuning, believes_the_length_that_the_answer_claims)
{
    platform.expects(at, 0x30D0, version_payload).answers(version_answer).with_data_len(16);
    EXPECT_EQ(link_tuning_version(&at).result, 0x5109);
    platform.expects(at, 0x30D0, tx_payload).answers(tx_answer).with_data_len(10);
    EXPECT_EQ(link_tuning_tx_status(&at).result, 0x5109);
}
