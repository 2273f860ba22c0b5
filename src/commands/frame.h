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
// that does not uses `exchange`, and copies where it has looked at the result.
#ifndef RUK_COMMANDS_FRAME_H
#define RUK_COMMANDS_FRAME_H

#include "commands/wire.h"
#include "platform/log.h"
#include "ruk_ipmi/exchange.h"

namespace ruk
{

// Ticks that a command waits for its answer.
constexpr uint32_t usual_wait = 500;

// Room for the answer that a command offers to the message service.
constexpr uint32_t usual_capacity = 483;

// Refuses a call whose arguments are not what the command needs.
int invalid_param();

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

// A text in a field of its own, with zeros behind it.
struct padded {
    const char *text;
    size_t length;
    uint32_t field;
};

inline padded cut_to(const char *text, uint32_t field)
{
    return {text, strnlen(text, field), field};
}

inline void append(ipmi_request &request, int byte)
{
    request.data[request.data_len++] = static_cast<uint8_t>(byte);
}

inline void append(ipmi_request &request, le16 field)
{
    store_le16(request.data + request.data_len, field.value);
    request.data_len += 2;
}

inline void append(ipmi_request &request, le32 field)
{
    store_le32(request.data + request.data_len, field.value);
    request.data_len += 4;
}

inline void append(ipmi_request &request, block field)
{
    bounded_copy(request.data + request.data_len, sizeof request.data - request.data_len,
                 field.bytes, field.length, "the request record");
    request.data_len += static_cast<uint32_t>(field.length);
}

inline void append(ipmi_request &request, zeros field)
{
    request.data_len += field.count; // the record was cleared
}

inline void append(ipmi_request &request, padded field)
{
    bounded_copy(request.data + request.data_len, field.field, field.text, field.length,
                 "a field of the request");
    request.data_len += field.field;
}

template <typename... Fields>
void append_all(ipmi_request &request, Fields... fields)
{
    (append(request, fields), ...);
}

// One command to one blade: both records, cleared once, and the status of the last exchange.
struct command {
    ipmi_request request{};
    ipmi_response response{};
    uint32_t status = 0;

    template <typename... Fields>
    command(const blade_location *location, uint32_t netfn_cmd, Fields... fields)
    {
        request.location = *location;
        request.netfn_cmd = netfn_cmd;
        append_all(request, fields...);
    }

    // Sends the request as it stands and waits for the answer. The result: transport status, else
    // completion code, else 0.
    int exchange(uint32_t wait = usual_wait, uint32_t capacity = usual_capacity)
    {
        response.data_len = capacity;
        status = get_ruk_ipmi_response(&request, &response, wait);
        return static_cast<int>(status != 0 ? status : response.comp_code);
    }

    // The same, and hands over the answer's first bytes, from the completion code on, as they come
    // and whatever the result.
    int fetch(void *out, size_t count)
    {
        const int result = exchange();
        memcpy(out, response.data, count);
        return result;
    }

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
template <typename Function, typename... Arguments>
int by_number(Function location_form, int blade_num, Arguments... arguments)
{
    const blade_location location = {static_cast<uint8_t>(blade_num), 0, {0, 0}};
    return location_form(&location, arguments...);
}

} // namespace ruk

#endif
