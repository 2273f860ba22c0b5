/**
 * ruk_ipmi_testing: a platform that follows a script, for the unit tests of processes that use
 * libruk_ipmi.
 *
 * A test links the code that it tests, libruk_ipmi, and this library in the platform's place. No
 * blade, daemon or message service is needed then: the test says which requests are to reach which
 * blades, in which order, and what each is answered.
 *
 *     scripted_platform platform;
 *     platform.expects(blade(5), 0x0A42).answers({0x00, 0x34, 0x12});
 *
 *     const blade_location at = blade(5);
 *     sel_reservation out;
 *     assert(ipmi_location_reserve_sel(&at, &out) == 0 && out.reservation_id == 0x1234);
 *
 * A script is broken by a request that differs from the expected one in a single bit, by one that
 * nobody expected, and by one that was expected and never came. The process under test then gets
 * the status `unscripted` for its request, and `complaint()` tells what was expected, where the
 * script says so, and what came instead. A platform that ends with a complaint that nobody has read
 * writes it to stderr and aborts the process, so no test passes over a broken script.
 *
 * Nothing here waits: time passes in ticks that a test grants, none of which takes any time. So a
 * command that times out after five seconds does so at once.
 *
 * With GoogleTest, ruk_ipmi_testing_gtest.h has a fixture that turns complaints into failures.
 *
 * Threads: every function may be called from any thread, but one platform lives at a time, it is
 * there for all threads of its process, and none may call the library when it is gone: that aborts
 * the process. Callbacks of the library run while the test is inside `run_callbacks` or
 * `posts_interrupt`, and at no other time, on a thread of their own. That thread ends with the
 * platform, so a test of events or asynchronous commands begins with `ruk_ipmi_init`, as a process
 * does.
 */
#ifndef RUK_IPMI_TESTING_H
#define RUK_IPMI_TESTING_H

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ruk_ipmi/types.h"

namespace ruk_ipmi_testing
{

/** Bytes as they travel: a payload, or an answer's data. Numbers of several bytes are least
 *  significant byte first on every host, as IPMI has them. */
using bytes = std::vector<uint8_t>;

/** The location of the blade in a slot; sub-slot 0 is a blade that fills its slot. */
inline blade_location blade(uint8_t slot_id, uint8_t sub_slot_id = 0)
{
    return {slot_id, sub_slot_id, {0, 0}};
}

/** Where in a test a line of the script stands; complaints begin with it. */
struct source_line {
    const char *file;
    int line;

    /** The line that calls a function with this as its default argument. */
    static source_line of_caller(const char *file = __builtin_FILE(), int line = __builtin_LINE())
    {
        return {file, line};
    }
};

/**
 * The request that the library sends for a command.
 *
 * @param location   the blade.
 * @param netfn_cmd  network function << 8 | command, as in `ipmi_request`: 0x0A43 is Get SEL Entry.
 * @param payload    at most 488 bytes; a longer one throws std::length_error.
 */
ipmi_request request_to(const blade_location &location, uint32_t netfn_cmd,
                        const bytes &payload = {});

/**
 * What becomes of an expected request. Unless told otherwise it is answered with completion code 0
 * and nothing else. To be told before the request comes, each thing at most once.
 */
class scripted_exchange
{
  public:
    /** Answers with these data: the completion code, then the answer's bytes. At most 484 bytes,
     * else std::length_error is thrown; what exceeds the room that the receiver offers is cut off.
     * The `comp_code` that the receiver sees is the first byte, 0 when there is no data at all. */
    scripted_exchange &answers(bytes answer);

    /** The blade says no, with a completion code and nothing else. */
    scripted_exchange &refuses(uint8_t completion_code);

    /** Says another `comp_code` in the answer's header than its data does. */
    scripted_exchange &with_completion_code(uint32_t code);

    /** Says another `data_len` in the answer's header than the data has. */
    scripted_exchange &with_data_len(uint32_t length);

    /** The message service takes the request, which has to be the expected one, and returns
     *  `status` (not 0) for sending it. Nothing is answered. */
    scripted_exchange &fails_to_send(uint32_t status);

    /** The answer is late: the first `times` times it is asked for, the time runs out (status
     *  0x5007), without any time passing. A command function asks once, so its command times out;
     *  an asynchronous command asks once a tick. By default the answer never comes, and need not
     *  be asked for. */
    scripted_exchange &keeps_waiting(unsigned times = ~0u);

    /** Receiving the answer returns `status` (not 0), and the receiver's record is left alone;
     *  together with `answers`, it is filled all the same. */
    scripted_exchange &fails_to_receive(uint32_t status);

  private:
    friend class stage;
    friend class scripted_platform;

    ipmi_request request{};
    source_line where{};
    uint32_t attach_status = 0;
    uint32_t send_status = 0;
    uint32_t receive_status = 0;
    unsigned waits = 0; // how often it is not answered yet
    std::optional<bytes> data;
    std::optional<uint32_t> completion_code;
    std::optional<uint32_t> data_len;
};

/** The logs of the platform, by what is written there. */
enum class log_level { error, notice, debug, verbose };

class stage;

/** The platform. A second one while one lives throws std::logic_error. */
class scripted_platform
{
  public:
    scripted_platform();
    scripted_platform(const scripted_platform &) = delete;
    scripted_platform &operator=(const scripted_platform &) = delete;

    /** Writes a complaint that nobody has read to stderr, and then aborts the process, unless an
     *  exception is on its way that has its own story to tell. A callback thread ends here. */
    ~scripted_platform();

    /** What is returned for sending a request that is not the expected one: a status that no real
     *  platform knows, 23469 in decimal, as test frameworks print it. */
    static constexpr uint32_t unscripted = 0x5BAD;

    /** The next request, in the order in which requests are to come. See `request_to`. What is
     *  returned is the platform's and stays where it is. */
    scripted_exchange &expects(const blade_location &location, uint32_t netfn_cmd,
                               const bytes &payload = {},
                               source_line where = source_line::of_caller());

    /** The same, of a record that the test has filled: its first 0x18 + `data_len` bytes count. */
    scripted_exchange &expects(const ipmi_request &request,
                               source_line where = source_line::of_caller());

    /** In place of the next request the message service cannot be reached: attaching, which every
     *  exchange begins with, returns `status` (not 0), and nothing is sent. */
    void fails_to_attach(uint32_t status, source_line where = source_line::of_caller());

    /**
     * Puts an interrupt into the ring, wakes the callback thread, and returns when it rests again:
     * then the process' event callback has run once for each of `asserted` it is registered for. No
     * tick passes. Nobody is told when no registration has started the thread yet, as on a real
     * chassis. Called from a callback, it returns at once, and the callbacks come after that one.
     *
     * @param location  the blade.
     * @param asserted  numbers from 1 to 64; any other throws std::out_of_range.
     * @param data      the interrupt's data, at most 164 bytes, else std::length_error is thrown;
     *                  event callbacks are not given it, readers of the ring (ring.h) are.
     */
    void posts_interrupt(const blade_location &location, std::initializer_list<uint32_t> asserted,
                         const bytes &data = {});

    /**
     * Lets the callback thread run until it has nothing left to do, or until `ticks` ticks (of
     * 10 ms on the host platform; none of them takes any time here) have passed and it still waits
     * for answers. Asynchronous commands are answered, and time out, in here. Does nothing when
     * there is no callback thread; from a callback, it is a complaint.
     */
    void run_callbacks(unsigned ticks = 1000);

    /** Sets a word of the platform-information record, all of which are 0 at first: word 0 is the
     *  platform's type, 28 its location, 35 the number of slots. One above 63 throws
     *  std::out_of_range. */
    void has_information(unsigned word, uint32_t value);

    /** The lines that the library and the process wrote to the platform's logs, in their order,
     *  those of `level` and worse: "error: blade 5 is full", without their line ends. */
    std::vector<std::string> log_lines(log_level level = log_level::notice) const;

    /** What happened otherwise than the script has it, and what of the script has not happened by
     *  now; also, which named mutexes are locked. Each complaint begins with the line of the test
     *  that it is about, if there is one, and ends its last line. Empty when all went as scripted.
     */
    std::string complaint() const;

  protected:
    std::unique_ptr<stage> behind; /**< the platform's insides, for the library's own tests */
};

} // namespace ruk_ipmi_testing

#endif
