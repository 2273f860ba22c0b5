// Sends one command to a blade asynchronously and prints the answer's data, completion code first:
//
//     async_command SLOT NETFN COMMAND [DATA...]      all numbers as strtoul reads them

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include "ruk_ipmi.h"

namespace
{

std::atomic<bool> answered{false};

void print(ipmi_response *response)
{
    if (response->comp_code > 0xFF)
        printf("status 0x%04x", response->comp_code);
    for (uint32_t i = 0; i < response->data_len; ++i)
        printf("%02x", response->data[i]);
    printf("\n");
    answered = true;
}

uint8_t byte(const char *text)
{
    return static_cast<uint8_t>(strtoul(text, nullptr, 0));
}

} // namespace

int main(int argc, char **argv)
{
    static ipmi_request request;
    if (argc < 4 || ruk_ipmi_init() != 0)
        return 2;
    request.location.slot_id = byte(argv[1]);
    request.netfn_cmd = static_cast<uint32_t>(byte(argv[2]) << 8 | byte(argv[3]));
    for (char **each = argv + 4; *each && request.data_len < sizeof request.data; ++each)
        request.data[request.data_len++] = byte(*each);
    if (send_ruk_ipmi_command(&request, print, 500) != 0)
        return 1;
    for (int patience = 0; patience < 1000 && !answered; ++patience)
        usleep(10000);
    return answered ? 0 : 1;
}
