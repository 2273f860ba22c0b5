// Bytes for a blade that stand in a file or are typed.
#ifndef RUK_HOST_CLI_CONTENT_H
#define RUK_HOST_CLI_CONTENT_H

#include <optional>

#include "cli/command_tree.h"
#include "cli/readers.h"

namespace cli
{

struct content_choice {
    std::optional<bytes> file;
    std::optional<bytes> typed;

    // Those that were given, one or the other; `what` names what is missing. There is an address
    // where they are even if they are none.
    bytes content(const char *what) const
    {
        if (!file && !typed)
            throw usage_failure(std::string("which ") + what +
                                "? Say FILE or --hex; nothing was sent");
        bytes chosen;
        chosen.reserve(1);
        chosen = file ? *file : *typed;
        return chosen;
    }
};

template <size_t room>
std::optional<bytes> content_of_file(const std::string &name)
{
    return file_up_to<room>(name);
}

template <size_t room>
std::optional<bytes> content_typed(const std::string &text)
{
    return hex_up_to<room>(text);
}

// Lets a command take up to `room` bytes.
template <size_t room, typename Choice>
verb<Choice> with_content(verb<Choice> verb, const char *help)
{
    verb.optional_argument("FILE", &content_choice::file, content_of_file<room>, help)
        .option("--hex", "HEX", &content_choice::typed, content_typed<room>,
                "The bytes themselves, e.g. 01ff")
        .excludes("FILE");
    return verb;
}

} // namespace cli

#endif
