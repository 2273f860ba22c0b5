// The frame that every command function follows: check, request, exchange, copy-out, result.
//
//     int ipmi_location_X(const blade_location *location, uint16_t id, x_record *out)
//     {
//         if (!location || !out)
//             return invalid_param();
//         command x(location, 0x0A43, le16{id}, 0x00, 0xFF);
//         const int result = x.fetch(out);
//         if (result == 0)
//             out->field = from_wire(out->field);
//         return result;
//     }
//
// The request reads like the command's definition: a plain number is one byte (its low 8 bits),
// anything wider says how it travels. Most commands hand over the answer whatever the result; one
// that does not uses `exchange`, and copies where it has looked at the result. A command whose
// payload is short says all this in one line: `short_command.h`.
#ifndef RUK_COMMANDS_FRAME_H
#define RUK_COMMANDS_FRAME_H

#include "commands/wire.h"
#include "platform/log.h"
#include "ruk_ipmi/exchange.h"

// Nothing here is exported, so calls need no indirection.
#pragma GCC visibility push(hidden)

namespace ruk
{

// Ticks that a command waits for its answer.
constexpr uint32_t usual_wait = 500;

// Room for the answer that a command offers to the message service.
constexpr uint32_t usual_capacity = 483;

// Refuses a call whose arguments are not what the command needs. Only its line in the log is
// elsewhere: a command that ended in a call would have a second way out, with registers to restore.
void tell_invalid_param();

inline int invalid_param()
{
    tell_invalid_param();
    return IPMI_ERR_INVALID_PARAM;
}

// Refuses an answer that is not as long as the command's must be.
int bad_length();

// Copies a caller's block of `length` bytes to where `room` bytes are left. A longer block is the
// caller's error, after which nothing of the record could be trusted: it ends the process.
void bounded_copy(void *to, size_t room, const void *from, size_t length, const char *where);

// Payload fields.

struct le16 {
    uint16_t value;
};

struct le32 {
    uint32_t value;
};

// A block of the caller's, as long as the caller says.
struct block {
    const void *bytes;
    size_t length;
};

struct zeros {
    uint32_t count;
};

// A text in a field of its own: cut to it, or with zeros behind.
struct text_field {
    const char *text;
    uint32_t size;
};

// Each stores a field `at` the payload's byte of that number, in a record that was cleared, and
// returns where the next one goes. All is known while compiling but for fields of the caller's.

[[gnu::always_inline]] inline uint32_t put(ipmi_request &request, uint32_t at, int byte)
{
    request.data[at] = static_cast<uint8_t>(byte);
    return at + 1;
}

[[gnu::always_inline]] inline uint32_t put(ipmi_request &request, uint32_t at, le16 field)
{
    store_le16(request.data + at, field.value);
    return at + 2;
}

[[gnu::always_inline]] inline uint32_t put(ipmi_request &request, uint32_t at, le32 field)
{
    store_le32(request.data + at, field.value);
    return at + 4;
}

inline uint32_t put(ipmi_request &, uint32_t at, zeros field)
{
    return at + field.count;
}

uint32_t put_block(ipmi_request &request, uint32_t at, const void *bytes, size_t length);
uint32_t put_text(ipmi_request &request, uint32_t at, const char *text, uint32_t size);

inline uint32_t put(ipmi_request &request, uint32_t at, block field)
{
    return put_block(request, at, field.bytes, field.length);
}

inline uint32_t put(ipmi_request &request, uint32_t at, text_field field)
{
    return put_text(request, at, field.text, field.size);
}

// Makes `fields` the payload from its byte `at` on.
template <typename... Fields>
void end_with(ipmi_request &request, uint32_t at, Fields... fields)
{
    ((at = put(request, at, fields)), ...);
    request.data_len = at;
}

template <typename... Fields>
void append(ipmi_request &request, Fields... fields)
{
    end_with(request, request.data_len, fields...);
}

// One command to one blade: both records, cleared once, and the status of the last exchange.
struct command {
    ipmi_request request{};
    ipmi_response response{};
    uint32_t status = 0;

    // Without payload.
    command(const blade_location *location, uint32_t netfn_cmd);

    template <typename... Fields>
    command(const blade_location *location, uint32_t netfn_cmd, Fields... fields)
        : command(location, netfn_cmd)
    {
        end_with(request, 0, fields...);
    }

    // Sends the request as it stands and waits for the answer. The result: transport status, else
    // completion code, else 0.
    int exchange();
    int exchange(uint32_t wait, uint32_t capacity);

    // The same, and hands over the answer's first bytes, from the completion code on, as they come
    // and whatever the result.
    int fetch(void *out, size_t count);

    template <typename Record>
    int fetch(Record *out)
    {
        static_assert(sizeof *out <= sizeof response.data);
        return fetch(out, sizeof *out);
    }

    // The same as `exchange` for a command whose answer has one length only.
    int exchange_exactly(uint32_t length)
    {
        const int result = exchange();
        return result != 0 || response.data_len == length ? result : bad_length();
    }

    // The blade was reached and said no.
    bool refused() const { return status == 0 && response.comp_code != 0; }

    // The command did not get through, or was refused.
    bool failed() const { return status != 0 || response.comp_code != 0; }

    // The result where a completion code counts for more than the transport's status.
    int refusal_first() const
    {
        return static_cast<int>(response.comp_code != 0 ? response.comp_code : status);
    }

    // As logs print it.
    uint8_t completion_code() const { return static_cast<uint8_t>(response.comp_code); }

    // An error line of a command that failed, and its result where a completion code counts for
    // more than the transport's status.
    int tell_failure(const char *name) const
    {
        slog_elog("%s command failed rc: %d cc: 0x%hhX\n", name, status, completion_code());
        return refusal_first();
    }
};

// The short form of a command: the blade given by its number, which is its slot.
template <auto location_form, typename... Arguments>
int by_number(int blade_num, Arguments... arguments)
{
    const blade_location location = {static_cast<uint8_t>(blade_num), 0, {0, 0}};
    return location_form(&location, arguments...);
}

} // namespace ruk

#pragma GCC visibility pop

#endif
