// A platform for tests: in place of the message service it follows a script, in place of the logs
// it keeps a journal. Link it below the library and write the script before calling:
//
//     scripted_platform platform;
//     platform.expects(blade(5), 0x0A42).answers({0x00, 0x34, 0x12});
//
//     sel_reservation out;
//     assert(ipmi_location_reserve_sel(&at, &out) == 0 && out.reservation_id == 0x1234);
//     assert(platform.complaint() == "");
//
// An exchange that was expected and never came, and one that came otherwise than expected, by a
// single bit, is a complaint. With GoogleTest, scripted_platform_gtest.h turns complaints into
// failures.
//
// One platform lives at a time; it is there for all threads of the process.
#ifndef RUK_IPMI_TESTING_SCRIPTED_PLATFORM_H
#define RUK_IPMI_TESTING_SCRIPTED_PLATFORM_H

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "bytes.h"
#include "journal.h"
#include "ruk_ipmi/types.h"
#include "scripted_os.h"

namespace ruk_ipmi_testing
{

// The location that a blade number stands for.
inline blade_location blade(uint8_t slot_id, uint8_t sub_slot_id = 0)
{
    return {slot_id, sub_slot_id, {0, 0}};
}

// The request that `expects` waits for: msg_type 0x101, reserved words 0, and `payload`.
ipmi_request request_to(const blade_location &location, uint32_t netfn_cmd,
                        const bytes &payload = {});

// One step of the script. Unless told otherwise it is answered with completion code 0 alone.
class scripted_exchange
{
  public:
    // The answer's data, completion code first; its code is also the one in the record's header
    // (0 when there is no data at all). At most 484 bytes; what exceeds the room that the receiver
    // offers is cut off.
    scripted_exchange &answers(bytes answer);

    // The header's completion code, where it is to differ from the data's.
    scripted_exchange &with_completion_code(uint32_t code);

    // The header's data_len, where it is to differ from the data's length.
    scripted_exchange &with_data_len(uint32_t length);

    // The message is taken, found right, and refused with `status`.
    scripted_exchange &fails_to_send(uint32_t status);

    // Asked for, the answer is not there yet the first `times` times; it is still to come after
    // that. By default it never comes, and need not be asked for.
    scripted_exchange &keeps_waiting(unsigned times = ~0u);

    // Receiving ends with `status`; the receiver's record is left alone, unless there is an
    // answer, which is then put there all the same.
    scripted_exchange &fails_to_receive(uint32_t status);

  private:
    friend class scripted_platform;

    ipmi_request request{};
    uint32_t attach_status = 0;
    uint32_t send_status = 0;
    uint32_t receive_status = 0;
    unsigned waits = 0; // how often it is not answered yet
    std::optional<bytes> data;
    std::optional<uint32_t> completion_code;
    std::optional<uint32_t> data_len;
};

class scripted_platform
{
  public:
    scripted_platform();
    ~scripted_platform();
    scripted_platform(const scripted_platform &) = delete;
    scripted_platform &operator=(const scripted_platform &) = delete;

    // The number of the first message; the next ones count on from it.
    static constexpr uint32_t first_index = 1001;

    // What is returned for a request that the script does not know.
    static constexpr uint32_t unscripted = 0x5BAD;

    // The script, in the order in which things are to happen.
    scripted_exchange &expects(const blade_location &location, uint32_t netfn_cmd,
                               const bytes &payload = {});
    scripted_exchange &expects(const ipmi_request &request);
    void fails_to_attach(uint32_t status);

    // The rest of the platform.
    scripted_os os;

    // What happened: all of it, the calls of the message service, the log lines.
    events journal() const;
    events calls() const;
    events log() const;

    // What happens from now on is all that happened.
    void forget();

    uint32_t attached_times() const;

    // What happened otherwise than the script has it, and what of it never happened; empty when
    // all went as scripted.
    std::string complaint() const;

    // The exchanges of the script, "netfn_cmd:payload:answer" each, for who wants to know what the
    // tests say that commands and their answers look like: "0A42::00 34 12;0A40::C1".
    std::string exchanges() const;

    // Writes log lines to stderr too, for a process that is not going to live.
    void echo_log();

    // The platform's functions end here.
    static scripted_platform &current();
    uint32_t attach();
    void detach();
    uint32_t send(uint32_t component, const void *message, uint32_t length, uint32_t flags,
                  uint32_t *index);
    uint32_t receive(uint32_t index, uint32_t timeout, uint32_t component, void *buffer,
                     uint32_t *length);
    void log(event line);

  private:
    void complain(const std::string &text);

    mutable std::mutex mutex;
    std::deque<scripted_exchange> script; // what is still to come is behind `next`
    size_t next = 0;
    std::map<uint32_t, scripted_exchange> in_flight; // sent and not yet asked for, by index
    uint32_t next_index = first_index;
    uint32_t attachments = 0;
    bool echoing = false;
    events happened;
    std::string complaints;
};

} // namespace ruk_ipmi_testing

#endif
