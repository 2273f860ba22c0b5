#include "memory.h"

#include <cstddef>

namespace
{

thread_local bool exhausted = false;

} // namespace

// The linker sends every call of malloc in this program here (--wrap=malloc).
// NOLINTBEGIN(bugprone-reserved-identifier,cert-*)
extern "C" void *__real_malloc(size_t size);

extern "C" void *__wrap_malloc(size_t size)
{
    return exhausted ? nullptr : __real_malloc(size);
}
// NOLINTEND(bugprone-reserved-identifier,cert-*)

namespace ruk_ipmi_testing
{

no_memory_left::no_memory_left()
{
    exhausted = true;
}

no_memory_left::~no_memory_left()
{
    exhausted = false;
}

} // namespace ruk_ipmi_testing
