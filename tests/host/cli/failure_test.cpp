#include "cli/failure.h"

#include <algorithm>
#include <freeipmi/freeipmi.h>
#include <gtest/gtest.h>

using namespace cli;

namespace
{

const request_name get_sel_entry = {0x0A43, "Get SEL Entry"};

std::string message(uint32_t result)
{
    try {
        check(get_sel_entry, result);
    } catch (const failure &why) {
        return why.what();
    }
    return "";
}

bool same_but_for_case(const std::string &one, const std::string &other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](unsigned char a, unsigned char b) { return tolower(a) == tolower(b); });
}

} // namespace

// Its names are whole sentences, some with a second one.
TEST(failures, have_freeipmis_names_for_the_codes_of_all_commands)
{
    for (const unsigned code : {0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC7, 0xC8, 0xC9, 0xCA,
                                0xCB, 0xCC, 0xCD, 0xCE, 0xCF, 0xD3, 0xFF}) {
        char text[IPMI_ERR_STR_MAX_LEN] = "";
        ASSERT_EQ(ipmi_completion_code_strerror_r(0x43, 0x0A, static_cast<uint8_t>(code), text,
                                                  sizeof text),
                  0);
        std::string name = text;
        name.resize(std::min(name.find('.'), name.size()));
        const std::string told = message(code);
        const std::string told_name = told.substr(told.find('(') + 1);
        EXPECT_TRUE(same_but_for_case(told_name, name + ")")) << told << "\n" << name;
    }
}

TEST(failures, have_a_name_for_the_codes_of_one_command)
{
    EXPECT_EQ(message(0x81),
              "Get SEL Entry refused: 0x81 (cannot execute command, SEL erase in progress)");
    EXPECT_EQ(message(0x9F), "Get SEL Entry refused: 0x9F (a code of this command's own)");
}

TEST(failures, name_every_code_of_all_commands)
{
    for (unsigned code = 0xC0; code <= 0xD6; ++code)
        EXPECT_EQ(message(code).find("own"), std::string::npos) << message(code);
}
