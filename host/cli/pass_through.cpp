// Information of the chassis and of its storage that is passed through to a blade.

#include <algorithm>
#include <cstring>
#include <optional>

#include "cli/command_tree.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name chassis_information = {0x30CB, "Process Chassis Information"};
const request_name storage_information = {0x30CB, "Process Storage Information"};

constexpr size_t head = 6;
constexpr size_t longest = IPMI_REQUEST_DATA_SIZE - head;

struct information_choice {
    uint8_t command = 0;
    uint8_t sub_command = 0;
    uint8_t option = 0;
    std::optional<uint16_t> length;
    uint16_t number = 0;
    bytes data;
};

// A number that may be left out.
std::optional<uint16_t> some_number(const std::string &text)
{
    return number<uint16_t>(text);
}

// The block that the library wants: its numbers are in host byte order.
bytes block(const information_choice &chosen)
{
    const uint16_t length = chosen.length.value_or(static_cast<uint16_t>(chosen.data.size()));
    bytes block(head + chosen.data.size());
    block[1] = chosen.option;
    memcpy(&block[2], &length, sizeof length);
    memcpy(&block[4], &chosen.number, sizeof chosen.number);
    std::copy(chosen.data.begin(), chosen.data.end(), block.begin() + head);
    return block;
}

// What was done may not be done twice, so a short answer is not looked at a second time: zeros
// stand for what it has not.
report told(const uint8_t *answer, size_t size)
{
    const bytes data(answer + 1, answer + size);
    return tell({{"answer", hex(data)}}, data);
}

report chassis_info(const blade &at, const information_choice &chosen)
{
    const bytes request = block(chosen);
    uint8_t answer[134] = {};
    call(chassis_information, at, ipmi_location_process_zat_chassis_info, chosen.command,
         chosen.sub_command, static_cast<int>(request.size()), request.data(), answer);
    return told(answer, sizeof answer);
}

report storage_info(const blade &at, const information_choice &chosen)
{
    if (at.location.sub_slot_id != 0)
        throw usage_failure("is for whole slots; nothing was sent");
    const bytes request = block(chosen);
    uint8_t answer[262] = {};
    check(storage_information, static_cast<uint32_t>(ipmi_process_zat_storage_info(
                                   at.location.slot_id, chosen.command, chosen.sub_command,
                                   static_cast<int>(request.size()), request.data(), answer)));
    return told(answer, sizeof answer);
}

void with_request(verb<information_choice> verb)
{
    verb.argument("CMD", &information_choice::command, number<uint8_t>, "Command, 0 to 255")
        .argument("SUB", &information_choice::sub_command, number<uint8_t>, "Sub-command, 0 to 255")
        .option("--data", "HEX", &information_choice::data, hex_up_to<longest>,
                "Its data, up to 482 bytes. Of the answer 133 bytes are shown, of a storage's 261; "
                "zeros stand for those that did not come")
        .option("--length", "N", &information_choice::length, some_number,
                "Length to tell; that of the data when not given")
        .option("--number", "N", &information_choice::number, number<uint16_t>,
                "Number behind the length, 0 when not given")
        .option("--option", "N", &information_choice::option, number<uint8_t>,
                "Told in the log alone, 0 when not given")
        .binary();
}

} // namespace

void add_pass_through(const noun &blade)
{
    with_request(blade.verb("chassis-info", "Pass on information of the chassis", chassis_info));
    with_request(blade.verb("storage-info", "Pass on information of the storage", storage_info));
}

} // namespace cli
