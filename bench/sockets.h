// What an exchange costs at the least: its frames, sent and received on a kept socket.
#ifndef RUK_BENCH_SOCKETS_H
#define RUK_BENCH_SOCKETS_H

#include <sys/epoll.h>
#include <sys/socket.h>
#include <vector>

#include "platform/protocol.h"
#include "processes.h"

namespace bench
{

// Get Device ID: a request without payload, an answer of 16 bytes.
constexpr size_t question_size = sizeof(ruk::host::frame_header) + ruk::host::request_header_size;
constexpr size_t reply_size =
    sizeof(ruk::host::frame_header) + ruk::host::response_header_size + 16;

struct socket_pair {
    int client;
    int server;
};

inline socket_pair connected_sockets()
{
    int ends[2];
    check(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) == 0, "socketpair");
    return {ends[0], ends[1]};
}

inline void send_frame(int socket, size_t size)
{
    static const char frame[question_size + reply_size] = {};
    check(send(socket, frame, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size), "send");
}

inline void receive_frame(int socket, size_t size, int flags = 0)
{
    char frame[question_size + reply_size];
    check(recv(socket, frame, sizeof frame, flags) == static_cast<ssize_t>(size), "recv");
}

inline void ask(int socket)
{
    send_frame(socket, question_size);
    receive_frame(socket, reply_size);
}

// Answers one client, waiting in recv.
[[noreturn]] inline void answer_blocking(int socket)
{
    for (;;) {
        receive_frame(socket, question_size);
        send_frame(socket, reply_size);
    }
}

// Answers any number of clients, waiting for all of them at once, as whoever serves many must.
[[noreturn]] inline void answer_all(const std::vector<int> &sockets)
{
    const int epoll = epoll_create1(0);
    for (const int each : sockets) {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = each;
        check(epoll_ctl(epoll, EPOLL_CTL_ADD, each, &event) == 0, "epoll_ctl");
    }
    for (;;) {
        epoll_event events[64];
        const int count = epoll_wait(epoll, events, 64, -1);
        for (int i = 0; i < count; ++i) {
            receive_frame(events[i].data.fd, question_size, MSG_DONTWAIT);
            send_frame(events[i].data.fd, reply_size);
        }
    }
}

} // namespace bench

#endif
