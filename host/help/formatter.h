// How the programs tell what they understand.
#ifndef RUK_HOST_HELP_FORMATTER_H
#define RUK_HOST_HELP_FORMATTER_H

#include <CLI/CLI.hpp>
#include <string>

namespace help
{

// What stands for the value of an option or argument, "FILE"; a flag has none.
std::string value_name(const CLI::Option &option);

// What an option is for, and what the command line demands of it: "Which map (must be said)".
std::string described(const CLI::Option &option);

// Help of 80 columns; below the program itself it ends with the options of every command.
class formatter : public CLI::Formatter
{
  public:
    formatter();
    std::string make_description(const CLI::App *app) const override;
    std::string make_option_opts(const CLI::Option *option) const override;
    std::string make_option_desc(const CLI::Option *option) const override;
    std::string make_footer(const CLI::App *app) const override;
};

} // namespace help

#endif
