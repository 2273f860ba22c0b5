// What a chassis description may say, and how mistakes in it are told: with file, line and column.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "chassisd/config.h"

namespace
{

using namespace chassisd;

class Configuration : public testing::Test
{
  protected:
    Configuration()
    {
        char name[] = "/tmp/ruk-config-XXXXXX";
        directory_ = mkdtemp(name);
    }
    ~Configuration() override { std::filesystem::remove_all(directory_); }

    std::string file(const std::string &name, const std::string &text, int mode = 0600) const
    {
        std::string path = directory_ + "/" + name;
        std::ofstream(path) << text;
        std::filesystem::permissions(path, static_cast<std::filesystem::perms>(mode));
        return path;
    }

    chassis_config load(const std::string &text) const
    {
        return load_config(file("chassis.toml", text));
    }

    // What is wrong, from the line number on.
    std::string mistake(const std::string &text) const
    {
        try {
            load(text);
        } catch (const config_error &error) {
            const std::string head = directory_ + "/chassis.toml:";
            const std::string what = error.what();
            EXPECT_EQ(head, what.substr(0, head.size()));
            return what.substr(head.size());
        }
        return "none";
    }

    std::string directory_;
};

TEST_F(Configuration, ASlotIsAllThatABladeNeeds)
{
    const chassis_config config = load("[[blade]]\nslot = 3\n");
    ASSERT_EQ(1u, config.blades.size());
    EXPECT_EQ(3, config.blades[0].slot);
    EXPECT_EQ(0, config.blades[0].sub_slot);
    EXPECT_EQ(12u, std::get<simulated_config>(config.blades[0].kind).sel_entries);
    EXPECT_EQ(16u, config.slots);
}

TEST_F(Configuration, ReadsAllThatASimulatedBladeCanSay)
{
    const chassis_config config =
        load("[chassis]\nname = \"lab\"\nslots = 20\nplatform_type = 0x21\nphysical_location = 9\n"
             "[[blade]]\nslot = 20\nsub_slot = 2\nkind = \"simulated\"\nname = \"node\"\n"
             "sel_entries = 512\nolder_controller = true\n"
             "faults = { delay_ms = 5, drop_every = 3, completion_code = 0xC0, truncate_to = 2, "
             "oversize_to = 600 }\n");
    EXPECT_EQ("lab", config.name);
    EXPECT_EQ(20u, config.slots);
    EXPECT_EQ(0x21u, config.platform_type);
    EXPECT_EQ(9u, config.physical_location);
    const blade_config &blade = config.blades.at(0);
    EXPECT_EQ(2, blade.sub_slot);
    EXPECT_EQ("node", std::get<simulated_config>(blade.kind).name);
    EXPECT_TRUE(std::get<simulated_config>(blade.kind).older_controller);
    EXPECT_EQ(5u, blade.faults.delay_ms);
    EXPECT_EQ(3u, blade.faults.drop_every);
    EXPECT_EQ(0xC0, blade.faults.completion_code);
    EXPECT_EQ(2u, blade.faults.truncate_to);
    EXPECT_EQ(600u, blade.faults.oversize_to);
}

TEST_F(Configuration, ReadsAllThatABridgedBladeCanSay)
{
    file("secret", "pa ss\n");
    const chassis_config config =
        load("[[blade]]\nslot = 1\nkind = \"bridge\"\nhost = \"::1\"\nport = 9001\n"
             "username = \"u\"\npassword_file = \"secret\"\nprivilege = \"operator\"\n"
             "cipher_suite = 17\nworkarounds = [\"opensesspriv\"]\ntimeout_ms = 2000\n"
             "retransmit_ms = 250\nkeepalive_s = 0\n");
    const auto &bridge = std::get<bridge_config>(config.blades.at(0).kind);
    EXPECT_EQ("::1", bridge.host);
    EXPECT_EQ(9001, bridge.port);
    EXPECT_EQ("u", bridge.username);
    EXPECT_EQ("pa ss", bridge.password);
    EXPECT_EQ("operator", bridge.privilege);
    EXPECT_EQ(17, bridge.cipher_suite);
    EXPECT_EQ(std::vector<std::string>{"opensesspriv"}, bridge.workarounds);
    EXPECT_EQ(2000u, bridge.timeout_ms);
    EXPECT_EQ(250u, bridge.retransmit_ms);
    EXPECT_EQ(0u, bridge.keepalive_s);
}

TEST_F(Configuration, APasswordCanComeFromTheEnvironment)
{
    setenv("RUK_TEST_PASSWORD", "from-env", 1);
    const chassis_config config = load("[[blade]]\nslot = 1\nkind = \"bridge\"\nhost = \"h\"\n"
                                       "password_env = \"RUK_TEST_PASSWORD\"\n");
    EXPECT_EQ("from-env", std::get<bridge_config>(config.blades.at(0).kind).password);
}

TEST_F(Configuration, APasswordFileThatOthersCanReadIsRefused)
{
    file("secret", "x\n", 0640);
    EXPECT_EQ("4:17: password_file: " + directory_ +
                  "/secret must be readable by its owner alone (0600)",
              mistake("[[blade]]\nslot = 1\nkind = \"bridge\"\npassword_file = \"secret\"\n"
                      "host = \"h\"\n"));
}

TEST_F(Configuration, MistakesAreToldWithTheirPlace)
{
    const struct {
        const char *text;
        const char *told;
    } cases[] = {
        {"", "1:1: a chassis needs at least one [[blade]]"},
        {"blade = 3\n", "1:9: blade: must be written as [[blade]]"},
        {"[[blade]]\nslot = 0\n", "2:8: slot: must be a number from 1 to 16"},
        {"[[blade]]\nslot = 17\n", "2:8: slot: must be a number from 1 to 16"},
        {"[[blade]]\nslot = \"1\"\n", "2:8: slot: must be a number from 1 to 16"},
        {"[[blade]]\nname = \"x\"\n", "1:1: a blade needs its slot"},
        {"[[blade]]\nslot = 1\n[[blade]]\nslot = 1\n", "3:1: slot 1 sub_slot 0 is taken already"},
        {"[[blade]]\nslot = 1\nsolt = 2\n", "3:1: unknown key \"solt\" in a simulated blade"},
        {"[[blade]]\nslot = 1\nhost = \"h\"\n", "3:1: unknown key \"host\" in a simulated blade"},
        {"[[blade]]\nslot = 1\nkind = \"real\"\n",
         "3:8: kind: must be \"simulated\" or \"bridge\""},
        {"[[blade]]\nslot = 1\nkind = 1\n", "3:8: kind: must be \"simulated\" or \"bridge\""},
        {"[[blade]]\nslot = 1\nkind = \"bridge\"\n",
         "1:1: host: a bridged blade needs the name or address of its controller"},
        {"[[blade]]\nslot = 1\nkind = \"bridge\"\nhost = \"h\"\nprivilege = \"root\"\n",
         "5:13: privilege: must be \"user\", \"operator\" or \"admin\""},
        {"[[blade]]\nslot = 1\nkind = \"bridge\"\nhost = \"h\"\nworkarounds = [\"magic\"]\n",
         "5:15: workarounds: unknown workaround \"magic\""},
        {"[[blade]]\nslot = 1\nsel_entries = 513\n",
         "3:15: sel_entries: must be a number from 0 to 512"},
        {"[[blade]]\nslot = 1\nolder_controller = 1\n",
         "3:20: older_controller: must be true or false"},
        {"[[blade]]\nslot = 1\nfaults = { delay = 1 }\n", "3:12: unknown key \"delay\" in faults"},
        {"[[blade]]\nslot = 1\nfaults = 1\n", "3:10: faults: must be a table"},
        {"[chassis]\nslots = 0\n[[blade]]\nslot = 1\n",
         "2:9: slots: must be a number from 1 to 255"},
        {"[other]\n", "1:2: unknown key \"other\" in the file"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(each.told, mistake(each.text)) << each.text;
}

TEST_F(Configuration, ATextThatIsNotTomlIsToldWithItsPlace)
{
    EXPECT_EQ("2:", mistake("[[blade]]\nslot 1\n").substr(0, 2));
}

TEST_F(Configuration, ASimulatedChassisFillsItsFirstSlots)
{
    const chassis_config config = simulated_chassis(20);
    ASSERT_EQ(20u, config.blades.size());
    EXPECT_EQ(1, config.blades.front().slot);
    EXPECT_EQ(20, config.blades.back().slot);
    EXPECT_EQ(20u, config.slots);
}

} // namespace
