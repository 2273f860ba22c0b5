// Exchanges with a blade of the daemon that serves the runtime directory: `COUNT SLOT`. Prints
// nanoseconds per exchange.

#include "exchange.h"

using namespace bench;

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const auto slot = static_cast<uint8_t>(number(argv[2]));
    printf("%.1f\n", ns_each(number(argv[1]), [&] { ask_blade(slot); }));
}
