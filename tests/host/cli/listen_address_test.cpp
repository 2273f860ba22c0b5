#include "cli/exporter/listen_address.h"

#include <gtest/gtest.h>

#include "cli/failure.h"

using namespace cli;

namespace
{

std::string read_back(const std::string &typed)
{
    return address_text(parse_listen_address(typed));
}

} // namespace

TEST(listen_address, has_a_port_of_its_own_or_the_usual_one)
{
    EXPECT_EQ(address_text({}), "127.0.0.1:9623");
    EXPECT_EQ(read_back("10.0.0.1"), "10.0.0.1:9623");
    EXPECT_EQ(read_back("localhost:80"), "localhost:80");
    EXPECT_EQ(read_back("127.0.0.1:0"), "127.0.0.1:0");
}

TEST(listen_address, has_brackets_around_colons)
{
    EXPECT_EQ(parse_listen_address("[::1]").host, "::1");
    EXPECT_EQ(read_back("[::1]"), "[::1]:9623");
    EXPECT_EQ(read_back("[::]:65535"), "[::]:65535");
}

TEST(listen_address, is_nothing_else)
{
    for (const char *wrong :
         {"", ":9623", "::1", "::1:9623", "[::1", "[::1]9623", "[]", "[]:1",
          "localhost:", "localhost:x", "localhost:65536", "localhost:-1", "[::1]:", "[::1]:1:2"})
        EXPECT_THROW(parse_listen_address(wrong), failure) << wrong;
}
