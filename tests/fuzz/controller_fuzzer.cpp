// Any answers of a bridged controller: every request ends in time, with an answer that fits or
// without any, and the next session is none the worse for it.
//
// An input's first three bytes say what session is asked for and what is done with it; the rest is
// the controller's script.

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "chassisd/bridge/bridge.h"
#include "drawn_controller.h"

using namespace ruk_ipmi_testing;

namespace
{

const std::string password = "secret";
const chassisd::request get_device_id{0x06, 0, 0x01, {}};

[[noreturn]] void fail(const char *what)
{
    fprintf(stderr, "%s\n", what);
    abort();
}

chassisd::bridge_config config_for(const drawn_controller &controller, uint8_t cipher_suite)
{
    chassisd::bridge_config config;
    config.host = "127.0.0.1";
    config.port = controller.port();
    config.username = "fuzzer";
    config.password = password;
    config.cipher_suite = cipher_suite;
    return config;
}

// None for half of all bytes: most workarounds are for FreeIPMI's session alone.
std::vector<std::string> draw_workarounds(uint8_t drawn)
{
    std::vector<std::string> chosen;
    if (drawn & 0x80)
        return chosen;
    for (const std::string &name : chassisd::workaround_names()) {
        if (drawn & 1)
            chosen.push_back(name);
        drawn >>= 1;
    }
    return chosen;
}

void check(const chassisd::answer &given)
{
    constexpr size_t longest = 1023; // more than a response record takes, and no more
    const bool is_right = given.status != 0 ? given.data.empty()
                                            : !given.data.empty() && given.data.size() <= longest;
    if (!is_right)
        fail("neither an answer nor none");
}

template <typename Call>
void in_time(Call call)
{
    const auto start = std::chrono::steady_clock::now();
    call();
    if (std::chrono::steady_clock::now() - start > std::chrono::seconds(5))
        fail("the controller is waited for too long");
}

// After some requests there is nothing to do for a while.
void ask(const chassisd::bridge_config &config, int requests, unsigned idle_afterwards)
{
    const auto bridge = chassisd::make_bridge(config);
    for (int number = 0; number < requests; ++number) {
        in_time([&] { check(bridge->execute(get_device_id)); });
        if (idle_afterwards >> number & 1)
            in_time([&] { bridge->idle(); });
        if (bridge->idle_period().count() < 0)
            fail("no time is that short");
    }
}

// The fuzzer's own alarm interrupts what waits, but not twice in a row.
void check_the_next_session(uint8_t cipher_suite)
{
    const drawn_controller honest(password, {}, 0);
    const chassisd::bridge_config config = config_for(honest, cipher_suite);
    for (int left = 2; left != 0; --left) {
        const chassisd::answer given = chassisd::make_bridge(config)->execute(get_device_id);
        if (given.status == 0 && given.data == rmcpplus_controller::usual_answer)
            return;
    }
    fail("an honest controller is not heard");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The log is for those who ask for it: trouble is the rule here.
    static const bool is_silent = setenv("RUK_LOG", "none", 0) == 0;
    if (size < 3 || !is_silent)
        return 0;
    constexpr uint8_t cipher_suites[] = {3, 0, 17, 2};
    const uint8_t cipher_suite = cipher_suites[data[0] % 4];
    const unsigned idle_afterwards = data[0] >> 2 & 0x0F;
    const bool repeats = (data[0] & 0x40) != 0;
    const bool is_kept = (data[0] & 0x80) == 0;
    const int requests = 1 + data[2] % 4;
    const unsigned honest = data[2] >> 2 & 0x0F;
    {
        const script answers(data + 3, size - 3, repeats);
        const drawn_controller controller(password, answers, honest);
        chassisd::bridge_config config = config_for(controller, cipher_suite);
        config.workarounds = draw_workarounds(data[1]);
        config.timeout_ms = 100; // as short as a chassis file may have it
        config.retransmit_ms = 50;
        if (!is_kept)
            config.keepalive_s = 0;
        ask(config, requests, idle_afterwards);
    }
    check_the_next_session(cipher_suite);
    return 0;
}
