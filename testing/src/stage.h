// What stands behind the scripted platform: the script, the journal of what happened, and the
// operating-system layer. The functions that the library calls end here.
#ifndef RUK_IPMI_TESTING_STAGE_H
#define RUK_IPMI_TESTING_STAGE_H

#include <cstdint>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <string>

#include "journal.h"
#include "request_text.h"
#include "ruk_ipmi_testing.h"
#include "scripted_os.h"

namespace ruk_ipmi_testing
{

class stage
{
  public:
    stage();
    ~stage();
    stage(const stage &) = delete;
    stage &operator=(const stage &) = delete;

    // The one that lives.
    static stage &current();

    // The number of the first message; the next ones count on from it.
    static constexpr uint32_t first_index = 1001;

    // The next step of the script.
    scripted_exchange &add(source_line where);

    // The rest of the platform.
    scripted_os os;

    // What happened.
    events journal() const;
    void forget();
    uint32_t attached_times() const;

    // The exchanges of the script, "netfn_cmd:payload:answer" each: "0A42::00 34 12;0A40::C1".
    std::string exchanges() const;

    // What happened otherwise than the script has it, and what of it never happened.
    std::string complaint();

    // The same when it is not what was told last.
    std::string unread_complaint();

    // Exceptions on their way when it was made.
    const int exceptions = std::uncaught_exceptions();

    // Writes log lines to stderr too, for a process that is not going to live.
    void echo_log();

    // The platform's functions end here.
    uint32_t attach();
    void detach();
    uint32_t send(uint32_t component, const void *message, uint32_t length, uint32_t flags,
                  uint32_t *index);
    uint32_t receive(uint32_t index, uint32_t timeout, uint32_t component, void *buffer,
                     uint32_t *length);
    void log(event line);

  private:
    // By its number in the script, from 0 on.
    std::string name_of(size_t step) const;
    std::string hint_at_order(const sent_message &came, size_t expected) const;
    std::string all_complaints() const;
    void complain(const std::string &text);

    mutable std::mutex mutex;
    std::deque<scripted_exchange> script; // what is still to come is behind `next`
    size_t next = 0;
    struct outstanding {
        size_t step;
        unsigned waits; // how often it is still not answered
    };
    std::map<uint32_t, outstanding> in_flight; // sent and not yet answered, by index
    uint32_t next_index = first_index;
    uint32_t attachments = 0;
    bool echoing = false;
    events happened;
    std::string complaints;
    std::string told;
};

// Defined beside the functions that the library calls, for no other end than that a linker which
// meets this library before libruk_ipmi takes them along with the rest.
void bring_platform_functions();
void bring_os_functions();

} // namespace ruk_ipmi_testing

#endif
