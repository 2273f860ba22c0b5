#include "cli/stream.h"

#include <gtest/gtest.h>

using namespace cli;

namespace
{

struct written {
    std::string out;
    std::string err;
};

template <typename Write>
written what(format chosen, Write write)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    stream out(chosen, false);
    write(out);
    return {testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

} // namespace

TEST(stream, shows_the_values_side_by_side_and_what_a_number_is)
{
    const auto lines = [](stream &out) {
        out.line({{"time", "noon"}, {"blade", "3.2"}, {"event", 40}, {"name", nullptr}});
    };
    EXPECT_EQ(what(format::for_people, lines).out, "noon  blade 3.2  event 40  -\n");
}

TEST(stream, keeps_its_columns_as_wide_as_they_were)
{
    const auto lines = [](stream &out) {
        out.line({{"a", "long"}, {"b", "x"}});
        out.line({{"a", "s"}, {"b", "y"}});
    };
    EXPECT_EQ(what(format::for_people, lines).out, "long  x\ns     y\n");
}

TEST(stream, is_an_object_on_each_line_in_json)
{
    const auto lines = [](stream &out) {
        out.line({{"event", 40}, {"name", "a\nb\xFF"}});
        out.line({{"event", 41}, {"name", nullptr}});
    };
    std::istringstream read(what(format::as_json, lines).out);
    std::string line;
    EXPECT_EQ(json::parse((std::getline(read, line), line))["event"], 40);
    EXPECT_EQ(json::parse((std::getline(read, line), line))["name"], nullptr);
    EXPECT_FALSE(std::getline(read, line));
}

TEST(stream, gives_notices_on_standard_error_and_in_json_as_lines_too)
{
    const auto notice = [](stream &out) { out.notice("cleared", {{"cleared", true}}); };
    const written people = what(format::for_people, notice);
    EXPECT_EQ(people.out, "");
    EXPECT_EQ(people.err, "cleared\n");
    const written program = what(format::as_json, notice);
    EXPECT_EQ(program.out, "{\"cleared\":true}\n");
    EXPECT_EQ(program.err, "cleared\n");
}

TEST(stream, tells_a_failure_once_as_long_as_it_lasts)
{
    const auto failing = [](stream &out) {
        out.works("1");
        for (int again = 0; again < 3; ++again)
            out.failed("1", failure(exit_transport, "no answer"));
        out.works("1");
        out.works("1");
        out.failed("1", failure(exit_transport, "no answer"));
    };
    EXPECT_EQ(what(format::for_people, failing).err,
              "blade 1: no answer\nblade 1: works again\nblade 1: no answer\n");
}

TEST(stream, tells_the_failures_of_each_blade)
{
    const auto failing = [](stream &out) {
        for (const char *blade : {"1", "2", "1", "2"})
            out.failed(blade, failure(exit_transport, "no answer"));
    };
    EXPECT_EQ(what(format::for_people, failing).err, "blade 1: no answer\nblade 2: no answer\n");
}
