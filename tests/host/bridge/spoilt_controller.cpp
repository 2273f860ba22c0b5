#include "spoilt_controller.h"

#include <algorithm>

namespace tests
{

const chassisd::request get_device_id{0x06, 0, 0x01, {}};

kind kind_of(const bytes &datagram)
{
    constexpr uint8_t rmcpplus = 0x06;
    return datagram.at(4) == rmcpplus ? static_cast<kind>(datagram.at(5))
                                      : message_before_a_session;
}

spoilt_controller::spoilt_controller(const std::string &password)
    : controller_(password,
                  [this](layer where, bytes &data) {
                      if (spoil_)
                          spoil_(where, data);
                  }),
      service_([this](const bytes &asked) { return answer(asked); })
{
}

chassisd::bridge_config spoilt_controller::config() const
{
    chassisd::bridge_config config;
    config.host = "127.0.0.1";
    config.port = service_.port();
    config.username = "tester";
    config.password = "secret";
    config.timeout_ms = 300;
    config.retransmit_ms = 50;
    return config;
}

void spoilt_controller::spoil(rmcpplus_controller::spoiler how)
{
    const std::lock_guard lock(mutex_);
    spoil_ = std::move(how);
}

void spoilt_controller::behind(network between)
{
    const std::lock_guard lock(mutex_);
    network_ = std::move(between);
}

void spoilt_controller::restart()
{
    const std::lock_guard lock(mutex_);
    restarted_ = true;
}

unsigned spoilt_controller::asked(kind kind) const
{
    const std::lock_guard lock(mutex_);
    return static_cast<unsigned>(std::count(kinds_.begin(), kinds_.end(), kind));
}

std::vector<bytes> spoilt_controller::answer(const bytes &asked)
{
    const std::lock_guard lock(mutex_);
    kinds_.push_back(kind_of(asked));
    if (kind_of(asked) == open_session_request)
        restarted_ = false;
    if (restarted_ && kind_of(asked) == sealed_message)
        return {};
    const bytes answer = controller_.answer(asked);
    return network_ ? network_(asked, answer) : std::vector<bytes>{answer};
}

chassisd::answer answer_of(const chassisd::bridge_config &config)
{
    return chassisd::make_bridge(config)->execute(get_device_id);
}

} // namespace tests
