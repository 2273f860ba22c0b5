#include "manual/completion.h"

namespace manual
{

namespace
{

constexpr const char *script =
    R"(# Completion of @program@ for bash, made from its own command line.

# What may stand behind the command $1: words, options, and what each argument can be.
@name@_words()
{
    case $1 in
@words@    esac
}

# What the value of option $2 of the command $1 can be. Fails where it takes none.
@name@_value()
{
    case "$1 $2" in
@values@    *) return 1 ;;
    esac
}

# Offers those of the words that fit; FILE stands for the names of files.
@name@_reply()
{
    if [[ $1 == FILE ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
    else
        mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
    fi
}

@name@()
{
    local cur=${COMP_WORDS[COMP_CWORD]} command=@program@ commands options values word
    local -a arguments
    local -i at=1 passed=0
    COMPREPLY=()
    @name@_words "$command"
    while ((at < COMP_CWORD)); do
        word=${COMP_WORDS[at++]}
        if @name@_value "$command" "$word"; then # stands next, or behind a "="
            [[ ${COMP_WORDS[at]} != "=" ]] || at+=1
            if ((at >= COMP_CWORD)); then
                [[ $cur != "=" ]] || cur=
                @name@_reply "$values"
                return
            fi
            at+=1
        elif [[ " $commands " == *" $word "* ]]; then
            command+=" $word"
            @name@_words "$command"
        elif [[ $word != -* ]]; then
            [[ -z $commands ]] || return 0 # it is none of them
            passed+=1
        fi
    done
    if [[ $cur == -* ]]; then
        @name@_reply "$options"
    elif [[ -n $commands ]]; then
        @name@_reply "$commands"
    else
        @name@_reply "${arguments[passed]-}"
    fi
}

complete -F @name@ @program@
)";

std::string quoted(const std::string &text)
{
    return "'" + text + "'";
}

std::string path(const command &at)
{
    return joined(at.path, " ");
}

std::string offered(const parameter &each)
{
    return each.is_file() ? "FILE" : joined(each.choices, " ");
}

words names(const std::vector<parameter> &options)
{
    words all;
    for (const parameter &each : options)
        all.insert(all.end(), each.names.begin(), each.names.end());
    return all;
}

std::string cases_of_words(const command &at, const words &common)
{
    words below;
    for (const command &each : at.commands)
        below.push_back(each.path.back());
    words options = names(at.options);
    if (at.path.size() > 1)
        options.insert(options.end(), common.begin(), common.end());
    words arguments;
    for (const parameter &each : at.arguments)
        arguments.push_back(quoted(offered(each)));

    std::string cases = "    " + quoted(path(at)) + ")\n";
    cases += "        commands=" + quoted(joined(below, " ")) + "\n";
    cases += "        options=" + quoted(joined(options, " ")) + "\n";
    cases += "        arguments=(" + joined(arguments, " ") + ")\n";
    cases += "        ;;\n";
    for (const command &each : at.commands)
        cases += cases_of_words(each, common);
    return cases;
}

// The program's own options are those of all its commands.
std::string cases_of_values(const command &at)
{
    const std::string behind = at.path.size() == 1 ? "*' " : "'" + path(at) + " ";
    std::string cases;
    for (const parameter &each : at.options) {
        words patterns;
        for (const std::string &name : each.names)
            patterns.push_back(behind + name + "'");
        if (!each.value.empty())
            cases +=
                "    " + joined(patterns, " | ") + ") values=" + quoted(offered(each)) + " ;;\n";
    }
    for (const command &each : at.commands)
        cases += cases_of_values(each);
    return cases;
}

} // namespace

std::string bash_completion(const command &program)
{
    const std::string name = program.path.front();
    std::string text = replaced(script, "@name@", "_" + replaced(name, "-", "_"));
    text = replaced(text, "@program@", name);
    text = replaced(text, "@words@", cases_of_words(program, names(common_options(program))));
    return replaced(text, "@values@", cases_of_values(program));
}

} // namespace manual
