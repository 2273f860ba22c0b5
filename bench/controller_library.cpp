// One request to a blade through the library, the daemon and its bridge, again and again:
// `NETFN COMMAND COUNT`, to the blade in slot 1. Prints nanoseconds per exchange.

#include "processes.h"
#include "ruk_ipmi/exchange.h"

int main(int argc, char **argv)
{
    if (argc != 4)
        return 2;
    const uint32_t netfn_cmd = bench::number(argv[1]) << 8 | bench::number(argv[2]);
    printf("%.1f\n", bench::ns_each(bench::number(argv[3]), [=] {
               ipmi_request request{};
               request.location.slot_id = 1;
               request.netfn_cmd = netfn_cmd;
               ipmi_response response{};
               response.data_len = sizeof response.data;
               bench::check(get_ruk_ipmi_response(&request, &response, 500) == 0 &&
                                response.comp_code == 0,
                            "an exchange through the daemon");
           }));
    return 0;
}
