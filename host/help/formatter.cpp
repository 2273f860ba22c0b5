#include "help/formatter.h"

#include "help/wrapped.h"

namespace help
{

namespace
{

constexpr size_t width = 80;
constexpr size_t column = 26; // of the descriptions

// "--force or SECONDS"; the library keeps them in the order of their addresses.
std::string names(const std::set<CLI::Option *> &options)
{
    std::set<std::string> in_order;
    for (const CLI::Option *each : options)
        in_order.insert(each->get_name());
    std::string text;
    for (const std::string &each : in_order)
        text += (text.empty() ? "" : " or ") + each;
    return text;
}

} // namespace

std::string value_name(const CLI::Option &option)
{
    if (option.get_items_expected_max() == 0)
        return "";
    if (option.get_positional())
        return option.get_name(true);
    const std::string &shown = option.get_option_text();
    return shown.empty() ? option.get_type_name() : shown;
}

std::string described(const CLI::Option &option)
{
    std::string text = option.get_description();
    if (option.get_required() && option.nonpositional())
        text += " (must be said)";
    if (!option.get_needs().empty())
        text += " (only with " + names(option.get_needs()) + ")";
    if (!option.get_excludes().empty())
        text += " (not with " + names(option.get_excludes()) + ")";
    return text;
}

formatter::formatter()
{
    label("SUBCOMMAND", "COMMAND");
    label("Positionals", "Arguments");
    column_width(column);
}

std::string formatter::make_description(const CLI::App *app) const
{
    return Formatter::make_description(app) + "\n";
}

std::string formatter::make_option_opts(const CLI::Option *option) const
{
    const std::string value = option->get_positional() ? "" : value_name(*option);
    return value.empty() ? "" : " " + value;
}

std::string formatter::make_option_desc(const CLI::Option *option) const
{
    return wrapped(described(*option), width - column, 0);
}

std::string formatter::make_footer(const CLI::App *app) const
{
    const CLI::App *root = app;
    while (root->get_parent())
        root = root->get_parent();
    if (root == app) {
        std::string footer = app->get_footer();
        footer.resize(footer.find_last_not_of('\n') + 1);
        return footer + "\n";
    }
    const auto common = root->get_options(
        [](const CLI::Option *option) { return option->get_single_name() != "version"; });
    return make_group("Options of every command", false, common).substr(1);
}

} // namespace help
