// The scripted platform itself: what it lets pass, and what it complains about.

#include "support/whole_platform.h"

#include <csignal>
#include <stdexcept>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "platform/log.h"
#include "platform/message_service.h"
#include "platform/platform_info.h"
#include "ruk_ipmi_testing_gtest.h"

using namespace ruk_ipmi_testing;

namespace
{

class scripted : public ::testing::Test
{
  protected:
    // What an attached client gets for sending `message`.
    uint32_t send(const ipmi_request &message, uint32_t component = IPMI_COMPONENT,
                  uint32_t flags = 0)
    {
        attach_ruk_shm();
        return send_ruk_command(component, &message, 0x18 + message.data_len, flags, &index);
    }

    uint32_t receive(uint32_t capacity = 512)
    {
        length = capacity;
        return receive_ruk_response(index, 500, IPMI_COMPONENT, &response, &length);
    }

    bool complains_of(const std::string &text) const
    {
        return platform.complaint().find(text) != std::string::npos;
    }

    const ipmi_request request = request_to(blade(5), 0x0601, {0x11});
    whole_platform platform;
    ipmi_response response{};
    uint32_t index = 0;
    uint32_t length = 0;
};

} // namespace

TEST_F(scripted, has_nothing_to_complain_about_when_all_goes_as_written)
{
    platform.expects(blade(5), 0x0601, {0x11}).answers({0x00, 0x22});
    EXPECT_EQ(send(request), 0u);
    EXPECT_EQ(receive(), 0u);
    detach_ruk_shm();
    EXPECT_EQ(platform.complaint(), "");
    EXPECT_EQ(length, 0x1Cu + 2);
}

TEST_F(scripted, complains_of_an_exchange_that_never_came)
{
    platform.expects(request);
    EXPECT_TRUE(complains_of("was expected and never came"));
}

TEST_F(scripted, complains_of_an_attach_that_never_came)
{
    platform.fails_to_attach(0x5001);
    EXPECT_TRUE(complains_of("was expected to fail to attach, and nobody tried"));
}

TEST_F(scripted, complains_of_an_exchange_that_nobody_expected)
{
    EXPECT_EQ(send(request), scripted_platform::unscripted);
    EXPECT_TRUE(complains_of("a request that nobody expects"));
}

TEST_F(scripted, complains_of_a_single_wrong_bit)
{
    platform.expects(blade(5), 0x0601, {0x10});
    EXPECT_EQ(send(request), scripted_platform::unscripted);
    EXPECT_TRUE(complains_of("payload byte 0 is 0x11 instead of 0x10"));
}

TEST_F(scripted, complains_of_a_wrong_reserved_word_length_component_or_flag)
{
    ipmi_request reserved = request;
    reserved.reserved_04 = 1;
    for (int i = 0; i < 4; ++i)
        platform.expects(request);
    EXPECT_EQ(send(reserved), scripted_platform::unscripted);
    EXPECT_EQ(send(request_to(blade(5), 0x0601)), scripted_platform::unscripted);
    EXPECT_EQ(send(request, 3), scripted_platform::unscripted);
    EXPECT_EQ(send(request, 4, 1), scripted_platform::unscripted);
}

TEST_F(scripted, complains_of_exchanges_in_another_order)
{
    const ipmi_request other = request_to(blade(6), 0x0601);
    platform.expects(request);
    platform.expects(other);
    EXPECT_EQ(send(other), scripted_platform::unscripted);
}

TEST_F(scripted, complains_of_calls_without_an_attachment)
{
    platform.expects(request);
    EXPECT_EQ(send_ruk_command(4, &request, 0x19, 0, &index), 0u);
    receive();
    detach_ruk_shm();
    EXPECT_TRUE(complains_of("sent without being attached"));
    EXPECT_TRUE(complains_of("asked for an answer without being attached"));
    EXPECT_TRUE(complains_of("detached without being attached"));
}

TEST_F(scripted, complains_of_an_answer_not_fetched_and_of_one_that_is_not_there)
{
    platform.expects(request);
    send(request);
    index = 7;
    EXPECT_EQ(receive(), scripted_platform::unscripted);
    EXPECT_TRUE(complains_of("asked component 4 for the answer to message 7"));
    EXPECT_TRUE(complains_of("its answer was never asked for"));
}

TEST_F(scripted, cuts_an_answer_off_where_the_receivers_room_ends)
{
    platform.expects(request).answers({0x00, 0x22, 0x33});
    send(request);
    EXPECT_EQ(receive(0x1C + 2), 0u);
    EXPECT_EQ(length, 0x1Cu + 2);
    EXPECT_EQ(bytes_at(response.data, 3), (bytes{0x00, 0x22, 0x00}));
}

TEST_F(scripted, refuses_a_script_that_fits_no_record)
{
    EXPECT_THROW(platform.expects(blade(5), 0x0601, bytes(489)), std::length_error);
    EXPECT_THROW(scripted_exchange().answers(bytes(485)), std::length_error);
}

TEST_F(scripted, keeps_every_log_line_with_its_channel)
{
    slog_elog("%d\n", 1);
    slog_nlog("%d\n", 2);
    slog_dlog("%d\n", 3);
    slog_vlog("%d\n", 4);
    slog_dump("title ", "\x0A\xFF", 2, 1);
    os_log(1, 4, "%s", "five");
    EXPECT_EQ(platform.log(),
              (events{error_line("1\n"), notice_line("2\n"), debug_line("3\n"), verbose_line("4\n"),
                      dump_line("title ", {0x0A, 0xFF}), os_log_line("five")}));
}

TEST_F(scripted, tells_log_lines_apart_by_channel_text_and_arguments)
{
    EXPECT_NE(error_line("1\n"), debug_line("1\n"));
    EXPECT_NE(error_line("1\n"), error_line("1"));
    EXPECT_NE(dump_line("title", {1}, 1), dump_line("title", {1}, 0));
    EXPECT_NE(os_log_line("1", 1, 4), os_log_line("1", 1, 5));
}

TEST_F(scripted, prints_events_as_text)
{
    const std::string shown = ::testing::PrintToString(
        events{sent(0x18), received(1001, 500, 483), error_line("no\n"), dump_line("t", {1, 2})});
    EXPECT_EQ(shown, "{ send: 24 bytes to component 4, flags 0, receive: message 1001 from "
                     "component 4 within 500 ticks, room for 483, error: no\\n, dump: \"t\" 01 02, "
                     "1 }");
}

TEST_F(scripted, names_blades_and_no_blade)
{
    const blade_location at = blade(5, 2);
    EXPECT_STREQ(ruk_blade_clt_to_str(&at), "blade 5.2");
    EXPECT_STREQ(ruk_blade_clt_to_str(nullptr), "(none)");
}

TEST_F(scripted, shows_log_lines_by_their_level_without_their_line_ends)
{
    slog_vlog("%d\n", 1);
    slog_dump("title", "\x0A", 1, 1);
    slog_dlog("%d", 2);
    os_log(1, 4, "three\n");
    slog_nlog("%d\n", 4);
    slog_elog("%d\n", 5);
    using lines = std::vector<std::string>;
    EXPECT_EQ(platform.log_lines(log_level::error), lines{"error: 5"});
    EXPECT_EQ(platform.log_lines(), (lines{"os_log: 1, 4, three", "notice: 4", "error: 5"}));
    EXPECT_EQ(platform.log_lines(log_level::debug).size(), 5u);
    EXPECT_EQ(platform.log_lines(log_level::verbose).front(), "verbose: 1");
}

TEST_F(scripted, has_the_information_that_it_is_given)
{
    platform.has_information(35, 16);
    EXPECT_EQ(_gPlatInfo()[35], 16u);
    EXPECT_THROW(platform.has_information(64, 1), std::out_of_range);
}

TEST_F(scripted, refuses_with_a_completion_code_alone)
{
    platform.expects(request).refuses(0xC1);
    send(request);
    EXPECT_EQ(receive(), 0u);
    EXPECT_EQ(response.comp_code, 0xC1u);
    EXPECT_EQ(response.data_len, 1u);
}

TEST_F(scripted, is_alone)
{
    EXPECT_THROW(scripted_platform(), std::logic_error);
}

TEST(no_platform_death, calling_the_platform_when_none_lives_ends_the_process)
{
    EXPECT_EXIT(attach_ruk_shm(), ::testing::KilledBySignal(SIGABRT), "no scripted_platform lives");
}

TEST(unread_complaint_death, ends_the_process_when_the_platform_does)
{
    const auto break_the_script = [] {
        scripted_platform platform;
        platform.expects(blade(5), 0x0601);
    };
    EXPECT_EXIT(break_the_script(), ::testing::KilledBySignal(SIGABRT),
                "scripted_platform_test.cpp:[0-9]+: exchange 1 of 1 was expected and never came");
}

TEST(unread_complaint_death, ends_the_process_also_when_it_grew_after_it_was_read)
{
    const auto break_the_script = [] {
        scripted_platform platform;
        platform.expects(blade(5), 0x0601);
        platform.complaint();
        detach_ruk_shm();
    };
    EXPECT_EXIT(break_the_script(), ::testing::KilledBySignal(SIGABRT), "without being attached");
}

TEST(unread_complaint, leaves_an_exception_on_its_way)
{
    ::testing::internal::CaptureStderr();
    const auto fail = [] {
        scripted_platform platform;
        platform.expects(blade(5), 0x0601);
        throw std::runtime_error("what a test framework has to say");
    };
    EXPECT_THROW(fail(), std::runtime_error);
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("never came"), std::string::npos);
}

TEST(fixture, fails_its_test_with_the_complaint)
{
    class breaks_the_script : public scripted_platform_test
    {
      public:
        void TestBody() override
        {
            platform.expects(blade(5), 0x0601);
            TearDown();
        }
    };
    EXPECT_NONFATAL_FAILURE(breaks_the_script().TestBody(), "1 of 1 was expected and never came");
}

TEST(fixture, has_nothing_to_say_when_all_goes_as_written)
{
    class keeps_to_the_script : public scripted_platform_test
    {
      public:
        void TestBody() override { TearDown(); }
    };
    keeps_to_the_script().TestBody();
}
