#include "manual/marks.h"

namespace manual
{

namespace
{

// So that a command's name alone can be typed.
void let_all_be_missing(CLI::App &app)
{
    for (CLI::Option *option : app.get_options())
        option->required(false);
    for (CLI::App *below : app.get_subcommands([](CLI::App *) { return true; }))
        let_all_be_missing(*below);
}

void mark(command &at, cli::vocabulary &known)
{
    if (at.commands.empty()) {
        known.app.parse(joined({at.path.begin() + 1, at.path.end()}, " "));
        at.for_blades = known.typed->for_blades;
        at.for_one_blade = known.typed->one_blade;
        at.has_binary = known.typed->has_binary;
    }
    for (command &below : at.commands)
        mark(below, known);
}

} // namespace

void add_marks(command &tool, cli::vocabulary &known)
{
    let_all_be_missing(known.app);
    mark(tool, known);
}

} // namespace manual
