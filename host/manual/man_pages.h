// The manual's pages.
#ifndef RUK_HOST_MANUAL_MAN_PAGES_H
#define RUK_HOST_MANUAL_MAN_PAGES_H

#include <map>

#include "manual/tree.h"

namespace manual
{

struct pages {
    std::map<std::string, std::string> texts; // by the names of their files
    std::map<std::string, std::string> links; // other names of these
};

// One page for the tool, and one for each noun, where each of its verbs is found by its own name.
pages tool_pages(const command &tool);

pages daemon_pages(const command &daemon);

} // namespace manual

#endif
