// Requests to a blade's CPLD.

#include <cstring>

#include "cli/command_tree.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name cpld_access = {0x30BC, "CPLD Access"};

struct cpld_request {
    bytes data;
};

// The library wants the two numbers of the operations 2 and 3 in host byte order; they are typed
// as they travel.
bytes in_host_order(bytes request)
{
    if (request[0] == 2 || request[0] == 3) {
        const uint16_t first = load_le16(&request[1]);
        const uint32_t second = load_le32(&request[3]);
        memcpy(&request[1], &first, sizeof first);
        memcpy(&request[3], &second, sizeof second);
    }
    return request;
}

report access(const blade &at, const cpld_request &wanted)
{
    const bytes request = in_host_order(wanted.data);
    const auto result = ask<uint32_t>(cpld_access, at, ipmi_cpld_access, request.data());
    uint8_t answer[sizeof result]; // completion code first
    memcpy(answer, &result, sizeof result);
    return tell({{"answer", hex(answer + 1, sizeof answer - 1)}});
}

} // namespace

void add_cpld(const noun &root)
{
    const noun cpld = root.noun_below("cpld", "The blade's CPLD");
    cpld.verb("access", "Send the CPLD a request and show 3 bytes of the answer", access)
        .argument("HEX", &cpld_request::data, hex_of<10>,
                  "The request's 10 bytes as they travel, the operation first");
}

} // namespace cli
