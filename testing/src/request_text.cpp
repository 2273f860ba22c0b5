#include "request_text.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "command_names.h"
#include "hex.h"
#include "journal.h"

namespace ruk_ipmi_testing
{

namespace
{

constexpr size_t request_header = offsetof(ipmi_request, data);
constexpr size_t row_length = 16;
constexpr size_t rows_shown = 4; // of a long payload, those that differ

bytes on_the_way(const ipmi_request &request)
{
    return bytes_at(&request, request_header + request.data_len);
}

// The part of a message that is a request's header; what is missing of it is 0.
ipmi_request header_of(const sent_message &came)
{
    ipmi_request request{};
    memcpy(static_cast<void *>(&request), came.content.data(),
           std::min(came.content.size(), request_header));
    return request;
}

bytes payload_of(const bytes &content)
{
    const size_t from = std::min(content.size(), request_header);
    return bytes(content.begin() + static_cast<ptrdiff_t>(from), content.end());
}

std::string name_of(const blade_location &location)
{
    std::string name = formatted("blade %u", location.slot_id);
    if (location.sub_slot_id != 0)
        name += formatted(".%u", location.sub_slot_id);
    if (location.reserved[0] != 0 || location.reserved[1] != 0)
        name +=
            formatted(" (reserved bytes %02X %02X)", location.reserved[0], location.reserved[1]);
    return name;
}

std::string size_text(size_t size)
{
    return size == 1 ? "1 byte" : formatted("%zu bytes", size);
}

// "blade 5, 0x0A43 (ipmi_location_get_sel_entry), 6 bytes".
std::string in_words(const ipmi_request &header, size_t payload)
{
    std::string text = name_of(header.location) + formatted(", 0x%04X", header.netfn_cmd);
    const char *const function = function_of(header.netfn_cmd);
    if (function)
        text += formatted(" (%s)", function);
    return text + ", " + (payload == 0 ? "no payload" : size_text(payload));
}

// The bytes of a payload under the line that tells of it.
std::string rows_of(const bytes &payload)
{
    std::string text;
    for (size_t from = 0; from < payload.size(); from += row_length)
        text += "    " +
                hex(bytes_at(&payload[from], std::min(row_length, payload.size() - from))) + "\n";
    return text;
}

// A row of one of two payloads that are told apart; what only the other has is dashes.
std::string row_of(const bytes &payload, size_t from, size_t until)
{
    std::string text;
    for (size_t i = from; i < until; ++i)
        text += i < payload.size() ? formatted(" %02X", payload[i]) : " --";
    return text + "\n";
}

bool differs_at(size_t i, const bytes &a, const bytes &b)
{
    return i >= a.size() || i >= b.size() || a[i] != b[i];
}

// Two payloads, row below row, with marks below the bytes that differ. Of long ones, the rows that
// do.
std::string rows_that_differ(const bytes &received, const bytes &expected)
{
    const size_t length = std::max(received.size(), expected.size());
    std::string text;
    size_t found = 0;
    for (size_t from = 0; from < length; from += row_length) {
        const size_t until = std::min(from + row_length, length);
        std::string marks;
        for (size_t i = from; i < until; ++i)
            marks += differs_at(i, received, expected) ? " ^^" : "   ";
        marks.erase(marks.find_last_not_of(' ') + 1);
        if (marks.empty() || ++found > rows_shown)
            continue;
        if (length > row_length)
            text += formatted("  payload from byte %zu on\n", from);
        text += "    expected:" + row_of(expected, from, until) +
                "    received:" + row_of(received, from, until) + "             " + marks + "\n";
    }
    if (found > rows_shown)
        text += formatted("  and %zu more rows that differ\n", found - rows_shown);
    return text;
}

using texts = std::vector<std::string>;

void compare_numbers(texts &wrong, const char *what, uint32_t received, uint32_t expected)
{
    if (received != expected)
        wrong.push_back(formatted("%s is 0x%X instead of 0x%X", what, received, expected));
}

void compare_payloads(texts &wrong, const bytes &received, const bytes &expected)
{
    if (received.size() != expected.size())
        wrong.push_back("a payload of " + size_text(received.size()) + " instead of " +
                        size_text(expected.size()));
    size_t found = 0;
    for (size_t i = 0; i < std::min(received.size(), expected.size()); ++i)
        if (received[i] != expected[i] && ++found == 1)
            wrong.push_back(formatted("payload byte %zu is 0x%02X instead of 0x%02X", i,
                                      received[i], expected[i]));
    if (found > 1)
        wrong.back() += formatted(" and %zu more", found - 1);
}

// All that differs, in one line.
std::string wrong_in(const sent_message &came, const ipmi_request &expected)
{
    const ipmi_request header = header_of(came);
    texts wrong;
    if (bytes_at(&header.location, 4) != bytes_at(&expected.location, 4))
        wrong.push_back("the blade");
    if (header.netfn_cmd != expected.netfn_cmd)
        wrong.push_back("the command");
    compare_payloads(wrong, payload_of(came.content), payload_of(on_the_way(expected)));
    if (came.length != request_header + header.data_len)
        wrong.push_back(
            formatted("data_len is %u in a message of %u bytes", header.data_len, came.length));
    compare_numbers(wrong, "msg_type", header.msg_type, expected.msg_type);
    compare_numbers(wrong, "reserved_04", header.reserved_04, expected.reserved_04);
    compare_numbers(wrong, "reserved_0c", header.reserved_0c, expected.reserved_0c);
    compare_numbers(wrong, "the component", came.component, IPMI_COMPONENT);
    compare_numbers(wrong, "the word of flags", came.flags, 0);

    std::string line = "  wrong:";
    for (const std::string &each : wrong)
        line += (&each == &wrong.front() ? " " : ", ") + each;
    return line + "\n";
}

} // namespace

bool is_as_expected(const sent_message &came, const ipmi_request &expected)
{
    return came.component == IPMI_COMPONENT && came.flags == 0 &&
           came.length == came.content.size() && came.content == on_the_way(expected);
}

std::string expected_text(const ipmi_request &request)
{
    const bytes payload = payload_of(on_the_way(request));
    return "  expected: " + in_words(request, payload.size()) + "\n" + rows_of(payload);
}

std::string received_text(const sent_message &came)
{
    const bytes payload = payload_of(came.content);
    return "  received: " + in_words(header_of(came), payload.size()) + "\n" + rows_of(payload);
}

std::string difference(const sent_message &came, const ipmi_request &expected)
{
    const bytes received = payload_of(came.content);
    const bytes wanted = payload_of(on_the_way(expected));
    return "  expected: " + in_words(expected, wanted.size()) +
           "\n  received: " + in_words(header_of(came), received.size()) + "\n" +
           (received == wanted ? rows_of(wanted) : rows_that_differ(received, wanted)) +
           wrong_in(came, expected);
}

} // namespace ruk_ipmi_testing
