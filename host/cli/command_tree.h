// How a command of the tool is declared. A command is a function from a blade, and what was typed
// behind the command's name, to a report; declaring it is one statement:
//
//     struct entry_choice {
//         uint16_t id = 0;
//     };
//
//     report get_entry(const blade &at, const entry_choice &chosen);
//
//     const noun sel = root.noun_below("sel", "The system event log");
//     sel.verb("get", "Show one entry", get_entry)
//         .argument("ID", &entry_choice::id, number<uint16_t>, "Record ID, for example 0x0001");
//
// The reader of an argument gets its text and returns its value or throws a usage failure, so that
// nothing is sent before all that was typed is known to be good.
#ifndef RUK_HOST_CLI_COMMAND_TREE_H
#define RUK_HOST_CLI_COMMAND_TREE_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/report.h"
#include "cli/request.h"
#include "cli/stream.h"
#include "cli/syntax.h"

namespace cli
{

// The command that was typed, ready to be run.
struct command {
    std::string name; // "sel get"
    std::function<report(const blade &)> run;
    bool for_blades = true;  // they must be named
    bool has_binary = false; // there is something that -o binary could write
    bool one_blade = false;  // more than one makes no sense
    // Each of these, where it is set, runs instead of `run`, for all blades at once: one to its
    // end, the other until it is interrupted.
    std::function<report(const blades &)> survey = {};
    std::function<exit_code(const blades &, stream &)> follow = {};
};

struct no_arguments {
};

// What such a command runs.
template <typename Arguments>
using follow_handler = exit_code (*)(const blades &, const Arguments &, stream &);

template <typename Arguments>
auto follow_function(follow_handler<Arguments> handler, std::shared_ptr<Arguments> arguments)
{
    return [handler, arguments = std::move(arguments)](const blades &at, stream &out) {
        return handler(at, *arguments, out);
    };
}

// Reads an argument; a complaint says which one it is about.
template <typename Value>
Value read_named(const char *name, Value (*read)(const std::string &), const std::string &text)
{
    try {
        return read(text);
    } catch (const failure &wrong) {
        throw usage_failure(std::string(name) + ": " + wrong.what());
    }
}

template <typename Arguments>
class verb
{
  public:
    verb(const syntax &words, std::shared_ptr<Arguments> arguments,
         std::shared_ptr<command> declared)
        : syntax_(words),
          arguments_(std::move(arguments)),
          declared_(std::move(declared))
    {
    }

    // An argument that must be there.
    template <typename Value, typename Owner>
    verb &argument(const char *name, Value Owner::*field, Value (*read)(const std::string &),
                   const char *help)
    {
        return optional_argument(name, field, read, help).required();
    }

    // Any number of arguments, each read by itself.
    template <typename Value, typename Owner>
    verb &arguments(const char *name, std::vector<Value> Owner::*field,
                    Value (*read)(const std::string &), const char *help)
    {
        std::vector<Value> &into = (*arguments_).*field;
        const auto keep = [&into, name, read](const std::string &text) {
            into.push_back(read_named(name, read, text));
        };
        syntax_.arguments(name, keep, help);
        return *this;
    }

    // An option with a value, "--id"; `metavar` is the value's name in the help.
    template <typename Value, typename Owner>
    verb &option(const char *name, const char *metavar, Value Owner::*field,
                 Value (*read)(const std::string &), const char *help)
    {
        syntax_.option(name, metavar, keeper(name, field, read), help);
        return *this;
    }

    // An argument that may be left out.
    template <typename Value, typename Owner>
    verb &optional_argument(const char *name, Value Owner::*field,
                            Value (*read)(const std::string &), const char *help)
    {
        syntax_.argument(name, keeper(name, field, read), help);
        return *this;
    }

    // Words that the option or argument declared last takes, for those who look for them.
    verb &choices(std::vector<std::string> (*known)())
    {
        syntax_.choices(known);
        return *this;
    }

    // The option declared last must be there.
    verb &required()
    {
        syntax_.required();
        return *this;
    }

    // The option declared last makes sense only with this other one.
    verb &needs(const char *other)
    {
        syntax_.needs(other);
        return *this;
    }

    // The option declared last makes no sense with this other one.
    verb &excludes(const char *other)
    {
        syntax_.excludes(other);
        return *this;
    }

    // A flag by which the command becomes one that goes on until it is interrupted.
    verb &follow(const char *name, follow_handler<Arguments> handler, const char *help)
    {
        const auto make_it = [declared = declared_, run = follow_function(handler, arguments_)] {
            declared->follow = run;
        };
        syntax_.flag(name, make_it, help);
        return *this;
    }

    template <typename Owner>
    verb &flag(const char *name, bool Owner::*field, const char *help)
    {
        bool &into = (*arguments_).*field;
        syntax_.flag(
            name, [&into] { into = true; }, help);
        return *this;
    }

    verb &binary()
    {
        declared_->has_binary = true;
        return *this;
    }

    verb &one_blade()
    {
        declared_->one_blade = true;
        return *this;
    }

  private:
    template <typename Value, typename Owner>
    syntax::reader keeper(const char *name, Value Owner::*field, Value (*read)(const std::string &))
    {
        Value &into = (*arguments_).*field;
        return
            [&into, name, read](const std::string &text) { into = read_named(name, read, text); };
    }

    syntax syntax_;
    std::shared_ptr<Arguments> arguments_;
    std::shared_ptr<command> declared_;
};

class noun
{
  public:
    // `chosen` receives the command that is found on the command line.
    noun(const syntax &words, std::string path, std::shared_ptr<command> chosen)
        : syntax_(words),
          path_(std::move(path)),
          chosen_(std::move(chosen))
    {
    }

    // A noun below this one.
    noun noun_below(const char *name, const char *help) const
    {
        return {syntax_.noun(name, help), full_name(name), chosen_};
    }

    template <typename Arguments>
    cli::verb<Arguments> verb(const char *name, const char *help,
                              report (*handler)(const blade &, const Arguments &)) const
    {
        auto arguments = std::make_shared<Arguments>();
        const auto run = [handler, arguments](const blade &at) { return handler(at, *arguments); };
        return declare<Arguments>(name, help, arguments, {full_name(name), run});
    }

    cli::verb<no_arguments> verb(const char *name, const char *help,
                                 report (*handler)(const blade &)) const
    {
        return declare<no_arguments>(name, help, nullptr, {full_name(name), handler});
    }

    // A command that is for no blade.
    void local_verb(const char *name, const char *help, report (*handler)()) const
    {
        command local{full_name(name), nullptr};
        local.for_blades = false;
        local.survey = [handler](const blades &) { return handler(); };
        declare<no_arguments>(name, help, nullptr, std::move(local));
    }

    // A command that tells of all blades in one report; they may be left out.
    template <typename Arguments>
    cli::verb<Arguments> survey_verb(const char *name, const char *help,
                                     report (*handler)(const blades &, const Arguments &)) const
    {
        auto arguments = std::make_shared<Arguments>();
        command survey{full_name(name), nullptr};
        survey.for_blades = false;
        survey.survey = [handler, arguments](const blades &at) { return handler(at, *arguments); };
        return declare<Arguments>(name, help, arguments, std::move(survey));
    }

    // A command that goes on until it is interrupted; the blades may be left out.
    template <typename Arguments>
    cli::verb<Arguments> follow_verb(const char *name, const char *help,
                                     follow_handler<Arguments> handler) const
    {
        auto arguments = std::make_shared<Arguments>();
        command following{full_name(name), nullptr};
        following.for_blades = false;
        following.follow = follow_function(handler, arguments);
        return declare<Arguments>(name, help, arguments, std::move(following));
    }

  private:
    std::string full_name(const char *name) const
    {
        return path_.empty() ? name : path_ + " " + name;
    }

    template <typename Arguments>
    cli::verb<Arguments> declare(const char *name, const char *help,
                                 std::shared_ptr<Arguments> arguments, command described) const
    {
        auto declared = std::make_shared<command>(std::move(described));
        const auto found = [chosen = chosen_, declared] { *chosen = *declared; };
        return {syntax_.verb(name, help, found), std::move(arguments), declared};
    }

    syntax syntax_;
    std::string path_;
    std::shared_ptr<command> chosen_;
};

// The nouns, one file each.
void add_autothrottle(const noun &root);
void add_blade(const noun &root);
void add_chassis(const noun &root);
void add_controller(const noun &root);
void add_cpld(const noun &root);
void add_events(const noun &root);
void add_exporter(const noun &root);
void add_ext(const noun &root);
void add_file(const noun &root);
void add_fru(const noun &root);
void add_functions(const noun &root);
void add_imc_event(const noun &root);
void add_lan(const noun &root);
void add_lcd(const noun &root);
void add_led(const noun &root);
void add_link_tuning(const noun &root);
void add_lldp(const noun &root);
void add_location(const noun &root);
void add_notify(const noun &root);
void add_post_code(const noun &root);
void add_power(const noun &root);
void add_power_button(const noun &root);
void add_power_thermal(const noun &root);
void add_raw(const noun &root);
void add_sdr(const noun &root);
void add_sel(const noun &root);
void add_sled(const noun &root);
void add_sysinfo(const noun &root);
void add_timeouts(const noun &root);
void add_user(const noun &root);
void add_version(const noun &root);

// Commands of a noun that have a file of their own.
void add_boot_options(const noun &chassis);
void add_chassis_control(const noun &chassis);
void add_pass_through(const noun &blade);
void add_power_watch(const noun &power);

} // namespace cli

#endif
