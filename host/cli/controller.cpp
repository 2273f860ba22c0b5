// A blade's controller: what it is, what it can do, and how far its discovery is.

#include "cli/command_tree.h"
#include "cli/freeipmi.h"
#include "cli/names.h"
#include "cli/output.h"
#include "cli/readers.h"
#include "cli/records.h"

namespace cli
{

namespace
{

const request_name get_device_id = {0x0601, "Get Device ID"};
const request_name get_features = {0x30BD, "Get Feature Info"};
const request_name get_cpld_version = {0x3033, "Get CPLD Version"};
const request_name get_power_management = {0x30A9, "Get Power Management"};
const request_name get_discovery = {0x30A3, "Get Auto Discovery Status"};
const request_name send_six = {0x30C9, "Send Value"};
const request_name send_eight = {0x30C3, "Send Feature"};

json manufacturer(uint32_t number)
{
    char text[256] = "";
    if (FREEIPMI(ipmi_iana_enterprise_numbers_string)(number, text, sizeof text) <= 0)
        return nullptr;
    return printable(text);
}

// The revision's low digits are binary-coded decimal: 0x02 0x14 is 2.14.
std::string firmware_version(const bytes &id)
{
    return std::to_string(id[2] & 0x7F) + "." + hex(&id[3], 1);
}

json device(const blade &at)
{
    constexpr size_t length = 11; // four further bytes may be missing
    const bytes id = exchange(get_device_id, at, {}, length);
    const uint32_t maker = load_le16(&id[6]) | static_cast<uint32_t>(id[8] & 0x0F) << 16;
    return {{"device_id", hex(id[0])},
            {"device_revision", id[1] & 0x0F},
            {"provides_sdrs", (id[1] & 0x80) != 0},
            {"firmware_version", firmware_version(id)},
            {"being_updated", (id[2] & 0x80) != 0},
            {"ipmi_version", version_text(id[4])},
            {"supports", names_of_bits(id[5], {"sensors", "SDRs", "SEL", "FRU", "event receiver",
                                               "event generator", "bridge", "chassis"})},
            {"manufacturer_id", maker},
            {"manufacturer", manufacturer(maker)},
            {"product_id", hex(load_le16(&id[9]))},
            {"further_bytes", hex(bytes(id.begin() + length, id.end()))}};
}

json features(const blade &at)
{
    return hex(ask_bytes<7>(get_features, at, {}, ipmi_location_get_feature_info));
}

json cpld_version(const blade &at)
{
    return hex(ask_bytes<6>(get_cpld_version, at, {}, ipmi_location_get_cpld_version));
}

json power_management(const blade &at)
{
    return hex(ask<uint8_t>(get_power_management, at, ipmi_location_get_pm_status));
}

json rebrand(const blade &at)
{
    char text[15 + 1] = ""; // a long one comes without a terminator
    call(get_power_management, at, ipmi_location_get_pm_rebrand, text);
    return printable(text);
}

report info(const blade &at)
{
    json fields = device(at);
    fields["features"] = unless_refused([&] { return features(at); }, nullptr);
    fields["cpld_version"] = unless_refused([&] { return cpld_version(at); }, nullptr);
    fields["power_management"] = unless_refused([&] { return power_management(at); }, nullptr);
    fields["rebrand"] = unless_refused([&] { return rebrand(at); }, nullptr);
    return tell(std::move(fields));
}

report discovery(const blade &at)
{
    return tell({{"discovery", hex(ask_bytes<10>(get_discovery, at, {0x12},
                                                 ipmi_location_get_auto_discovery_status))}});
}

struct value_choice {
    bytes value;
};

report send_value(const blade &at, const value_choice &chosen)
{
    ask<uint8_t>(send_six, at, ipmi_location_send_bexal_quon, chosen.value.data());
    return tell({{"value", hex(chosen.value)}});
}

report send_feature(const blade &at, const value_choice &chosen)
{
    ask<uint8_t>(send_eight, at, ipmi_location_send_zat_feature, chosen.value.data());
    return tell({{"feature", hex(chosen.value)}});
}

} // namespace

void add_controller(const noun &root)
{
    const noun controller = root.noun_below("controller", "The blade's management controller");
    controller.verb("info", "Show what the controller is and what it can do", info);
    controller.verb("discovery", "Show how far automatic discovery is, 9 bytes", discovery);
    controller.verb("send-value", "Send the controller a value", send_value)
        .argument("HEX", &value_choice::value, hex_of<6>, "The value's 6 bytes");
    controller.verb("send-feature", "Send the controller a feature block", send_feature)
        .argument("HEX", &value_choice::value, hex_of<8>, "The block's 8 bytes");
}

} // namespace cli
