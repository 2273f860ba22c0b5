// One RMCP+ session with a controller.
#ifndef RUK_HOST_CHASSISD_BRIDGE_SESSION_H
#define RUK_HOST_CHASSISD_BRIDGE_SESSION_H

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "chassisd/blade.h"
#include "chassisd/config.h"

namespace chassisd
{

// Why there is no session, or no longer: a status of the message service and the reason in words.
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

// As IPMI numbers the privilege that a description names.
uint8_t privilege_of(const bridge_config &config);

// What asks a controller whether it is there, and changes nothing: Get Device ID.
inline const request presence_request{0x06, 0, 0x01, {}};

class session
{
  public:
    using clock = std::chrono::steady_clock;

    virtual ~session() = default;

    // The answer from the completion code on. Throws session_error when there is none by the
    // deadline, after which the session is of no more use.
    virtual bytes ask(const request &request, clock::time_point deadline) = 0;

    // How long the session may be idle and still be of use.
    virtual std::chrono::milliseconds longest_idleness() const = 0;

    // Whether the next request may go over it. May ask the controller, if that was long ago.
    virtual bool is_usable(clock::time_point deadline) = 0;
};

// Opens a session: our own, or FreeIPMI's where the blade's description wants what ours cannot do.
// Throws session_error.
std::unique_ptr<session> open_session(const bridge_config &config,
                                      session::clock::time_point deadline);

} // namespace chassisd

#endif
