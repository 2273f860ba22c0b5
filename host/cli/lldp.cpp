// LLDP connection information for a blade.

#include "cli/command_tree.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name send_info = {0x30D0, "Set LLDP Connection Info"};

constexpr size_t longest_at_once = 128;
constexpr size_t length_field = 2;
constexpr size_t longest = 0xFFFF - length_field;

struct lldp_choice {
    bytes info;
};

report send(const blade &at, const lldp_choice &chosen)
{
    // Where it takes several requests, the library counts the length's own two bytes in and leaves
    // as many behind at the end. So that these are none of the file's, two more are given.
    bytes info = chosen.info;
    if (info.size() > longest_at_once)
        info.resize(info.size() + length_field);
    call(send_info, at, ipmi_location_set_lldp_connection_info, info.data(),
         static_cast<uint16_t>(info.size()));
    return tell({{"bytes", chosen.info.size()}});
}

} // namespace

void add_lldp(const noun &root)
{
    const noun lldp = root.noun_below("lldp", "The blade's LLDP connection information");
    lldp.verb("send", "Give the blade its connection information", send)
        .argument("FILE", &lldp_choice::info, file_up_to<longest>,
                  "The information, up to 65533 bytes; - is standard input. It goes in parts of "
                  "128; that the blade refused one before the last is only in the log: -vv shows "
                  "it");
}

} // namespace cli
