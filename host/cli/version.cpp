#include "cli/command_tree.h"

namespace cli
{

namespace
{

report show_version()
{
    return tell({{"version", RUK_IPMI_VERSION}});
}

} // namespace

void add_version(const noun &root)
{
    root.local_verb("version", "Show the version of the tool and its library", show_version);
}

} // namespace cli
