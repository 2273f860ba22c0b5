#include "cli/late_library.h"

#include <dlfcn.h>
#include <stdexcept>

namespace cli
{

late_library::late_library(const char *name, const char *file)
    : name_(name),
      handle_(found(dlopen(file, RTLD_NOW | RTLD_LOCAL)))
{
}

void *late_library::symbol(const char *symbol) const
{
    return found(dlsym(handle_, symbol));
}

void *late_library::found(void *what) const
{
    if (!what)
        throw std::runtime_error(name_ + " is needed for this: " + dlerror());
    return what;
}

} // namespace cli
