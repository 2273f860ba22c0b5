#include "cli/syntax.h"

#include <CLI/CLI.hpp>

namespace cli
{

namespace
{

CLI::App *add_subcommand(CLI::App *app, const char *name, const char *help)
{
    return app->add_subcommand(name, help)->group("Commands")->fallthrough();
}

} // namespace

syntax syntax::noun(const char *name, const char *help) const
{
    return syntax(add_subcommand(app_, name, help)->require_subcommand(1));
}

syntax syntax::verb(const char *name, const char *help, std::function<void()> found) const
{
    return syntax(add_subcommand(app_, name, help)->final_callback(std::move(found)));
}

void syntax::option(const char *name, const char *metavar, const reader &read, const char *help)
{
    argument(name, read, help);
    last_option_->type_name_fn([metavar] { return std::string(metavar); });
}

void syntax::argument(const char *name, const reader &read, const char *help)
{
    const auto keep = [read](const CLI::results_t &texts) {
        read(texts.back());
        return true;
    };
    last_option_ = app_->add_option(name, keep, help);
}

void syntax::arguments(const char *name, const reader &read, const char *help)
{
    const auto keep = [read](const CLI::results_t &texts) {
        for (const std::string &text : texts)
            read(text);
        return true;
    };
    last_option_ = app_->add_option(name, keep, help)
                       ->type_size(1)
                       ->allow_extra_args()
                       ->expected(0, CLI::detail::expected_max_vector_size);
}

void syntax::flag(const char *name, std::function<void()> found, const char *help)
{
    last_option_ = app_->add_flag_callback(name, std::move(found), help);
}

// CLI11 itself calls a type with a fixed set of values so.
void syntax::choices(std::vector<std::string> (*known)())
{
    last_option_->option_text(last_option_->get_type_name());
    last_option_->type_name_fn([known] { return "{" + CLI::detail::join(known()) + "}"; });
}

void syntax::required()
{
    last_option_->required();
}

void syntax::needs(const char *other)
{
    last_option_->needs(app_->get_option(other));
}

void syntax::excludes(const char *other)
{
    last_option_->excludes(app_->get_option(other));
}

} // namespace cli
