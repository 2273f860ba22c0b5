#include "cli/freeipmi.h"

#include "cli/late_library.h"

namespace cli
{

void *freeipmi_symbol(const char *name)
{
    static const late_library freeipmi("FreeIPMI", RUK_IPMI_FREEIPMI);
    return freeipmi.symbol(name);
}

} // namespace cli
