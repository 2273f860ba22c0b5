// FreeIPMI, for its texts: loaded when one of its functions is called.
#ifndef RUK_HOST_CLI_FREEIPMI_H
#define RUK_HOST_CLI_FREEIPMI_H

#include <freeipmi/freeipmi.h>

namespace cli
{

// Where FreeIPMI has what goes by that name. Throws when FreeIPMI is not installed.
void *freeipmi_symbol(const char *name);

} // namespace cli

// Stands for a function or a table of FreeIPMI. A macro, since it needs the type and the name.
#define FREEIPMI(name) (*reinterpret_cast<decltype(&(name))>(cli::freeipmi_symbol(#name)))

#endif
