// A controller on this machine, and a network before it, that are told how to misbehave.
#ifndef RUK_TESTS_HOST_BRIDGE_SPOILT_CONTROLLER_H
#define RUK_TESTS_HOST_BRIDGE_SPOILT_CONTROLLER_H

#include <atomic>
#include <chrono>
#include <mutex>

#include "chassisd/bridge/bridge.h"
#include "support/rmcpplus_controller.h"
#include "support/udp_service.h"

namespace tests
{

using chassisd::bytes;
using ruk_ipmi_testing::layer;
using ruk_ipmi_testing::rmcpplus_controller;

// The kinds of payload. Before a session a message is in another format; FreeIPMI begins so.
enum kind : uint8_t {
    open_session_request = 0x10,
    open_session_response = 0x11,
    rakp_1 = 0x12,
    rakp_2 = 0x13,
    rakp_3 = 0x14,
    rakp_4 = 0x15,
    sealed_message = 0xC0,
    message_before_a_session = 0xFF,
};

kind kind_of(const bytes &datagram);

class spoilt_controller
{
  public:
    // What arrives of an answer: it itself, unless somebody says otherwise.
    using network = std::function<std::vector<bytes>(const bytes &asked, const bytes &answer)>;

    explicit spoilt_controller(const std::string &password = "secret");

    // How to reach it: suite 3, and a time-out of 300 ms.
    chassisd::bridge_config config() const;

    // Changes what the controller sends, at every layer.
    void spoil(rmcpplus_controller::spoiler how);
    void behind(network between);

    // Is heard no more by those who have a session, as after a restart.
    void restart();

    // Datagrams that came, by their kind.
    unsigned asked(kind kind) const;

  private:
    std::vector<bytes> answer(const bytes &asked);

    mutable std::mutex mutex_;
    rmcpplus_controller::spoiler spoil_;
    network network_;
    std::vector<kind> kinds_;
    bool restarted_ = false;
    rmcpplus_controller controller_;
    ruk_ipmi_testing::udp_service service_; // the last: its thread uses the others
};

extern const chassisd::request get_device_id;

// A bridge to the controller, asked once.
chassisd::answer answer_of(const chassisd::bridge_config &config);

// How long something takes.
template <typename Action>
std::chrono::milliseconds time_of(Action action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 start);
}

} // namespace tests

#endif
