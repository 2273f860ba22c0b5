#include "memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

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

// The tests' own memory does not run out, also where their C++ runtime is linked statically, and
// the linker sends its calls here too. Weak, since a sanitizer may have these functions itself.
[[gnu::weak]] void *operator new(size_t size)
{
    void *const memory = __real_malloc(size);
    return memory ? memory : throw std::bad_alloc();
}

[[gnu::weak]] void operator delete(void *memory) noexcept
{
    free(memory);
}

[[gnu::weak]] void operator delete(void *memory, size_t) noexcept
{
    free(memory);
}

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
