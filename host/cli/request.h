// Requests to a blade, for the commands to build on: each returns the answer or throws why there
// is none.
#ifndef RUK_HOST_CLI_REQUEST_H
#define RUK_HOST_CLI_REQUEST_H

#include <algorithm>
#include <chrono>
#include <functional>

#include "cli/failure.h"
#include "cli/numbers.h"
#include "ruk_ipmi.h"

namespace cli
{

// The blade that a command is run for.
struct blade {
    blade_location location;
    bool utc = false; // show times in UTC
    // Whoever wants to know is told of each exchange that the blade answered how long it took.
    std::function<void(std::chrono::steady_clock::duration)> answered = {};
};

// The blades that a command is run for all at once.
struct blades {
    std::vector<blade_location> locations;
    bool utc = false;
};

// The result of an exchange with a blade, up to 0xFF when the blade answered.
template <typename Exchange>
uint32_t timed(const blade &at, Exchange exchange)
{
    if (!at.answered)
        return exchange();
    const auto start = std::chrono::steady_clock::now();
    const uint32_t result = exchange();
    if (result <= 0xFF)
        at.answered(std::chrono::steady_clock::now() - start);
    return result;
}

// Calls a function of the library.
template <typename Function, typename... Arguments>
void call(const request_name &request, const blade &at, Function function, Arguments... arguments)
{
    check(request,
          timed(at, [&] { return static_cast<uint32_t>(function(&at.location, arguments...)); }));
}

// Calls one whose last argument is its output.
template <typename Answer, typename Function, typename... Arguments>
Answer ask(const request_name &request, const blade &at, Function function, Arguments... arguments)
{
    Answer answer{};
    call(request, at, function, arguments..., &answer);
    return answer;
}

// Sends a request bare: one that the library has no function for, or whose answer's length matters.
// Returns what follows the completion code, at least `shortest` bytes.
bytes exchange(const request_name &name, const blade &at, const bytes &payload,
               size_t shortest = 0);

// Where an answer stops short, the library's functions leave zeros, and do not tell. So what ends
// in a zero is to be looked at a second time, by the bare exchange.
inline bool may_be_cut_short(const bytes &answer)
{
    return answer.empty() || answer.back() == 0;
}

// Asks for bytes that only the blade can explain, by a function of the library whose last argument
// is room for `size` of them, the completion code first. Returns those behind it that came; `bare`
// is the payload of the second look.
template <size_t size, typename Function, typename... Arguments>
bytes ask_bytes(const request_name &request, const blade &at, const bytes &bare, Function function,
                Arguments... arguments)
{
    uint8_t answer[size] = {};
    call(request, at, function, arguments..., answer);
    bytes found(answer + 1, std::end(answer));
    if (may_be_cut_short(found))
        found.resize(std::min(found.size(), exchange(request, at, bare).size()));
    return found;
}

// What a blade answers to one question; a controller need not know all of them.
template <typename Question>
auto unless_refused(Question question, decltype(question()) otherwise)
{
    try {
        return question();
    } catch (const failure &why) {
        if (why.kind != exit_refused && why.kind != exit_unsupported)
            throw;
        return otherwise;
    }
}

// Asks a blade for a parameter of two bytes. `bare` is the same request, for the second look.
struct byte_pair {
    uint8_t a = 0;
    uint8_t b = 0;
};

byte_pair ask_pair(const request_name &request, const blade &at,
                   int (*get)(const blade_location *, uint8_t *, uint8_t *), const bytes &bare);

// Completion codes on which a command goes on in another way.
constexpr uint32_t erase_in_progress = 0x81; // of the requests to the event log
constexpr uint32_t no_such_record = 0xCB;
constexpr uint32_t reservation_lost = 0xC5;

// Whether a blade refuses a transfer for its length. Some controllers say nothing better than
// "unspecified".
bool too_long(const failure &refusal);

// Whether there is nobody who could ask any blade.
bool nobody_serves(const failure &why);

// Uses a reservation, and makes a new one when the blade has cancelled it, which it does at every
// change.
template <typename Reserve, typename Use>
auto under_reservation(uint16_t &reservation, Reserve reserve, Use use)
{
    constexpr int patience = 5;
    for (int lost = 1;; ++lost) {
        try {
            return use(reservation);
        } catch (const failure &refusal) {
            if (refusal.code != reservation_lost || lost == patience)
                throw;
            reservation = reserve();
        }
    }
}

// Transfers `total` units by `move(offset, count)`, which returns how many it moved. Begins with
// stretches of `longest` units and halves them when the blade finds one too long. Returns how long
// they were in the end.
template <typename Move>
size_t in_stretches(size_t total, size_t longest, Move move)
{
    for (size_t done = 0; done < total;) {
        const size_t count = std::min(longest, total - done);
        try {
            const size_t moved = move(done, count);
            if (moved == 0)
                throw failure(exit_refused, "the blade gives nothing from offset " +
                                                std::to_string(done) + " on");
            done += std::min(moved, count);
        } catch (const failure &refusal) {
            if (!too_long(refusal) || count == 1)
                throw;
            longest = count / 2;
        }
    }
    return longest;
}

inline uint16_t load_le16(const uint8_t *from)
{
    return static_cast<uint16_t>(from[0] | from[1] << 8);
}

inline uint32_t load_le32(const uint8_t *from)
{
    return load_le16(from) | static_cast<uint32_t>(load_le16(from + 2)) << 16;
}

} // namespace cli

#endif
