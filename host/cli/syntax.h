// The words of a noun or of a verb on the command line. Stands before the parsing library, which
// takes longer to compile than any of the commands.
#ifndef RUK_HOST_CLI_SYNTAX_H
#define RUK_HOST_CLI_SYNTAX_H

#include <functional>
#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace cli
{

class syntax
{
  public:
    // Takes what was typed for an argument or an option.
    using reader = std::function<void(const std::string &text)>;

    explicit syntax(CLI::App *app) : app_(app) {}

    // A word below this one that must be followed by another one.
    syntax noun(const char *name, const char *help) const;

    // A word below this one that ends a command; then `found` is called.
    syntax verb(const char *name, const char *help, std::function<void()> found) const;

    // An option with a value, "--id"; `metavar` is the value's name in the help.
    void option(const char *name, const char *metavar, const reader &read, const char *help);

    void argument(const char *name, const reader &read, const char *help);

    // Any number of arguments, each read by itself.
    void arguments(const char *name, const reader &read, const char *help);

    void flag(const char *name, std::function<void()> found, const char *help);

    // Words that the option or argument which was declared last takes. They are asked for only to
    // tell somebody who looks for them.
    void choices(std::vector<std::string> (*known)());

    // About the option or flag that was declared last: that it must be there, that it makes sense
    // only with this other one, or not with it.
    void required();
    void needs(const char *other);
    void excludes(const char *other);

  private:
    CLI::App *app_;
    CLI::Option *last_option_ = nullptr;
};

} // namespace cli

#endif
