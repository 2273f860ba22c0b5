#include "cli/command_tree.h"

namespace cli
{

CLI::App *noun::add_subcommand(const char *name, const char *help) const
{
    return app_->add_subcommand(name, help)->group("Commands")->fallthrough();
}

noun noun::noun_below(const char *name, const char *help) const
{
    CLI::App *app = add_subcommand(name, help)->require_subcommand(1);
    return {app, full_name(name), chosen_};
}

} // namespace cli
