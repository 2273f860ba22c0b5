// A ping-pong of an exchange's frames between two processes: `blocking|epoll COUNT [PROCESSOR]`,
// the way the server waits and the processor that it stays on. Prints nanoseconds per round trip.

#include <cstring>

#include "sockets.h"

using namespace bench;

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const bool blocking = strcmp(argv[1], "blocking") == 0;
    const socket_pair sockets = connected_sockets();
    const pid_t server = start([&] {
        if (argc > 3)
            stay_on_processor(number(argv[3]));
        if (blocking)
            answer_blocking(sockets.server);
        answer_all({sockets.server});
    });
    printf("%.1f\n", ns_each(number(argv[2]), [&] { ask(sockets.client); }));
    stop({server});
}
