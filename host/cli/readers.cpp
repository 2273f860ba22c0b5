#include "cli/readers.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "cli/failure.h"

namespace cli
{

bytes file_contents(const std::string &name, size_t most)
{
    std::ifstream file;
    if (name != "-") {
        file.open(name, std::ios::binary);
        if (!file)
            throw usage_failure("cannot read " + name + ": " + strerror(errno));
    }
    std::istream &source = name == "-" ? std::cin : file;
    bytes contents(most);
    source.read(reinterpret_cast<char *>(contents.data()),
                static_cast<std::streamsize>(contents.size()));
    if (source.bad())
        throw usage_failure("cannot read " + name);
    contents.resize(static_cast<size_t>(source.gcount()));
    if (contents.empty())
        throw usage_failure(name + " is empty");
    return contents;
}

void check_room(size_t length, size_t room)
{
    if (length > room)
        throw usage_failure("is longer than " + std::to_string(room) + " bytes");
}

void check_length(size_t length, size_t wanted)
{
    if (length != wanted)
        throw usage_failure("has " + std::to_string(length) + " bytes, not " +
                            std::to_string(wanted));
}

} // namespace cli
