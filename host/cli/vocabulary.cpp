#include "cli/vocabulary.h"

#include <algorithm>

#include "cli/targets.h"
#include "help/formatter.h"

namespace cli
{

namespace
{

std::string meaning(size_t code)
{
    return std::to_string(exit_meanings[code].code) + " " + exit_meanings[code].meaning;
}

std::string footer()
{
    std::string text = "Every blade is tried; the worst failure makes the exit code:\n";
    constexpr size_t half = std::size(exit_meanings) / 2;
    for (size_t code = 0; code < half; ++code)
        text += "  " + padded(meaning(code), 35) + meaning(code + half) + "\n";
    return text + "Order of badness: 4, 3, 2, 1, 5. Messages go to standard error.\n"
                  "A command that goes on ends with 0 when it is interrupted; its JSON is lines.";
}

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
    app.set_help_flag("-h,--help", "Show this help");
    app.set_version_flag("--version", "ruk-ipmi " RUK_IPMI_VERSION, "Show the version");
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
        ->option_text("FORMAT")
        ->type_name_fn([] { return std::string("{normal,json,binary}"); })
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
    {"exporter", add_exporter},
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
    const auto is_noun = [](std::string_view word, const top_noun &each) {
        return word == each.name;
    };
    char **const found =
        std::find_first_of(argv + 1, argv + argc, std::begin(nouns), std::end(nouns), is_noun);
    const bool is_certain = found != argv + argc && (found == argv + 1 || **(found - 1) != '-');
    return is_certain ? noun_names{*found} : all_nouns();
}

vocabulary::vocabulary(const noun_names &wanted)
    : app("Talks IPMI to the controllers of a chassis' blades.", "ruk-ipmi")
{
    app.formatter(std::make_shared<help::formatter>());
    app.footer(std::function<std::string()>(footer));
    app.require_subcommand(1);
    app.set_help_flag(); // each command would take the time to make one of its own
    const noun root(syntax(&app), "", typed);
    for (const top_noun &each : nouns)
        if (wanted.count(each.name) != 0)
            each.add(root);
    add_options(app, chosen);
}

} // namespace cli
