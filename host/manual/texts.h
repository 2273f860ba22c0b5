// What the manual says and no command line knows.
#ifndef RUK_HOST_MANUAL_TEXTS_H
#define RUK_HOST_MANUAL_TEXTS_H

#include <map>
#include <string>
#include <vector>

namespace manual
{

struct described_item {
    std::string term;
    std::string text;
};

using described_items = std::vector<described_item>;

struct example {
    std::string what;
    std::string lines;
};

using examples = std::vector<example>;

struct program_texts {
    std::vector<std::string> description; // by paragraphs
    described_items environment;
    described_items files;
    manual::examples examples;
};

program_texts texts_of_tool();

// Of some nouns, by their names.
std::map<std::string, examples> examples_of_nouns();

program_texts texts_of_daemon();

struct daemon_details {
    described_items signals;
    described_items exit_status;
    std::string about_file;
    described_items file_keys;
    std::string file;
};

daemon_details details_of_daemon();

} // namespace manual

#endif
