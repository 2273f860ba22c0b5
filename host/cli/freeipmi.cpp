#include "cli/freeipmi.h"

#include <dlfcn.h>
#include <stdexcept>
#include <string>

namespace cli
{

namespace
{

void *found(void *what)
{
    if (!what)
        throw std::runtime_error(std::string("FreeIPMI is needed for this: ") + dlerror());
    return what;
}

} // namespace

void *freeipmi_symbol(const char *name)
{
    static void *const library = found(dlopen(RUK_IPMI_FREEIPMI, RTLD_NOW | RTLD_LOCAL));
    return found(dlsym(library, name));
}

} // namespace cli
