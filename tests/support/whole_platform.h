// The scripted platform with its insides: what the library's own tests look at and a process that
// uses the library need not know of. The callback thread is theirs to run.
#ifndef RUK_TESTS_SUPPORT_WHOLE_PLATFORM_H
#define RUK_TESTS_SUPPORT_WHOLE_PLATFORM_H

#include "journal.h"
#include "ruk_ipmi_testing.h"
#include "stage.h"
#include "support/bytes.h"

namespace ruk_ipmi_testing
{

class whole_platform : public scripted_platform
{
  public:
    whole_platform();

    // What is left to complain about, the test has looked at as far as it wants.
    ~whole_platform();

    // The number of the first message; the next ones count on from it.
    static constexpr uint32_t first_index = stage::first_index;

    scripted_os &os;

    // What happened: all of it, the calls of the platform, the log lines.
    events journal() const;
    events calls() const;
    events log() const;

    // What happens from now on is all that happened.
    void forget();

    uint32_t attached_times() const;

    // The exchanges of the script, "netfn_cmd:payload:answer" each, for who wants to know what the
    // tests say that commands and their answers look like: "0A42::00 34 12;0A40::C1".
    std::string exchanges() const;

    // Writes log lines to stderr too, for a process that is not going to live.
    void echo_log();
};

} // namespace ruk_ipmi_testing

#endif
