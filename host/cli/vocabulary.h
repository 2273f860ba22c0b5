// The words that the tool knows, and what was typed of them.
#ifndef RUK_HOST_CLI_VOCABULARY_H
#define RUK_HOST_CLI_VOCABULARY_H

#include <CLI/CLI.hpp>
#include <memory>
#include <set>
#include <string_view>

#include "cli/command_tree.h"
#include "cli/output.h"

namespace cli
{

struct exit_meaning {
    exit_code code;
    const char *meaning; // in the help and the manual
};

inline constexpr exit_meaning exit_meanings[] = {
    {exit_fine, "fine"},
    {exit_refused, "the blade refused or failed"},
    {exit_usage, "wrong usage, argument or file"},
    {exit_access, "the blade's controller refuses access"},
    {exit_transport, "no answer from the blade"},
    {exit_unsupported, "the blade does not know the command"},
};

struct options {
    std::vector<blade_location> blades;
    cli::format format = format::for_people;
    bool utc = false;
    int verbosity = 0;
};

using noun_names = std::set<std::string_view>;

noun_names all_nouns();

// The first among the arguments: no other can be meant, and to declare every command takes longer
// than most commands take to run. All where none is, or where it may be an option's value.
noun_names nouns_in(int argc, char **argv);

struct vocabulary {
    // The commands of these nouns alone.
    explicit vocabulary(const noun_names &wanted);

    CLI::App app;
    options chosen;
    std::shared_ptr<command> typed = std::make_shared<command>();
};

} // namespace cli

#endif
