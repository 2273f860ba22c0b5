// How many exchanges client processes do at once: `ours|bare CLIENTS MILLISECONDS`. Ours ask the
// blade in slot 1 of the daemon that serves the runtime directory; the bare ones do no more than
// send and receive an exchange's frames, with a server that does no more either. Prints how many
// each client did, one per line.

#include <array>
#include <cstring>

#include "exchange.h"
#include "sockets.h"

using namespace bench;

namespace
{

constexpr unsigned most_clients = 64;

struct common {
    starting_line line;
    std::array<unsigned, most_clients> done;
};

// What a client does before the window or behind it does not count.
template <typename Operation>
unsigned done_in_window(common &all, uint64_t window_ns, Operation operation)
{
    for (unsigned i = 0; i < 10; ++i)
        operation();
    const uint64_t end = all.line.wait() + window_ns;
    unsigned done = 0;
    while (operation(), now_ns() < end)
        ++done;
    return done;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4 || number(argv[2]) > most_clients)
        return 2;
    const bool ours = strcmp(argv[1], "ours") == 0;
    const unsigned clients = number(argv[2]);
    const uint64_t window_ns = number(argv[3]) * 1'000'000ull;
    common &all = shared_with_children<common>();

    std::vector<int> client_ends;
    std::vector<int> server_ends;
    for (unsigned i = 0; !ours && i < clients; ++i) {
        const socket_pair sockets = connected_sockets();
        client_ends.push_back(sockets.client);
        server_ends.push_back(sockets.server);
    }
    std::vector<pid_t> server;
    if (!ours)
        server.push_back(start([&] { answer_all(server_ends); }));
    const auto asking = start(clients, [&](unsigned i) {
        all.done[i] = ours ? done_in_window(all, window_ns, [] { ask_blade(1); })
                           : done_in_window(all, window_ns, [&] { ask(client_ends[i]); });
    });

    all.line.open_for(clients);
    wait_for_success(asking);
    stop(server);
    for (unsigned i = 0; i < clients; ++i)
        printf("%u\n", all.done[i]);
}
