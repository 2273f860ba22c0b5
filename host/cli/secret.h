// A text that must not be seen: it comes from a file or is typed without echo, and never stands on
// the command line, where every process could read it.
#ifndef RUK_HOST_CLI_SECRET_H
#define RUK_HOST_CLI_SECRET_H

#include <memory>
#include <optional>
#include <string>

#include "cli/command_tree.h"

namespace cli
{

// Asks at the terminal, and a second time where `confirmed`, until nobody can have mistyped it.
// Without a terminal, or when it is longer than `room` bytes, that is a usage failure.
std::string asked_secret(const std::string &what, bool confirmed, size_t room);

// What a file's first line holds, up to 20 bytes of it; "-" is standard input.
std::optional<std::string> secret_in_file(const std::string &name);

// Asked for once, however many blades it is for.
struct secret_choice {
    static constexpr size_t longest = 20; // bytes that fit the requests

    std::optional<std::string> from_file;
    std::shared_ptr<std::optional<std::string>> asked =
        std::make_shared<std::optional<std::string>>();

    const std::string &secret(const std::string &what, bool confirmed) const
    {
        if (from_file)
            return *from_file;
        if (!*asked)
            *asked = asked_secret(what, confirmed, longest);
        return **asked;
    }
};

} // namespace cli

#endif
