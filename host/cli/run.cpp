#include "cli/run.h"

#include <cstdlib>

#include "cli/targets.h"
#include "cli/vocabulary.h"

namespace cli
{

namespace
{

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
    // Never taken apart: the program ends sooner so.
    static vocabulary &words = *new vocabulary(nouns_in(argc, argv));

    const auto usage_error = [&](const std::string &what) {
        const failure wrong = usage_failure(what);
        if (wants_json(argc, argv))
            write_json(json::array({{{"blade", nullptr}, {"error", failure_fields(wrong)}}}));
        complain("ruk-ipmi", wrong);
        return wrong.kind;
    };
    try {
        words.app.parse(argc, argv);
        check_usage(*words.typed, words.chosen);
    } catch (const CLI::ParseError &error) {
        const bool help_is_of_a_noun = !words.app.get_subcommands().empty();
        if (error.get_exit_code() != 0)
            return usage_error(usage_text(words.app, error));
        return help_is_of_a_noun ? words.app.exit(error) : vocabulary(all_nouns()).app.exit(error);
    } catch (const failure &wrong) {
        return usage_error(wrong.what());
    }

    set_log_level(words.chosen.verbosity);
    try {
        return words.typed->follow ? follow(*words.typed, words.chosen)
                                   : execute(*words.typed, words.chosen);
    } catch (const std::exception &error) {
        complain("ruk-ipmi", failure(exit_refused, error.what()));
        return exit_refused;
    }
}

} // namespace cli
