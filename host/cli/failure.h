// What can go wrong: one kind of failure, one exit code, one plain line.
#ifndef RUK_HOST_CLI_FAILURE_H
#define RUK_HOST_CLI_FAILURE_H

#include <cstdint>
#include <stdexcept>
#include <string>

namespace cli
{

enum exit_code {
    exit_fine = 0,
    exit_refused = 1,     // the blade was reached and did not do it
    exit_usage = 2,       // what was typed, or a file, is wrong
    exit_access = 3,      // the blade's controller does not let us in
    exit_transport = 4,   // no answer came
    exit_unsupported = 5, // the blade does not know the command
};

// An IPMI request as messages name it. The number is network function << 8 | command.
struct request_name {
    uint16_t netfn_cmd;
    const char *name;
};

class failure : public std::runtime_error
{
  public:
    failure(exit_code its_kind, const std::string &what, uint32_t its_code = 0)
        : std::runtime_error(what),
          kind(its_kind),
          code(its_code)
    {
    }

    exit_code kind;
    uint32_t code; // completion code or status; 0 when there is none
};

inline failure usage_failure(const std::string &what)
{
    return failure(exit_usage, what);
}

// Throws what a non-zero result of a function of the library means.
void check(const request_name &request, uint32_t result);

// The kind in one word: "refused", "usage", ...
const char *kind_name(exit_code kind);

// Of two outcomes the worse. The less of the way to the blade was possible, the worse; what was
// wrong before anything was sent lies between.
exit_code worse(exit_code one, exit_code other);

} // namespace cli

#endif
