// Commands by the library's functions that send them.
#ifndef RUK_IPMI_TESTING_COMMAND_NAMES_H
#define RUK_IPMI_TESTING_COMMAND_NAMES_H

#include <cstdint>

namespace ruk_ipmi_testing
{

// The function that sends a command, the first of them where several do ("... or others"); null
// when none does. The table is made from the library's headers.
const char *function_of(uint32_t netfn_cmd);

} // namespace ruk_ipmi_testing

#endif
