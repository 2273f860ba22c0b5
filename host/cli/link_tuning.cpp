// The tuning of a blade's links.

#include "cli/command_tree.h"

namespace cli
{

namespace
{

const request_name get_version = {0x30D0, "Get Link Tuning Version"};
const request_name get_tx_status = {0x30D0, "Get Link Tuning Transmit Status"};

// The four bytes of a number that the library copies as they came.
std::string as_they_came(const uint32_t &number)
{
    return hex(reinterpret_cast<const uint8_t *>(&number), sizeof number);
}

report version(const blade &at)
{
    uint32_t value_a = 0;
    uint32_t value_b = 0;
    uint8_t value_c = 0;
    call(get_version, at, ipmi_location_get_link_tuning_version, &value_a, &value_b, &value_c);
    return tell({{"value_a", as_they_came(value_a)},
                 {"value_b", as_they_came(value_b)},
                 {"value_c", hex(value_c)}});
}

report tx_status(const blade &at)
{
    return tell({{"tx_status",
                  hex(ask<uint8_t>(get_tx_status, at, ipmi_location_get_link_tuning_tx_status))}});
}

} // namespace

void add_link_tuning(const noun &root)
{
    const noun tuning = root.noun_below("link-tuning", "The tuning of the blade's links");
    tuning.verb("version", "Show the tuning's version, in the blade's bytes", version);
    tuning.verb("tx-status", "Show the links' transmit status", tx_status);
}

} // namespace cli
