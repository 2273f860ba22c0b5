// Every command function, again and again, each time with another call of the
// platform failing: whichever it is, the caller learns of it, and nothing stays
// attached.

#include <algorithm>
#include <gtest/gtest.h>
#include <iomanip>
#include <numeric>
#include <set>
#include <sstream>
#include <string>

#include "support/driven_platform.h"
#include "support/every_function.h"

using namespace ruk_ipmi_testing;

namespace
{

constexpr uint32_t failure = 0x5099;
constexpr unsigned none = ~0u;

// Each exchange makes four calls of the platform, the last of which puts back
// what the first took.
enum call { attach, send, receive, detach, calls_of_exchange };

class failing_platform final : public platform_driver
{
  public:
    explicit failing_platform(unsigned fails_at) : fails_at_(fails_at) {}

    uint32_t status() override { return calls_++ == fails_at_ ? failure : 0; }

    // Nine bytes, so that the answers whose length is checked are right; a length
    // that ends every loop.
    void answer(ipmi_response &response, uint32_t) override
    {
        response.data_len = 9;
        for (uint32_t at = 1; at < response.data_len; ++at)
            response.data[at] = 1;
        response.data[7] = 2; // the length of an extended parameter, in two bytes
        response.data[8] = 0;
    }

    uint32_t platform_word() override { return 1; }

    void sent(const ipmi_request &request) override
    {
        std::ostringstream text;
        text << std::hex << std::setfill('0') << std::setw(4) << request.netfn_cmd << ':';
        for (uint32_t at = 0; at < request.data_len && at < sizeof request.data; ++at)
            text << std::setw(2) << unsigned{request.data[at]};
        requests_ += (requests_.empty() ? "" : ";") + text.str();
    }

    unsigned calls() const { return calls_; }
    const std::string &requests() const { return requests_; }

  private:
    const unsigned fails_at_;
    unsigned calls_ = 0;
    std::string requests_;
};

struct ending {
    uint32_t result;
    unsigned calls;
    std::string requests; // "netfn_cmd:payload" each
};

ending run_with(const std::vector<uint8_t> &drawn, const command_function &function,
                unsigned fails_at)
{
    arguments given(drawn.data(), drawn.size());
    failing_platform platform(fails_at);
    const uint32_t result = function.call(given);
    failing_platform::check_nothing_is_attached();
    return {result, platform.calls(), platform.requests()};
}

ending run_with(uint8_t filling, const command_function &function, unsigned fails_at)
{
    return run_with(std::vector<uint8_t>(64, filling), function, fails_at);
}

// With arguments that the function does not refuse: made of ones or, where it
// does, of zeros.
ending run(const command_function &function, unsigned fails_at)
{
    const bool takes_ones = run_with(1, function, none).calls != 0;
    return run_with(takes_ones ? 1 : 0, function, fails_at);
}

// What the function sends with arguments of which no two bytes are alike, some of them replaced by
// 0 or 1 where it would refuse them, and with others. The result of a test keeps it, for the
// descriptions of the commands are held to it.
std::string requests_of(const command_function &function)
{
    std::set<std::string> each;
    for (const uint8_t allowed : {uint8_t{0}, uint8_t{1}})
        for (size_t first = 0; first < 16; ++first)
            for (size_t last = first; last <= first + 4; ++last) {
                std::vector<uint8_t> drawn(64);
                std::iota(drawn.begin(), drawn.end(), uint8_t{1});
                std::fill(&drawn[first], &drawn[last], allowed);
                each.insert(run_with(drawn, function, none).requests);
            }
    std::string all;
    for (const std::string &requests : each)
        all += requests + ";";
    return all;
}

class every_command : public ::testing::TestWithParam<command_function>
{
};

std::string name_of(const ::testing::TestParamInfo<command_function> &info)
{
    return info.param.name;
}

} // namespace

TEST_P(every_command, goes_through_with_a_platform_that_works)
{
    const ending whole = run(GetParam(), none);
    EXPECT_GE(whole.calls, calls_of_exchange);
    EXPECT_EQ(whole.calls % calls_of_exchange, 0u);
    RecordProperty("requests", requests_of(GetParam()));
}

TEST_P(every_command, tells_its_caller_of_the_last_exchange_that_fails)
{
    const unsigned last = run(GetParam(), none).calls - calls_of_exchange;
    for (const call each : {attach, send, receive})
        EXPECT_EQ(run(GetParam(), last + each).result, failure) << each;
}

TEST_P(every_command, takes_no_notice_of_a_detach_that_fails)
{
    const ending whole = run(GetParam(), none);
    for (unsigned at = detach; at < whole.calls; at += calls_of_exchange)
        EXPECT_EQ(run(GetParam(), at).result, whole.result) << at;
}

TEST_P(every_command, comes_to_its_end_whichever_call_fails)
{
    for (unsigned at = 0; at < run(GetParam(), none).calls; ++at)
        run(GetParam(), at);
}

INSTANTIATE_TEST_SUITE_P(library, every_command, ::testing::ValuesIn(command_functions()), name_of);
