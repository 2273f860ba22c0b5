#include "command_names.h"

namespace ruk_ipmi_testing
{

namespace
{

struct row {
    uint32_t netfn_cmd;
    const char *function;
};

const row rows[] = {
#include "command_names.inc"
};

} // namespace

const char *function_of(uint32_t netfn_cmd)
{
    for (const row &each : rows)
        if (each.netfn_cmd == netfn_cmd)
            return each.function;
    return nullptr;
}

} // namespace ruk_ipmi_testing
