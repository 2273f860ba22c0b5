#include "cli/run.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <string_view>

#include "cli/command_tree.h"
#include "cli/output.h"
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

struct options {
    std::vector<blade_location> blades;
    cli::format format = format::for_people;
    bool utc = false;
    int verbosity = 0;
};

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

// What is wrong with the command line, in the tool's words where the parser's are too general.
std::string usage_text(const CLI::App &app, const CLI::ParseError &error)
{
    const CLI::App *deepest = &app;
    std::string path = "ruk-ipmi";
    while (!deepest->get_subcommands().empty()) {
        deepest = deepest->get_subcommands().front();
        path += " " + deepest->get_name();
    }
    const bool incomplete =
        !deepest->get_subcommands([](const CLI::App *) { return true; }).empty();
    const auto unknown = app.remaining(true);
    if (incomplete && unknown.empty())
        return "which command? " + path + " -h lists them";
    if (incomplete)
        return "no command \"" + unknown.front() + "\"; " + path + " -h lists those there are";
    return error.what();
}

// Whether the arguments ask for JSON, also when they are too wrong to be read.
bool wants_json(int argc, char **argv)
{
    for (int at = 1; at < argc; ++at) {
        const std::string_view text = argv[at];
        if (text == "-ojson" || text == "-o=json" || text == "--output=json" ||
            (text == "json" && (argv[at - 1] == std::string_view("-o") ||
                                argv[at - 1] == std::string_view("--output"))))
            return true;
    }
    return false;
}

// The library's log is for those who ask: $RUK_LOG, else as many -v as were given.
void set_log_level(int verbosity)
{
    static constexpr const char *levels[] = {"none", "error", "debug", "verbose"};
    setenv("RUK_LOG", levels[std::min(verbosity, 3)], false);
}

void check_usage(const command &command, const options &chosen)
{
    if (command.for_blades && chosen.blades.empty())
        throw usage_failure(command.name + ": for which blades? Say -b SLOT[.SUB], e.g. -b 3 or "
                                           "-b 1-8,10,3.2");
    if (chosen.format == format::as_bytes && !command.has_binary)
        throw usage_failure(command.name + ": has no binary output");
    const bool several = chosen.blades.size() > 1;
    if (command.follow && chosen.format == format::as_bytes)
        throw usage_failure(command.name + ": has no binary output while it goes on");
    if (several && chosen.format == format::as_bytes)
        throw usage_failure(command.name + ": binary output is for one blade at a time");
    if (several && command.one_blade)
        throw usage_failure(command.name + ": is for one blade at a time");
}

// What a command has to say of what it is run for; when it cannot, why.
template <typename Subject>
report run_for(const Subject &subject, const std::function<report(const Subject &)> &run)
{
    report none;
    try {
        return run(subject);
    } catch (const failure &why) {
        none.ended = why;
    } catch (const std::exception &unforeseen) {
        none.ended = failure(exit_refused, unforeseen.what());
    }
    return none;
}

exit_code ending_of(const report &told)
{
    return told.ended ? told.ended->kind : exit_fine;
}

exit_code execute(const command &command, const options &chosen)
{
    exit_code worst = exit_fine;
    output out(chosen.format, chosen.blades.size() > 1);
    if (command.survey) {
        const report told = run_for(blades{chosen.blades, chosen.utc}, command.survey);
        out.local(told);
        worst = ending_of(told);
    } else {
        for (const blade_location &location : chosen.blades) {
            const report told = run_for(blade{location, chosen.utc}, command.run);
            out.blade(target_name(location), told);
            worst = worse(worst, ending_of(told));
        }
    }
    out.finish();
    return worst;
}

exit_code follow(const command &command, const options &chosen)
{
    stream out(chosen.format, chosen.verbosity > 0);
    try {
        return command.follow({chosen.blades, chosen.utc}, out);
    } catch (const failure &why) {
        out.failed("", why);
        return why.kind;
    }
}

} // namespace

int run(int argc, char **argv)
{
    CLI::App app{"Talks IPMI to the controllers of a chassis' blades.", "ruk-ipmi"};
    app.formatter(std::make_shared<help_formatter>());
    app.footer(footer);
    app.require_subcommand(1);
    app.set_version_flag("--version", "ruk-ipmi " RUK_IPMI_VERSION, "Show the version");
    options chosen;
    add_options(app, chosen);

    const auto typed = std::make_shared<command>();
    const noun root(syntax(&app), "", typed);
    add_chassis(root);
    add_blade(root);
    add_controller(root);
    add_sel(root);
    add_sdr(root);
    add_fru(root);
    add_sled(root);
    add_led(root);
    add_lcd(root);
    add_power(root);
    add_power_button(root);
    add_power_thermal(root);
    add_autothrottle(root);
    add_lan(root);
    add_user(root);
    add_sysinfo(root);
    add_ext(root);
    add_location(root);
    add_link_tuning(root);
    add_lldp(root);
    add_file(root);
    add_notify(root);
    add_post_code(root);
    add_cpld(root);
    add_imc_event(root);
    add_raw(root);
    add_events(root);
    add_timeouts(root);
    add_functions(root);
    add_version(root);

    const auto usage_error = [&](const std::string &what) {
        const failure wrong = usage_failure(what);
        if (wants_json(argc, argv))
            write_json(json::array({{{"blade", nullptr}, {"error", failure_fields(wrong)}}}));
        complain("ruk-ipmi", wrong);
        return wrong.kind;
    };
    try {
        app.parse(argc, argv);
        check_usage(*typed, chosen);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0)
            return app.exit(error);
        return usage_error(usage_text(app, error));
    } catch (const failure &wrong) {
        return usage_error(wrong.what());
    }

    set_log_level(chosen.verbosity);
    try {
        return typed->follow ? follow(*typed, chosen) : execute(*typed, chosen);
    } catch (const std::exception &error) {
        complain("ruk-ipmi", failure(exit_refused, error.what()));
        return exit_refused;
    }
}

} // namespace cli
