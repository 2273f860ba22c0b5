// A session as FreeIPMI keeps it, with controllers that stray from IPMI 2.0 and all cipher suites.
//
// FreeIPMI knows one time-out per session, counted from the controller's last answer and not from
// the request, and by the clock that people set. So a session that was idle for the time-out is
// given up without being asked, one that was idle for most of it leaves its next request next to
// no time, and afterwards nothing revives it. Whoever wants the time-out to be short has to use
// the session more often, or to open another one.
#ifndef RUK_HOST_CHASSISD_BRIDGE_FREEIPMI_SESSION_H
#define RUK_HOST_CHASSISD_BRIDGE_FREEIPMI_SESSION_H

#include <freeipmi/freeipmi.h>

#include "chassisd/bridge/session.h"

namespace chassisd
{

class freeipmi_session final : public session
{
  public:
    // Opens the session. Throws session_error.
    explicit freeipmi_session(const bridge_config &config);

    // Has no look at the deadline: FreeIPMI has the time-out of the blade's description.
    bytes ask(const request &request, clock::time_point deadline) override;

    // The next request would have half of the time-out left.
    std::chrono::milliseconds longest_idleness() const override { return patience_ / 2; }

    bool is_usable(clock::time_point deadline) override;

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
