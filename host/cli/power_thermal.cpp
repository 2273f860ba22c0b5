// Power and thermal management.

#include "cli/command_tree.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name power_thermal = {0x30CE, "Power and Thermal Management"};

struct power_thermal_choice {
    uint8_t operation = 0;
    uint8_t parameter = 0;
    uint16_t offset = 0;
    bytes body;
};

report raw(const blade &at, const power_thermal_choice &chosen)
{
    power_thermal_request request{};
    request.op = chosen.operation;
    request.param = chosen.parameter;
    request.len = static_cast<uint16_t>(chosen.body.size());
    request.offset = chosen.offset;
    std::copy(chosen.body.begin(), chosen.body.end(), request.body);
    uint8_t answer[10] = {}; // completion code first
    call(power_thermal, at, ipmi_location_process_power_thermal_mgmt, &request, answer);
    return tell({{"answer", hex(answer + 1, sizeof answer - 1)}});
}

} // namespace

void add_power_thermal(const noun &root)
{
    const noun noun = root.noun_below("power-thermal", "Power and thermal management");
    noun.verb("raw", "Send a request and show 9 bytes of the answer", raw)
        .argument("OP", &power_thermal_choice::operation, number<uint8_t>, "Operation, 0 to 255")
        .argument("PARAM", &power_thermal_choice::parameter, number<uint8_t>, "Parameter, 0 to 255")
        .option("--data", "HEX", &power_thermal_choice::body,
                hex_up_to<sizeof power_thermal_request::body>,
                "Its data, up to 482 bytes, e.g. 01ff")
        .option("--offset", "N", &power_thermal_choice::offset, number<uint16_t>,
                "Offset of the data in the parameter, 0 when not given");
}

} // namespace cli
