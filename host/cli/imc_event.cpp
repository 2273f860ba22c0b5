// The miscellaneous IMC event record of a blade.

#include "cli/command_tree.h"

namespace cli
{

namespace
{

const request_name get_event = {0x30D0, "Get Miscellaneous IMC Event"};

constexpr size_t header = offsetof(misc_imc_event, data);

json event_fields(const misc_imc_event &event, const bytes &data)
{
    return {{"length", event.payload_len},
            {"features", hex(event.feature_bits)},
            {"fru", hex(event.fru_id)},
            {"data", hex(data)}};
}

report get(const blade &at)
{
    misc_imc_event event{};
    const int result = location_blade_get_miscellaneous_imc_event(&at.location, &event);
    if (result == IPMI_ERR_INVALID_PARAM && event.payload_len > sizeof event) {
        report told = tell(event_fields(event, {}));
        told.ended =
            failure(exit_refused, std::string(get_event.name) + ": the record says that it has " +
                                      std::to_string(event.payload_len) +
                                      " bytes, which is more than " + std::to_string(sizeof event));
        return told;
    }
    check(get_event, static_cast<uint32_t>(result));
    const size_t length = std::max<size_t>(event.payload_len, header);
    const bytes data(event.data, event.data + (length - header));
    if (may_be_cut_short(data))
        exchange(get_event, at, {0x01, 0x1B, sizeof event, 0, 0, 0}, 5 + length);
    return tell(event_fields(event, data));
}

} // namespace

void add_imc_event(const noun &root)
{
    const noun event = root.noun_below("imc-event", "The miscellaneous IMC event record");
    event.verb("get", "Show the miscellaneous IMC event record", get);
}

} // namespace cli
