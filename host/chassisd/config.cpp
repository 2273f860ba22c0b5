#include "chassisd/config.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <toml++/toml.h>

#include "chassisd/bridge/bridge.h"

namespace chassisd
{

namespace
{

constexpr size_t longest_password = 20;
constexpr size_t longest_username = 16;
constexpr int64_t longest_answer = 1000;
constexpr int64_t one_hour_ms = 3'600'000;

using keys = std::vector<std::string_view>;

[[noreturn]] void complain(const std::string &path, const toml::source_position &where,
                           const std::string &what)
{
    throw config_error(path + ":" + std::to_string(where.line) + ":" +
                       std::to_string(where.column) + ": " + what);
}

// One table of the file: reads its keys, and complains with the place where something is wrong.
class section
{
  public:
    section(const std::string &path, const toml::table &table, std::string name, const keys &known)
        : path_(path),
          table_(table),
          name_(std::move(name))
    {
        for (const auto &[key, value] : table)
            if (std::find(known.begin(), known.end(), key.str()) == known.end())
                fail(key.source(), "unknown key \"" + std::string(key.str()) + "\" in " + name_);
    }

    [[noreturn]] void fail(const toml::source_region &where, const std::string &what) const
    {
        complain(path_, where.begin, what);
    }

    [[noreturn]] void fail(const char *key, const std::string &what) const
    {
        const toml::node *node = table_.get(key);
        fail(node ? node->source() : table_.source(), std::string(key) + ": " + what);
    }

    template <typename Number>
    std::optional<Number> number(const char *key, int64_t least, int64_t most) const
    {
        const toml::node *node = table_.get(key);
        if (!node)
            return std::nullopt;
        const auto value = node->value_exact<int64_t>();
        if (!value || *value < least || *value > most)
            fail(key,
                 "must be a number from " + std::to_string(least) + " to " + std::to_string(most));
        return static_cast<Number>(*value);
    }

    std::optional<std::string> text(const char *key, size_t longest = 255) const
    {
        const toml::node *node = table_.get(key);
        if (!node)
            return std::nullopt;
        auto value = node->value_exact<std::string>();
        if (!value || value->size() > longest)
            fail(key, "must be a text of at most " + std::to_string(longest) + " bytes");
        return value;
    }

    std::optional<bool> truth(const char *key) const
    {
        const toml::node *node = table_.get(key);
        if (!node)
            return std::nullopt;
        const auto value = node->value_exact<bool>();
        if (!value)
            fail(key, "must be true or false");
        return value;
    }

    std::vector<std::string> texts(const char *key) const
    {
        std::vector<std::string> all;
        const toml::node *node = table_.get(key);
        if (!node)
            return all;
        if (!node->is_array())
            fail(key, "must be a list of texts");
        for (const toml::node &each : *node->as_array()) {
            const auto value = each.value_exact<std::string>();
            if (!value)
                fail(each.source(), std::string(key) + ": must be a list of texts");
            all.push_back(*value);
        }
        return all;
    }

    const toml::table *table(const char *key) const
    {
        const toml::node *node = table_.get(key);
        if (node && !node->is_table())
            fail(key, "must be a table");
        return node ? node->as_table() : nullptr;
    }

    bool has(const char *key) const { return table_.contains(key); }
    const toml::source_region &source() const { return table_.source(); }
    const std::string &path() const { return path_; }

  private:
    const std::string &path_;
    const toml::table &table_;
    std::string name_;
};

template <typename Value>
void set(Value &field, const std::optional<Value> &value)
{
    if (value)
        field = *value;
}

std::string read_password_file(const section &blade, const std::string &name)
{
    const auto path = std::filesystem::path(blade.path()).parent_path() / name;
    struct stat found;
    if (stat(path.c_str(), &found) != 0)
        blade.fail("password_file", "cannot read " + path.string());
    if ((found.st_mode & 0077) != 0)
        blade.fail("password_file", path.string() + " must be readable by its owner alone (0600)");
    std::ifstream file(path);
    std::string password;
    if (!std::getline(file, password) && !file.eof())
        blade.fail("password_file", "cannot read " + path.string());
    return password;
}

std::string read_password(const section &blade)
{
    if (blade.has("password_file") && blade.has("password_env"))
        blade.fail("password_env", "password_file is given too: one of them says it");
    std::string password;
    if (const auto name = blade.text("password_file")) {
        password = read_password_file(blade, *name);
    } else if (const auto variable = blade.text("password_env")) {
        const char *value = getenv(variable->c_str());
        if (!value)
            blade.fail("password_env", "the environment has no " + *variable);
        password = value;
    }
    if (password.size() > longest_password)
        blade.fail(blade.has("password_env") ? "password_env" : "password_file",
                   "the password is longer than 20 bytes");
    return password;
}

fault_config read_faults(const std::string &path, const toml::table &table)
{
    const section faults(
        path, table, "faults",
        {"delay_ms", "drop_every", "completion_code", "truncate_to", "oversize_to"});
    fault_config config;
    set(config.delay_ms, faults.number<uint32_t>("delay_ms", 0, one_hour_ms));
    set(config.drop_every, faults.number<uint32_t>("drop_every", 0, 1'000'000));
    config.completion_code = faults.number<uint8_t>("completion_code", 1, 255);
    config.truncate_to = faults.number<uint32_t>("truncate_to", 0, longest_answer);
    config.oversize_to = faults.number<uint32_t>("oversize_to", 0, longest_answer);
    return config;
}

simulated_config read_simulated(const section &blade)
{
    simulated_config config;
    set(config.name, blade.text("name", 32));
    set(config.sel_entries, blade.number<uint32_t>("sel_entries", 0, 512));
    set(config.older_controller, blade.truth("older_controller"));
    return config;
}

bridge_config read_bridge(const section &blade)
{
    bridge_config config;
    set(config.host, blade.text("host"));
    if (config.host.empty())
        blade.fail("host", "a bridged blade needs the name or address of its controller");
    set(config.port, blade.number<uint16_t>("port", 1, 65535));
    set(config.username, blade.text("username", longest_username));
    config.password = read_password(blade);
    set(config.privilege, blade.text("privilege"));
    if (config.privilege != "user" && config.privilege != "operator" && config.privilege != "admin")
        blade.fail("privilege", "must be \"user\", \"operator\" or \"admin\"");
    set(config.cipher_suite, blade.number<uint8_t>("cipher_suite", 0, 17));
    config.workarounds = blade.texts("workarounds");
    for (const std::string &name : config.workarounds)
        if (!known_workaround(name))
            blade.fail("workarounds", "unknown workaround \"" + name + "\"");
    set(config.timeout_ms, blade.number<uint32_t>("timeout_ms", 100, 60'000));
    set(config.retransmit_ms, blade.number<uint32_t>("retransmit_ms", 50, 60'000));
    if (config.retransmit_ms > config.timeout_ms)
        blade.fail("retransmit_ms", "must not be longer than timeout_ms");
    set(config.keepalive_s, blade.number<uint32_t>("keepalive_s", 0, 3600));
    return config;
}

// The keys that a blade of a kind may have.
keys known_keys(const std::string &kind)
{
    keys known = {"slot", "sub_slot", "kind", "faults"};
    const keys of_its_kind =
        kind == "bridge" ? keys{"host",         "port",          "username",     "password_file",
                                "password_env", "privilege",     "cipher_suite", "workarounds",
                                "timeout_ms",   "retransmit_ms", "keepalive_s"}
                         : keys{"name", "sel_entries", "older_controller"};
    known.insert(known.end(), of_its_kind.begin(), of_its_kind.end());
    return known;
}

blade_config read_blade(const std::string &path, const toml::table &table, uint32_t slots)
{
    const std::string kind =
        table.contains("kind") ? table["kind"].value_or(std::string()) : "simulated";
    if (kind != "simulated" && kind != "bridge")
        complain(path, table.get("kind")->source().begin,
                 "kind: must be \"simulated\" or \"bridge\"");
    const section blade(path, table, "a " + kind + " blade", known_keys(kind));

    blade_config config;
    if (kind == "bridge")
        config.kind = read_bridge(blade);
    else
        config.kind = read_simulated(blade);

    const auto slot = blade.number<uint8_t>("slot", 1, slots);
    if (!slot)
        blade.fail(blade.source(), "a blade needs its slot");
    config.slot = *slot;
    set(config.sub_slot, blade.number<uint8_t>("sub_slot", 0, 255));
    if (const toml::table *faults = blade.table("faults"))
        config.faults = read_faults(path, *faults);
    return config;
}

} // namespace

chassis_config load_config(const std::string &path)
{
    toml::table file;
    try {
        file = toml::parse_file(path);
    } catch (const toml::parse_error &error) {
        complain(path, error.source().begin, std::string(error.description()));
    }
    const section top(path, file, "the file", {"chassis", "blade"});

    chassis_config config;
    if (const toml::table *table = top.table("chassis")) {
        const section chassis(path, *table, "chassis",
                              {"name", "slots", "platform_type", "physical_location"});
        set(config.name, chassis.text("name", 64));
        set(config.slots, chassis.number<uint32_t>("slots", 1, 255));
        set(config.platform_type, chassis.number<uint32_t>("platform_type", 0, UINT32_MAX));
        set(config.physical_location, chassis.number<uint32_t>("physical_location", 0, UINT32_MAX));
    }

    const toml::node *blades = file.get("blade");
    if (!blades)
        complain(path, {1, 1}, "a chassis needs at least one [[blade]]");
    if (!blades->is_array_of_tables())
        top.fail("blade", "must be written as [[blade]]");
    std::set<std::pair<uint8_t, uint8_t>> taken;
    for (const toml::node &each : *blades->as_array()) {
        const toml::table &table = *each.as_table();
        config.blades.push_back(read_blade(path, table, config.slots));
        const blade_config &blade = config.blades.back();
        if (!taken.insert({blade.slot, blade.sub_slot}).second)
            top.fail(table.source(), "slot " + std::to_string(blade.slot) + " sub_slot " +
                                         std::to_string(blade.sub_slot) + " is taken already");
    }
    return config;
}

chassis_config simulated_chassis(unsigned count)
{
    chassis_config config;
    config.slots = std::max(config.slots, count);
    for (unsigned slot = 1; slot <= count; ++slot) {
        blade_config blade;
        blade.slot = static_cast<uint8_t>(slot);
        config.blades.push_back(blade);
    }
    return config;
}

} // namespace chassisd
