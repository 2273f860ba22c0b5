// What a command has to say about one blade, before any format.
#ifndef RUK_HOST_CLI_REPORT_H
#define RUK_HOST_CLI_REPORT_H

#include <nlohmann/json.hpp>
#include <optional>

#include "cli/failure.h"
#include "cli/numbers.h"

namespace cli
{

// Keeps the order in which fields are told.
using json = nlohmann::ordered_json;

struct report {
    json fields = json::object(); // values, objects of values, and lists of alike objects
    std::string text;             // for people, in place of the fields
    bytes binary;                 // for -o binary
    bool only_binary = false;     // write `binary` in the normal format too
    std::optional<failure> ended; // what cut the report short; the fields hold until there
};

inline report tell(json fields, bytes binary = {})
{
    report told;
    told.fields = std::move(fields);
    told.binary = std::move(binary);
    return told;
}

} // namespace cli

#endif
