// Exchanges with the blade in slot 1 of the daemon that serves the runtime directory: `COUNT`.
// Prints nanoseconds per exchange.

#include "exchange.h"

using namespace bench;

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    printf("%.1f\n", ns_each(number(argv[1]), [] { ask_blade(1); }));
}
