// Any request, by its numbers.

#include "cli/command_tree.h"

namespace cli
{

namespace
{

struct raw_request {
    uint8_t netfn = 0;
    uint8_t command = 0;
    bytes payload;
};

// Requests have even network functions of 6 bits; the odd ones are their answers'.
uint8_t request_netfn(const std::string &text)
{
    const int64_t netfn = parse_number(text, 0, 0x3E);
    if (netfn % 2 != 0)
        throw usage_failure(text + " is the network function of an answer; a request's is even");
    return static_cast<uint8_t>(netfn);
}

report send_raw(const blade &at, const raw_request &wanted)
{
    const std::string name = "request " + hex(wanted.netfn) + " " + hex(wanted.command);
    const auto netfn_cmd = static_cast<uint16_t>(wanted.netfn << 8 | wanted.command);
    const bytes answer = exchange({netfn_cmd, name.c_str()}, at, wanted.payload);
    return tell({{"completion_code", "0x00"}, {"answer", hex(answer)}}, answer);
}

} // namespace

void add_raw(const noun &root)
{
    root.verb("raw", "Send any request and show the answer", send_raw)
        .argument("NETFN", &raw_request::netfn, request_netfn, "Network function, e.g. 0x0A")
        .argument("CMD", &raw_request::command, number<uint8_t>, "Command, e.g. 0x40")
        .arguments("BYTES", &raw_request::payload, number<uint8_t>, "Payload, byte by byte")
        .binary();
}

} // namespace cli
