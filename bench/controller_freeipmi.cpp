// One request to a controller by FreeIPMI in this process, again and again in one session, which is
// opened as the bridge opens its own: `NETFN COMMAND COUNT HOST:PORT USERNAME PASSWORD`. Prints
// nanoseconds per exchange.

#include <freeipmi/freeipmi.h>

#include "processes.h"

int main(int argc, char **argv)
{
    if (argc != 7)
        return 2;
    constexpr uint8_t cipher_suite = 3;
    constexpr unsigned patience_ms = 2000;
    constexpr unsigned retransmit_ms = 500;
    const ipmi_ctx_t session = ipmi_ctx_create();
    bench::check(session &&
                     ipmi_ctx_open_outofband_2_0(
                         session, argv[4], argv[5], argv[6], nullptr, 0, IPMI_PRIVILEGE_LEVEL_ADMIN,
                         cipher_suite, patience_ms, retransmit_ms,
                         IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_OPEN_SESSION_PRIVILEGE,
                         IPMI_FLAGS_DEFAULT) == 0,
                 "a session");

    const auto netfn = static_cast<uint8_t>(bench::number(argv[1]));
    const auto command = static_cast<uint8_t>(bench::number(argv[2]));
    printf("%.1f\n", bench::ns_each(bench::number(argv[3]), [=] {
               uint8_t answer[1024];
               const int length =
                   ipmi_cmd_raw(session, 0, netfn, &command, 1, answer, sizeof answer);
               bench::check(length > 2 && answer[1] == 0, "an exchange in the session");
           }));
    ipmi_ctx_close(session);
    ipmi_ctx_destroy(session);
    return 0;
}
