// A program that uses the OS layer from its own beginning: one that has mapped and registered
// nothing yet. Its exit status is the low byte of a status.

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "platform/os.h"

namespace
{

std::atomic<bool> called{false};

void note_call(uint32_t, ...)
{
    called = true;
}

// As soon as its input ends, so that many can be let go at once.
uint32_t create(const char *name)
{
    for (char byte; read(STDIN_FILENO, &byte, 1) > 0;)
        ;
    os_mutex mutex{};
    return os_mutex_create(name, &mutex);
}

// Waits some seconds for a notification.
uint32_t listen(uint32_t type)
{
    os_notify_list list = 0;
    os_notify_handle handle = 0;
    os_notify_list_init(&list);
    os_notify_list_add(type, list);
    os_notify_init(&handle, note_call);
    const uint32_t rc = os_notify_register(list, handle);
    for (int tries = 0; rc == 0 && !called && tries < 500; ++tries)
        os_sleep(1);
    return rc != 0 || called ? rc : 0xFF;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && strcmp(argv[1], "create") == 0)
        return static_cast<uint8_t>(create(argv[2]));
    if (argc == 3 && strcmp(argv[1], "listen") == 0)
        return static_cast<uint8_t>(listen(static_cast<uint32_t>(strtoul(argv[2], nullptr, 10))));
    return 0xFE;
}
