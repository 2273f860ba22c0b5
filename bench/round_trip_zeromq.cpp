// ZeroMQ requests and replies of the size of an exchange's frames, over ipc: `COUNT SOCKET`, the
// latter a path for the socket. Prints nanoseconds per round trip.

#include <string>
#include <zmq.h>

#include "sockets.h"

using namespace bench;

namespace
{

const char bytes[question_size + reply_size] = {};

void send(void *socket, size_t size)
{
    check(zmq_send(socket, bytes, size, 0) == static_cast<int>(size), "zmq_send");
}

void receive(void *socket, size_t size)
{
    char got[sizeof bytes];
    check(zmq_recv(socket, got, sizeof got, 0) == static_cast<int>(size), "zmq_recv");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const std::string address = std::string("ipc://") + argv[2];
    const pid_t server = start([&] {
        void *const socket = zmq_socket(zmq_ctx_new(), ZMQ_REP);
        check(zmq_bind(socket, address.c_str()) == 0, "zmq_bind");
        for (;;) {
            receive(socket, question_size);
            send(socket, reply_size);
        }
    });
    void *const context = zmq_ctx_new();
    void *const socket = zmq_socket(context, ZMQ_REQ);
    check(zmq_connect(socket, address.c_str()) == 0, "zmq_connect");
    const auto ask = [&] {
        send(socket, question_size);
        receive(socket, reply_size);
    };
    printf("%.1f\n", ns_each(number(argv[1]), ask));
    zmq_close(socket);
    zmq_ctx_term(context);
    stop({server});
}
