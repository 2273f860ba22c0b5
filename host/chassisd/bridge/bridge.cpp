#include "chassisd/bridge/bridge.h"

#include <algorithm>
#include <optional>

#include "chassisd/bridge/session.h"
#include "platform/log.h"
#include "platform/status.h"

namespace chassisd
{

namespace
{

using std::chrono::milliseconds;

// How long a controller that could not be reached is left alone: requests that queued up meanwhile
// then fail one after another at once, instead of each after the whole time-out.
constexpr milliseconds back_off = std::chrono::seconds(1);

class bridge final : public blade
{
  public:
    explicit bridge(const bridge_config &config) : config_(config) {}

    answer execute(const request &request) override;
    void idle() override;
    milliseconds idle_period() const override;

  private:
    void open();
    bytes ask(const request &request);
    void note(const std::string &trouble);

    bridge_config config_;
    std::optional<session> session_;
    std::optional<session_error> refusal_; // of the last opening
    session::clock::time_point next_opening_;
    std::string trouble_; // that the log tells already
};

// A request that found no answer is not repeated on another session: nobody knows whether it was
// carried out, and its time is up. The session that left it without an answer is closed, so that
// the next request opens one.
answer bridge::execute(const request &request)
{
    try {
        return {0, ask(request)};
    } catch (const session_error &error) {
        note(error.what());
        return {error.status(), {}};
    }
}

// Keeps the session from getting stale, or gives it back to the controller, which has few. When it
// is lost, the next request opens another one.
void bridge::idle()
{
    if (!session_)
        return;
    if (config_.keepalive_s == 0) {
        session_.reset();
        return;
    }
    constexpr uint8_t application = 0x06;
    constexpr uint8_t get_device_id = 0x01;
    execute({application, 0, get_device_id, {}});
}

milliseconds bridge::idle_period() const
{
    if (!session_)
        return milliseconds(0);
    const milliseconds in_time = session_->longest_idleness() * 2 / 3;
    if (config_.keepalive_s == 0)
        return in_time;
    return std::min<milliseconds>(std::chrono::seconds(config_.keepalive_s), in_time);
}

void bridge::open()
{
    if (refusal_ && session::clock::now() < next_opening_)
        throw session_error(*refusal_);
    try {
        session_.emplace(config_);
        refusal_.reset();
    } catch (const session_error &error) {
        refusal_ = error;
        next_opening_ = session::clock::now() + back_off;
        throw;
    }
}

bytes bridge::ask(const request &request)
{
    if (session_ && session_->stale())
        session_.reset();
    if (!session_)
        open();
    try {
        bytes answer = session_->ask(request);
        note("");
        return answer;
    } catch (const session_error &) {
        session_.reset();
        throw;
    }
}

// Tells the log what is wrong with the controller, or nothing any more, once and not at every
// request.
void bridge::note(const std::string &trouble)
{
    if (trouble == trouble_)
        return;
    if (trouble.empty())
        slog_nlog("controller %s port %d answers again\n", config_.host.c_str(), config_.port);
    else
        slog_elog("controller %s port %d: %s\n", config_.host.c_str(), config_.port,
                  trouble.c_str());
    trouble_ = trouble;
}

} // namespace

std::unique_ptr<blade> make_bridge(const bridge_config &config)
{
    return std::make_unique<bridge>(config);
}

} // namespace chassisd
