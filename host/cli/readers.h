// Readers of arguments that several commands have in common. What does not fit the request is a
// usage failure.
#ifndef RUK_HOST_CLI_READERS_H
#define RUK_HOST_CLI_READERS_H

#include <string>

#include "cli/numbers.h"

namespace cli
{

// What a file holds, or standard input where its name is "-": the first `most` bytes of it. A file
// that cannot be read or is empty is a usage failure.
bytes file_contents(const std::string &name, size_t most);

void check_room(size_t length, size_t room);
void check_length(size_t length, size_t wanted);

template <size_t room>
std::string text_up_to(const std::string &text)
{
    check_room(text.size(), room);
    return text;
}

template <size_t room>
bytes hex_up_to(const std::string &text)
{
    bytes data = parse_hex(text);
    check_room(data.size(), room);
    return data;
}

template <size_t length>
bytes hex_of(const std::string &text)
{
    bytes data = parse_hex(text);
    check_length(data.size(), length);
    return data;
}

template <size_t room>
bytes file_up_to(const std::string &name)
{
    bytes contents = file_contents(name, room + 1);
    check_room(contents.size(), room);
    return contents;
}

} // namespace cli

#endif
