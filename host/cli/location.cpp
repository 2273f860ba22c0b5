// The physical location of a blade, as it is told to it.

#include "cli/command_tree.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name set_location = {0x30CE, "Set Physical Location"};

constexpr uint32_t numeric_attribute = 513;

struct location_choice {
    uint32_t attribute = 0;
    uint8_t param = 0;
    std::string value;
};

constexpr uint32_t attributes[] = {637, 706, 633, 205, 600, numeric_attribute};

std::vector<std::string> attribute_numbers()
{
    std::vector<std::string> numbers;
    for (const uint32_t each : attributes)
        numbers.push_back(std::to_string(each));
    return numbers;
}

// Of any other attribute the library would send nothing but a header.
uint32_t attribute(const std::string &text)
{
    const auto id = number<uint32_t>(text);
    for (const uint32_t known : attributes)
        if (id == known)
            return id;
    throw usage_failure(text + " is none of 637, 706, 633, 205, 600 and 513");
}

report set(const blade &at, const location_choice &chosen)
{
    json value = chosen.value;
    if (chosen.attribute == numeric_attribute)
        value = number<uint8_t>(chosen.value);
    const std::string sent = value.is_string() ? chosen.value : value.dump();
    call(set_location, at, ipmi_location_set_physical_location, chosen.param, chosen.attribute,
         sent.c_str());
    return tell({{"attribute", chosen.attribute}, {"value", value}});
}

} // namespace

void add_location(const noun &root)
{
    const noun location = root.noun_below("location", "The blade's physical location");
    location.verb("set", "Tell the blade an attribute of its location", set)
        .option("--attribute", "ID", &location_choice::attribute, attribute,
                "637, 706, 633, 205 or 600, which are texts, or 513, a number")
        .choices(attribute_numbers)
        .required()
        .option("--param", "N", &location_choice::param, number<uint8_t>,
                "Number sent along with a text, 0 when not given")
        .argument("VALUE", &location_choice::value, text_up_to<128>,
                  "A text of up to 128 characters, or a number from 0 to 255");
}

} // namespace cli
