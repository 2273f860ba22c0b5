// A ping-pong of UDP packets between two processes: `QUESTION ANSWER COUNT`, the packets' sizes in
// bytes. Prints nanoseconds per round trip.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "processes.h"

using namespace bench;

namespace
{

char packet[2048];

void transmit(int socket, size_t size)
{
    check(send(socket, packet, size, 0) == static_cast<ssize_t>(size), "send");
}

void receive(int socket, size_t size)
{
    check(recv(socket, packet, sizeof packet, 0) == static_cast<ssize_t>(size), "recv");
}

// On a loopback port of the system's choice.
int bound_socket(sockaddr_in &at)
{
    const int made = socket(AF_INET, SOCK_DGRAM, 0);
    socklen_t size = sizeof at;
    at = {};
    at.sin_family = AF_INET;
    at.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *const address = reinterpret_cast<sockaddr *>(&at);
    check(made >= 0 && bind(made, address, size) == 0 && getsockname(made, address, &size) == 0,
          "a socket");
    return made;
}

void join(int socket, const sockaddr_in &peer)
{
    check(connect(socket, reinterpret_cast<const sockaddr *>(&peer), sizeof peer) == 0, "connect");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4 || number(argv[1]) > sizeof packet || number(argv[2]) > sizeof packet)
        return 2;
    const size_t question = number(argv[1]);
    const size_t answer = number(argv[2]);
    sockaddr_in client_at;
    sockaddr_in server_at;
    const int client = bound_socket(client_at);
    const int server = bound_socket(server_at);
    join(client, server_at);
    join(server, client_at);

    const pid_t answering = start([=] {
        for (;;) {
            receive(server, question);
            transmit(server, answer);
        }
    });
    printf("%.1f\n", ns_each(number(argv[3]), [=] {
               transmit(client, question);
               receive(client, answer);
           }));
    stop({answering});
    return 0;
}
