// One RMCP+ session with a controller, as FreeIPMI keeps it.
//
// FreeIPMI knows one time-out per session, counted from the controller's last answer and not from
// the request, and by the clock that people set. So a session that was idle for the time-out is
// given up without being asked, one that was idle for most of it leaves its next request next to
// no time, and afterwards nothing revives it. Whoever wants the time-out to be short has to use
// the session more often, or to open another one.
#ifndef RUK_HOST_CHASSISD_BRIDGE_SESSION_H
#define RUK_HOST_CHASSISD_BRIDGE_SESSION_H

#include <chrono>
#include <cstdint>
#include <freeipmi/freeipmi.h>
#include <memory>
#include <stdexcept>
#include <string>

#include "chassisd/blade.h"
#include "chassisd/config.h"

namespace chassisd
{

// Why there is no session, or no longer: a status of the message service and FreeIPMI's words.
class session_error : public std::runtime_error
{
  public:
    session_error(uint32_t status, const std::string &reason)
        : std::runtime_error(reason),
          status_(status)
    {
    }

    uint32_t status() const { return status_; }

  private:
    uint32_t status_;
};

class session
{
  public:
    using clock = std::chrono::steady_clock;

    // Opens the session. Throws session_error.
    explicit session(const bridge_config &config);

    // The answer from the completion code on. Throws session_error when none came, after which the
    // session is of no more use.
    bytes ask(const request &request);

    // How long the session may be idle and still give a request half of the time-out.
    std::chrono::milliseconds longest_idleness() const { return patience_ / 2; }

    // Whether FreeIPMI would not give the next request the time it should have.
    bool stale() const;

  private:
    void answered();

    struct closer {
        void operator()(ipmi_ctx_t context) const;
    };

    std::unique_ptr<ipmi_ctx, closer> context_;
    std::chrono::milliseconds patience_;
    clock::time_point answered_;
    std::chrono::system_clock::time_point answered_at_;
};

} // namespace chassisd

#endif
