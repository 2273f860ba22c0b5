// Get SEL Entry by the library, over a message service that costs nothing: `COUNT`.

#include "repeat.h"
#include "ruk_ipmi/sel.h"

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    const blade_location location = {1, 0, {0, 0}};
    sel_entry entry{};
    return bench::repeat(argv[1], [&] {
        return ipmi_location_get_sel_entry(&location, 1, &entry) == 0 && entry.next_record_id == 2;
    });
}
