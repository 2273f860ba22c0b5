#include "manual/tree.h"

#include <algorithm>
#include <CLI/CLI.hpp>

#include "help/formatter.h"

namespace manual
{

namespace
{

std::string trimmed(const std::string &text)
{
    const size_t first = text.find_first_not_of(" \n");
    return first == std::string::npos
               ? ""
               : text.substr(first, text.find_last_not_of(" \n") + 1 - first);
}

// A type with a fixed set of values is called like "{on,off}".
words choices_of(const CLI::Option &option)
{
    const std::string type = option.get_type_name();
    if (type.size() < 2 || type.front() != '{' || type.back() != '}')
        return {};
    return CLI::detail::split(type.substr(1, type.size() - 2), ',');
}

parameter read_parameter(const CLI::Option &option)
{
    parameter read;
    for (const std::string &name : option.get_snames())
        read.names.push_back("-" + name);
    for (const std::string &name : option.get_lnames())
        read.names.push_back("--" + name);
    read.value = help::value_name(option);
    read.choices = choices_of(option);
    read.help = help::described(option);
    for (const CLI::Option *other : option.get_excludes())
        read.excludes.push_back(other->get_name());
    std::sort(read.excludes.begin(), read.excludes.end());
    read.required = option.get_required();
    read.repeats = option.get_items_expected_max() >= CLI::detail::expected_max_vector_size ||
                   option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    return read;
}

command read_command(const CLI::App &app, words path)
{
    path.push_back(app.get_name());
    command read;
    read.path = std::move(path);
    read.help = trimmed(app.get_description());
    for (const CLI::Option *option : app.get_options())
        (option->get_positional() ? read.arguments : read.options)
            .push_back(read_parameter(*option));
    for (const CLI::App *below : app.get_subcommands([](const CLI::App *) { return true; }))
        read.commands.push_back(read_command(*below, read.path));
    return read;
}

} // namespace

command read_tree(const CLI::App &program)
{
    return read_command(program, {});
}

std::vector<parameter> common_options(const command &program)
{
    std::vector<parameter> common;
    for (const parameter &each : program.options)
        if (each.is_common())
            common.push_back(each);
    return common;
}

std::string joined(const words &parts, const std::string &between)
{
    return CLI::detail::join(parts, between);
}

std::string replaced(std::string text, const std::string &what, const std::string &by)
{
    for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
    return text;
}

} // namespace manual
