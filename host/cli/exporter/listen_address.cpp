#include "cli/exporter/listen_address.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

#include "cli/failure.h"
#include "cli/numbers.h"

namespace cli
{

namespace
{

failure no_address(const std::string &text)
{
    return usage_failure("\"" + text +
                         "\" is not an address like 127.0.0.1, localhost:9623 or [::1]:9623");
}

using addresses = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

failure cannot_listen(const listen_address &at, const char *why)
{
    return usage_failure("cannot listen at " + address_text(at) + ": " + why);
}

addresses addresses_of(const listen_address &wanted)
{
    addrinfo hints{};
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    const int rc =
        getaddrinfo(wanted.host.c_str(), std::to_string(wanted.port).c_str(), &hints, &found);
    if (rc != 0)
        throw cannot_listen(wanted, gai_strerror(rc));
    return {found, freeaddrinfo};
}

// -1, with errno, when nobody can listen there.
int listen_at(const addrinfo &at)
{
    const int fd = socket(at.ai_family, at.ai_socktype | SOCK_CLOEXEC, at.ai_protocol);
    if (fd < 0)
        return -1;
    // Connections of one who listened there before may be still about to end.
    const int yes = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (bind(fd, at.ai_addr, at.ai_addrlen) == 0 && listen(fd, SOMAXCONN) == 0)
        return fd;
    const int error = errno;
    close(fd);
    errno = error;
    return -1;
}

uint16_t port_of(int fd)
{
    // Both families have the port in the same place.
    sockaddr_in6 bound{};
    socklen_t size = sizeof bound;
    getsockname(fd, reinterpret_cast<sockaddr *>(&bound), &size);
    return ntohs(bound.sin6_port);
}

} // namespace

listen_address parse_listen_address(const std::string &text)
{
    listen_address address;
    std::string rest;
    const size_t bracket = text.find(']');
    if (!text.empty() && text[0] == '[' && bracket != std::string::npos) {
        address.host = text.substr(1, bracket - 1);
        rest = text.substr(bracket + 1);
    } else {
        address.host = text.substr(0, text.find(':'));
        rest = text.substr(address.host.size());
    }
    if (address.host.empty() || (!rest.empty() && rest[0] != ':') ||
        rest.find(':', 1) != std::string::npos)
        throw no_address(text);
    if (!rest.empty())
        address.port = number<uint16_t>(rest.substr(1));
    return address;
}

std::string address_text(const listen_address &address)
{
    const bool colons = address.host.find(':') != std::string::npos;
    return (colons ? "[" + address.host + "]" : address.host) + ":" + std::to_string(address.port);
}

int listening_socket(listen_address &address)
{
    const addresses found = addresses_of(address);
    for (const addrinfo *each = found.get(); each; each = each->ai_next) {
        const int fd = listen_at(*each);
        if (fd < 0)
            continue;
        address.port = port_of(fd);
        return fd;
    }
    throw cannot_listen(address, strerror(errno));
}

} // namespace cli
