// A chassis as its TOML file describes it.
#ifndef RUK_HOST_CHASSISD_CONFIG_H
#define RUK_HOST_CHASSISD_CONFIG_H

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

namespace chassisd
{

// Every record tells all of its fields: blades are the same when these are.

// How a blade misbehaves on purpose.
struct fault_config {
    uint32_t delay_ms = 0;                  // answer that much later
    uint32_t drop_every = 0;                // give no answer to every Nth request; 0: never
    std::optional<uint8_t> completion_code; // refuse every request with this
    std::optional<uint32_t> truncate_to; // cut answers to that many bytes, completion code included
    std::optional<uint32_t> oversize_to; // pad answers to that many bytes

    auto all() const
    {
        return std::tie(delay_ms, drop_every, completion_code, truncate_to, oversize_to);
    }
};

struct simulated_config {
    std::string name;              // product name in FRU and sensor names
    uint32_t sel_entries = 12;     // entries that the log holds at the start, at most 512
    bool older_controller = false; // one that cannot tell all of its sled switch configuration

    auto all() const { return std::tie(name, sel_entries, older_controller); }
};

struct bridge_config {
    std::string host; // name or address
    uint16_t port = 623;
    std::string username;
    std::string password;
    std::string privilege = "admin"; // user, operator or admin
    uint8_t cipher_suite = 3;
    std::vector<std::string> workarounds; // FreeIPMI's names of them
    uint32_t timeout_ms = 3000;           // longest wait for the controller, a new session included
    uint32_t retransmit_ms = 500;
    // An idle session is kept alive that often, or as often as it takes: every 30 s, and more often
    // where a short timeout_ms makes FreeIPMI give its own up earlier; 0: it is closed.
    uint32_t keepalive_s = 20;

    auto all() const
    {
        return std::tie(host, port, username, password, privilege, cipher_suite, workarounds,
                        timeout_ms, retransmit_ms, keepalive_s);
    }
};

struct blade_config {
    uint8_t slot = 0;
    uint8_t sub_slot = 0;
    std::variant<simulated_config, bridge_config> kind;
    fault_config faults;

    auto all() const { return std::tie(slot, sub_slot, kind, faults); }
};

template <typename Record>
auto operator==(const Record &one, const Record &other) -> decltype(one.all() == other.all())
{
    return one.all() == other.all();
}

struct chassis_config {
    std::string name = "chassis";
    uint32_t platform_type = 1;
    uint32_t slots = 16;
    uint32_t physical_location = 0;
    std::vector<blade_config> blades;
};

// What is wrong with a file, in one line that begins with its name, line and column.
class config_error : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// Reads and checks a file. Passwords are read from the files and variables that it names.
chassis_config load_config(const std::string &path);

// A chassis of `count` simulated blades in slots 1 to `count`.
chassis_config simulated_chassis(unsigned count);

} // namespace chassisd

#endif
