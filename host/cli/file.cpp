// Files that a blade fetches from the network.

#include "cli/command_tree.h"
#include "cli/output.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name set_path = {0x30D0, "Set File Path"};
const request_name set_tuning_path = {0x30D0, "Set Link Tuning Path"};
const request_name get_copy_status = {0x30D0, "Get File Copy Status"};

struct file_choice {
    uint8_t selector = 0;
};

struct tuning_choice {
    std::string path;
};

struct path_choice : file_choice, tuning_choice {
};

report set(const blade &at, const path_choice &chosen)
{
    call(set_path, at, ipmi_location_set_nfs_path, chosen.selector, chosen.path.c_str());
    return tell({{"selector", chosen.selector}, {"path", chosen.path}});
}

report set_tuning(const blade &at, const tuning_choice &chosen)
{
    call(set_tuning_path, at, ipmi_location_set_lt_nfs_path, chosen.path.c_str());
    return tell({{"path", chosen.path}});
}

report copy_status(const blade &at, const file_choice &chosen)
{
    const char status =
        ask<char>(get_copy_status, at, ipmi_location_get_file_cp_status, chosen.selector);
    return tell({{"selector", chosen.selector},
                 {"copy_status", printable(std::string(1, status))},
                 {"copy_status_code", hex(static_cast<uint8_t>(status))}});
}

template <typename Choice>
verb<Choice> with_selector(verb<Choice> verb)
{
    verb.option("--selector", "N", &file_choice::selector, number<uint8_t>, "Which file")
        .required();
    return verb;
}

template <typename Choice>
void with_path(verb<Choice> verb)
{
    verb.argument("PATH", &tuning_choice::path, text_up_to<29>, "Path, up to 29 characters");
}

} // namespace

void add_file(const noun &root)
{
    const noun file = root.noun_below("file", "Files that the blade fetches from the network");
    const noun path = file.noun_below("path", "Where a file is");
    with_path(with_selector(path.verb("set", "Tell the blade a file's network path", set)));
    const noun tuning = file.noun_below("lt-path", "Where the file with the link tuning is");
    with_path(tuning.verb("set", "Tell the blade that file's network path", set_tuning));
    with_selector(file.verb("copy-status", "Show how far the copy of a file is", copy_status));
}

} // namespace cli
