#include "manual/completion.h"

namespace manual
{

namespace
{

// In single quotes, for the shell.
std::string quoted(const std::string &text)
{
    return "'" + replaced(text, "'", "'\\''") + "'";
}

// What completes a value: ":FILE:_files".
std::string value(const parameter &each)
{
    const std::string known = joined(each.choices, " ");
    return ":" + each.value + ":" +
           (each.is_file()  ? "_files"
            : known.empty() ? " "
                            : "(" + known + ")");
}

// One form for each name, as _arguments takes it, and none for a name once it, or another that it
// excludes, is there.
words forms_of(const parameter &option)
{
    const bool takes_value = !option.value.empty();
    words forms;
    for (const std::string &name : option.names) {
        std::string text = "*";
        if (!option.repeats) {
            words others = option.names;
            for (const std::string &each : option.excludes)
                if (each[0] == '-')
                    others.push_back(each);
            text = "(" + joined(others, " ") + ")";
        }
        text += name;
        if (takes_value)
            text += name[1] == '-' ? "=" : "+";
        text += "[" + replaced(option.help, "]", "\\]") + "]";
        forms.push_back(quoted(text + (takes_value ? value(option) : "")));
    }
    return forms;
}

std::string form_of(const parameter &argument)
{
    return quoted((argument.repeats ? "*" : argument.required ? "" : ":") + value(argument));
}

words forms_of_all(const std::vector<parameter> &options)
{
    words all;
    for (const parameter &each : options)
        for (const std::string &form : forms_of(each))
            all.push_back(form);
    return all;
}

// "_ruk-ipmi_sel_list"
std::string function_name(const command &at)
{
    return "_" + joined(at.path, "_");
}

// A program's own options, but for its version, are those of every command: `common`.
std::vector<parameter> own_options(const command &at)
{
    if (at.path.size() > 1)
        return at.options;
    std::vector<parameter> own;
    for (const parameter &each : at.options)
        if (!each.is_common())
            own.push_back(each);
    return own;
}

std::string array(const std::string &name, const words &elements)
{
    std::string text = "    local -a " + name + "=(\n";
    for (const std::string &each : elements)
        text += "        " + each + "\n";
    return text + "    )\n";
}

// What completes behind a command.
std::string function(const command &at)
{
    words forms = {"$common"};
    for (const std::string &each : forms_of_all(own_options(at)))
        forms.push_back(each);
    for (const parameter &each : at.arguments)
        forms.push_back(form_of(each));
    words below;
    for (const command &each : at.commands)
        below.push_back(quoted(each.path.back() + ":" + each.help));
    if (!below.empty())
        forms.insert(forms.end(), {"'(-)1: :->command'", "'(-)*:: :->rest'"});

    std::string text = "\n" + function_name(at) + "()\n{\n";
    if (at.path.size() == 1)
        text += array("common", forms_of_all(common_options(at)));
    text += array("forms", forms);
    if (below.empty())
        text += "    _arguments -s -S $forms\n";
    else
        text += array("below", below) + "    local curcontext=$curcontext state\n" +
                "    local -a line\n" + "    _arguments -C -s -S $forms && return\n" +
                "    _ruk_below " + function_name(at) + "\n";
    text += "}\n";
    for (const command &each : at.commands)
        text += function(each);
    return text;
}

constexpr const char *begin = R"(#compdef @program@
# Completion of @program@ for zsh, made from its own command line.

# Completes one of the words `below`, or what stands behind it.
_ruk_below()
{
    case $state in
    command) _describe -t commands command below ;;
    rest) (( $+functions[${1}_${words[1]}] )) && ${1}_${words[1]} ;;
    esac
}
)";

} // namespace

std::string zsh_completion(const command &program)
{
    return replaced(begin, "@program@", program.path.front()) + function(program) + "\n" +
           function_name(program) + " \"$@\"\n";
}

} // namespace manual
