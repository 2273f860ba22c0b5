// A program's command line as its manual tells it, read from what the program itself parses with.
#ifndef RUK_HOST_MANUAL_TREE_H
#define RUK_HOST_MANUAL_TREE_H

#include <string>
#include <vector>

namespace CLI
{
class App;
}

namespace manual
{

using words = std::vector<std::string>;

// An option, or, where it has no names, an argument.
struct parameter {
    words names;       // "-o", "--output"
    std::string value; // what stands for its value, "FORMAT"; a flag has none
    words choices;     // all values that there are, where they are known
    std::string help;
    words excludes;
    bool required = false;
    bool repeats = false;

    bool is_file() const { return value == "FILE"; }
    bool is_help() const { return names.back() == "--help"; }
    // Whether a program's commands have it too.
    bool is_common() const { return names.back() != "--version"; }
};

struct command {
    words path; // "ruk-ipmi", "sel", "list"
    std::string help;
    std::vector<parameter> options;
    std::vector<parameter> arguments;
    std::vector<command> commands; // below it
    bool for_blades = false;       // and so -b must be said
    bool for_one_blade = false;
    bool has_binary = false;
};

command read_tree(const CLI::App &program);

std::vector<parameter> common_options(const command &program);

std::string joined(const words &parts, const std::string &between);
std::string replaced(std::string text, const std::string &what, const std::string &by);

} // namespace manual

#endif
