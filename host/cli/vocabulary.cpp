#include "cli/vocabulary.h"

#include "cli/targets.h"

namespace cli
{

namespace
{

constexpr const char *footer =
    R"(Every blade is tried; the worst failure makes the exit code:
  0 fine                             3 the blade's controller refuses access
  1 the blade refused or failed      4 no answer from the blade
  2 wrong usage, argument or file    5 the blade does not know the command
Order of badness: 4, 3, 2, 1, 5. Messages go to standard error.
A command that goes on ends with 0 when it is interrupted; its JSON is lines.)";

// Help in the words of this tool; at every level it ends with the options of every command.
class help_formatter : public CLI::Formatter
{
  public:
    help_formatter()
    {
        label("SUBCOMMAND", "COMMAND");
        label("Positionals", "Arguments");
        column_width(column);
    }

    std::string make_description(const CLI::App *app) const override
    {
        return Formatter::make_description(app) + "\n";
    }

    std::string make_option_desc(const CLI::Option *option) const override
    {
        return wrapped(option->get_description(), 80 - column, 0);
    }

    // The library's own lists the others in the order of their addresses.
    std::string make_option_opts(const CLI::Option *option) const override
    {
        const std::string others =
            names("Needs", option->get_needs()) + names("Excludes", option->get_excludes());
        return option->get_option_text().empty() && !others.empty()
                   ? others
                   : Formatter::make_option_opts(option);
    }

    std::string make_footer(const CLI::App *app) const override
    {
        const CLI::App *root = app;
        while (root->get_parent())
            root = root->get_parent();
        if (root == app)
            return Formatter::make_footer(app);
        const auto common = root->get_options([](const CLI::Option *option) {
            return option->get_single_name() != "help" && option->get_single_name() != "version";
        });
        return make_group("Options of every command", false, common).substr(1);
    }

  private:
    static std::string names(const char *what, const std::set<CLI::Option *> &options)
    {
        std::set<std::string> in_order;
        for (const CLI::Option *each : options)
            in_order.insert(each->get_name());
        std::string text = in_order.empty() ? "" : std::string(" ") + what + ":";
        for (const std::string &each : in_order)
            text += " " + each;
        return text;
    }

    static constexpr size_t column = 26;
};

cli::format format_named(const std::string &name)
{
    if (name == "normal")
        return format::for_people;
    if (name == "json")
        return format::as_json;
    if (name == "binary")
        return format::as_bytes;
    throw usage_failure("\"" + name + "\" is none of normal, json and binary");
}

void add_options(CLI::App &app, options &chosen)
{
    app.add_option(
           "-b,--blade",
           [&chosen](const CLI::results_t &texts) {
               chosen.blades = parse_targets(CLI::detail::join(texts, ","));
               return true;
           },
           "Blades, e.g. 3, 1-8,10 or 3.2 (slot 3, sub-slot 2)")
        ->type_name("SLOT[.SUB]")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app.add_option(
           "-o,--output",
           [&chosen](const CLI::results_t &texts) {
               chosen.format = read_named("-o", format_named, texts.back());
               return true;
           },
           "normal (the default), json or binary")
        ->type_name("FORMAT")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_flag("--utc", chosen.utc, "Show times in UTC, not in local time");
    app.add_flag("-v,--verbose", chosen.verbosity,
                 "Log errors (-v), debug lines (-vv) or all (-vvv)");
}

struct top_noun {
    std::string_view name;
    void (*add)(const noun &root);
};

// In the order in which the help lists them.
constexpr top_noun nouns[] = {
    {"chassis", add_chassis},
    {"blade", add_blade},
    {"controller", add_controller},
    {"sel", add_sel},
    {"sdr", add_sdr},
    {"fru", add_fru},
    {"sled", add_sled},
    {"led", add_led},
    {"lcd", add_lcd},
    {"power", add_power},
    {"power-button", add_power_button},
    {"power-thermal", add_power_thermal},
    {"autothrottle", add_autothrottle},
    {"lan", add_lan},
    {"user", add_user},
    {"sysinfo", add_sysinfo},
    {"ext", add_ext},
    {"location", add_location},
    {"link-tuning", add_link_tuning},
    {"lldp", add_lldp},
    {"file", add_file},
    {"notify", add_notify},
    {"post-code", add_post_code},
    {"cpld", add_cpld},
    {"imc-event", add_imc_event},
    {"raw", add_raw},
    {"events", add_events},
    {"timeouts", add_timeouts},
    {"functions", add_functions},
    {"version", add_version},
};

} // namespace

noun_names all_nouns()
{
    noun_names all;
    for (const top_noun &each : nouns)
        all.insert(each.name);
    return all;
}

noun_names nouns_in(int argc, char **argv)
{
    const std::set<std::string_view> words(argv + 1, argv + argc);
    noun_names named;
    for (const top_noun &each : nouns)
        if (words.count(each.name) != 0)
            named.insert(each.name);
    return named.empty() ? all_nouns() : named;
}

vocabulary::vocabulary(const noun_names &wanted)
    : app("Talks IPMI to the controllers of a chassis' blades.", "ruk-ipmi")
{
    app.formatter(std::make_shared<help_formatter>());
    app.footer(footer);
    app.require_subcommand(1);
    app.set_version_flag("--version", "ruk-ipmi " RUK_IPMI_VERSION, "Show the version");
    add_options(app, chosen);
    const noun root(syntax(&app), "", typed);
    for (const top_noun &each : nouns)
        if (wanted.count(each.name) != 0)
            each.add(root);
}

} // namespace cli
