#include "chassisd/bridge/rmcpplus/connection.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/status.h"

namespace chassisd::rmcpplus
{

namespace
{

// More than any answer that fits a response record.
constexpr size_t longest_datagram = 1024;

struct address_list {
    addrinfo *first = nullptr;

    address_list() = default;
    ~address_list()
    {
        if (first)
            freeaddrinfo(first);
    }
    address_list(const address_list &) = delete;
    address_list &operator=(const address_list &) = delete;
};

// An IPv6 address may stand in brackets.
std::string without_brackets(const std::string &host)
{
    const bool has_them = host.size() > 2 && host.front() == '[' && host.back() == ']';
    return has_them ? host.substr(1, host.size() - 2) : host;
}

} // namespace

connection::connection(const bridge_config &config) : reminder_(config.retransmit_ms)
{
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_DGRAM;
    address_list found;
    const int error = getaddrinfo(without_brackets(config.host).c_str(),
                                  std::to_string(config.port).c_str(), &wanted, &found.first);
    if (error != 0)
        throw session_error(RUK_MSG_UNREACHABLE, gai_strerror(error));
    for (const addrinfo *each = found.first; each; each = each->ai_next) {
        socket_ = socket(each->ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        if (socket_ >= 0 && connect(socket_, each->ai_addr, each->ai_addrlen) == 0)
            return;
        if (socket_ >= 0)
            close(socket_);
    }
    throw session_error(RUK_MSG_UNREACHABLE, strerror(errno));
}

connection::~connection()
{
    close(socket_);
}

bytes connection::converse(const std::function<bytes()> &next,
                           const std::function<std::optional<bytes>(const bytes &)> &take,
                           clock::time_point deadline)
{
    bytes datagram;
    for (auto now = clock::now(); now < deadline;) {
        send(next());
        const auto reminder = std::min(now + reminder_, deadline);
        for (; now < reminder; now = clock::now())
            if (receive(datagram, reminder - now))
                if (std::optional<bytes> answer = take(datagram))
                    return std::move(*answer);
    }
    throw session_error(RUK_MSG_UNREACHABLE, "no answer in time");
}

void connection::send(const bytes &datagram) const
{
    ::send(socket_, datagram.data(), datagram.size(), MSG_NOSIGNAL);
}

// False when nothing came. The socket keeps its patience from one request to the next.
bool connection::receive(bytes &datagram, clock::duration patience)
{
    using namespace std::chrono;
    const auto rounded = ceil<milliseconds>(patience);
    if (rounded != patience_) {
        const auto whole = duration_cast<seconds>(rounded);
        timeval wait{};
        wait.tv_sec = whole.count();
        wait.tv_usec = microseconds(rounded - whole).count();
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
        patience_ = rounded;
    }
    datagram.resize(longest_datagram);
    const ssize_t length = recv(socket_, datagram.data(), datagram.size(), 0);
    if (length < 0 && errno == ECONNREFUSED)
        throw session_error(RUK_MSG_UNREACHABLE, "nobody listens there");
    datagram.resize(static_cast<size_t>(std::max<ssize_t>(length, 0)));
    return length > 0;
}

} // namespace chassisd::rmcpplus
