// FreeIPMI's parsers work in contexts; ours are for records that are at hand, and talk to nobody.
#ifndef RUK_HOST_CLI_PARSER_H
#define RUK_HOST_CLI_PARSER_H

#include <memory>
#include <new>
#include <type_traits>

namespace cli
{

template <typename Context>
using parser = std::unique_ptr<std::remove_pointer_t<Context>, void (*)(Context)>;

// Keeps a context that was just made.
template <typename Context>
parser<Context> kept(Context made, void (*destroy)(Context))
{
    if (!made)
        throw std::bad_alloc();
    return {made, destroy};
}

} // namespace cli

#endif
