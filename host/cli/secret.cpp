#include "cli/secret.h"

#include <algorithm>
#include <bsd/readpassphrase.h>
#include <cerrno>
#include <cstring>

#include "cli/readers.h"

namespace cli
{

namespace
{

std::string typed_secret(const std::string &prompt, const std::string &what)
{
    char text[128] = "";
    if (!readpassphrase((prompt + ": ").c_str(), text, sizeof text, RPP_REQUIRE_TTY))
        throw usage_failure(errno == ENOTTY || errno == ENXIO
                                ? "there is no terminal to ask for the " + what + " at; say FILE"
                                : "cannot read the " + what + ": " + strerror(errno));
    std::string typed = text;
    explicit_bzero(text, sizeof text);
    return typed;
}

} // namespace

std::string asked_secret(const std::string &what, bool confirmed, size_t room)
{
    std::string secret = typed_secret("The " + what, what);
    if (secret.empty())
        throw usage_failure("no " + what + " was typed; nothing was sent");
    check_room(secret.size(), room);
    if (confirmed && typed_secret("The same again", what) != secret)
        throw usage_failure("the two are not the same; nothing was sent");
    return secret;
}

std::optional<std::string> secret_in_file(const std::string &name)
{
    constexpr size_t most = 4096;
    const bytes contents = file_contents(name, most);
    std::string line(contents.begin(), contents.end());
    line.resize(std::min(line.find('\n'), line.size()));
    if (line.empty())
        throw usage_failure("the first line of " + name + " is empty");
    if (line.find('\0') != std::string::npos)
        throw usage_failure("the first line of " + name + " is no text");
    check_room(line.size(), secret_choice::longest);
    return line;
}

} // namespace cli
