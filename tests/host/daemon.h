// A real ruk-chassisd in a runtime directory of its own, for the tests that talk to it.
#ifndef RUK_TESTS_HOST_DAEMON_H
#define RUK_TESTS_HOST_DAEMON_H

#include <cstdint>
#include <functional>
#include <string>
#include <sys/types.h>

#include "ruk_ipmi.h"

namespace tests
{

class chassis_daemon
{
  public:
    // Writes the configuration, a chassis.toml, starts the daemon and waits until it serves; this
    // process's own messages go to it from now on.
    explicit chassis_daemon(const std::string &configuration);
    ~chassis_daemon();
    chassis_daemon(const chassis_daemon &) = delete;
    chassis_daemon &operator=(const chassis_daemon &) = delete;

    void start();
    // Sends the signal and waits for the end: the exit status, or minus the signal's number.
    int stop(int signal);

    // Writes another configuration and has the daemon read it, which it does a moment later.
    void reconfigure(const std::string &configuration);

    std::string socket() const { return directory_ + "/run/ipmi.sock"; }

    // How many descriptors the daemon holds.
    unsigned descriptors() const;

  private:
    void write_file(const std::string &configuration) const;

    std::string directory_;
    pid_t pid_ = -1;
};

// Get SEL Entry, whose answer names the record that was asked for: a request record with `mark` in
// its reserved word, which comes back too.
ipmi_request sel_entry_request(uint8_t slot, uint16_t record_id, uint32_t mark);

// An answer record with nothing in it, and room for all that fits.
ipmi_response empty_response();

// Whether an answer is the one to that request.
bool answers(const ipmi_response &response, const ipmi_request &request);

// Runs a function in a child process: its result as exit status, or minus the signal that ended it.
int in_child(const std::function<int()> &function);

// Waits until something is so, for some seconds at the most.
bool eventually(const std::function<bool()> &so);

} // namespace tests

#endif
