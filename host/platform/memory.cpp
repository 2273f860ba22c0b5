#include <cstdlib>

#include "platform/os.h"

void *os_malloc(size_t size)
{
    return malloc(size);
}
