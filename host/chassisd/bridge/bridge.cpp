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

// How long a session that is not to be kept waits for the next request.
constexpr milliseconds brief_idleness = std::chrono::seconds(1);

class bridge final : public blade
{
  public:
    explicit bridge(const bridge_config &config) : config_(config) {}

    answer execute(const request &request) override;
    void idle() override;
    milliseconds idle_period() const override;

  private:
    bytes ask(const request &request);
    void open(session::clock::time_point deadline);
    void note(const std::string &trouble);

    bridge_config config_;
    std::unique_ptr<session> session_;
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
    execute(presence_request);
}

milliseconds bridge::idle_period() const
{
    if (!session_)
        return milliseconds(0);
    const milliseconds wanted =
        config_.keepalive_s == 0 ? brief_idleness : std::chrono::seconds(config_.keepalive_s);
    return std::min(wanted, session_->longest_idleness() * 2 / 3);
}

// The controller has the time-out for all that it takes, a new session included.
bytes bridge::ask(const request &request)
{
    const auto deadline = session::clock::now() + milliseconds(config_.timeout_ms);
    if (session_ && !session_->is_usable(deadline))
        session_.reset();
    if (!session_)
        open(deadline);
    try {
        bytes answer = session_->ask(request, deadline);
        note("");
        return answer;
    } catch (const session_error &) {
        session_.reset();
        throw;
    }
}

void bridge::open(session::clock::time_point deadline)
{
    if (refusal_ && session::clock::now() < next_opening_)
        throw session_error(*refusal_);
    try {
        session_ = open_session(config_, deadline);
        refusal_.reset();
    } catch (const session_error &error) {
        refusal_ = error;
        next_opening_ = session::clock::now() + back_off;
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
