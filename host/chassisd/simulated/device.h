// What every device of the simulated controller is made of: commands, each a row of a table that
// says which request it takes and which handler answers it. Handlers own the state they work on.
#ifndef RUK_HOST_CHASSISD_SIMULATED_DEVICE_H
#define RUK_HOST_CHASSISD_SIMULATED_DEVICE_H

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "chassisd/blade.h"
#include "producer/blade_events.h"

namespace chassisd::simulated
{

using time_point = std::chrono::system_clock::time_point;

// Tells the time; replaced in tests.
using time_source = std::function<time_point()>;

inline uint32_t seconds_since_1970(time_point time)
{
    using namespace std::chrono;
    return static_cast<uint32_t>(duration_cast<seconds>(time.time_since_epoch()).count());
}

using ruk::host::blade_event;

// Alerts the chassis to an event of the blade. The data is the event as the log has it.
using event_sink = std::function<void(blade_event event, const bytes &data)>;

// What devices know of the blade that they are part of.
struct environment {
    std::string name; // printable ASCII, not empty
    uint8_t slot;
    uint8_t sub_slot;
    uint32_t sel_entries;
    bool older_controller;
    time_source now;
    event_sink alert;
};

enum network_function : uint8_t {
    netfn_chassis = 0x00,
    netfn_sensor = 0x04,
    netfn_app = 0x06,
    netfn_storage = 0x0A,
    netfn_transport = 0x0C,
    netfn_group = 0x2E,  // of groups of commands that tell whose they are
    netfn_manager = 0x30 // of the chassis manager's own commands
};

enum completion_code : uint8_t {
    completed = 0x00,
    record_type_not_supported = 0x80, // of Add SEL Entry
    erase_in_progress = 0x81,         // of the SEL's commands
    parameter_unsupported = 0x80,     // of IPMI's parameters
    already_in_progress = 0x81,       // of the same
    parameter_read_only = 0x82,       // of the same
    wrong_password = 0x80,            // of Set User Password's test
    wrong_password_size = 0x81,       // of the same
    not_settable = 0x80,              // of Set Sensor Reading And Event Status
    event_data_not_settable = 0x81,   // of the same
    invalid_command = 0xC1,
    invalid_for_lun = 0xC2,
    out_of_space = 0xC4,
    reservation_lost = 0xC5,
    request_truncated = 0xC6,
    wrong_request_length = 0xC7,
    out_of_range = 0xC9,
    cannot_return_that_many = 0xCA,
    not_present = 0xCB,
    invalid_field = 0xCC,
    insufficient_privilege = 0xD4,
    not_in_this_state = 0xD5
};

// Thrown by a handler to answer nothing but a completion code.
struct refusal {
    completion_code code;
};

inline void refuse_if(bool condition, completion_code code)
{
    if (condition)
        throw refusal{code};
}

// The request lengths that a command takes; most take exactly one.
struct lengths {
    size_t least;
    size_t most;

    constexpr lengths(size_t exactly) : lengths(exactly, exactly) {}
    constexpr lengths(size_t at_least, size_t at_most) : least(at_least), most(at_most) {}

    constexpr bool include(size_t length) const { return least <= length && length <= most; }
};

// Takes a request's data, whose length was checked, and returns the completion code and the
// answer's data.
using handler = std::function<bytes(const bytes &)>;

struct command {
    network_function netfn;
    uint8_t number;
    lengths request;
    handler handle;
};

using command_table = std::vector<command>;

// A handler that calls a member function of a device, with the request if it wants it.
template <typename Device, typename Method>
auto on(std::shared_ptr<Device> device, Method method)
{
    return [device = std::move(device), method]([[maybe_unused]] const auto &request) {
        if constexpr (std::is_invocable_v<Method, Device &>)
            return std::invoke(method, *device);
        else
            return std::invoke(method, *device, request);
    };
}

} // namespace chassisd::simulated

#endif
