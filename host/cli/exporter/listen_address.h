// Where to listen, as people type it: "127.0.0.1", "localhost:9623", "[::1]:9623".
#ifndef RUK_HOST_CLI_EXPORTER_LISTEN_ADDRESS_H
#define RUK_HOST_CLI_EXPORTER_LISTEN_ADDRESS_H

#include <cstdint>
#include <string>

namespace cli
{

struct listen_address {
    std::string host = "127.0.0.1"; // a name, or an address without brackets
    uint16_t port = 9623;           // 0: any that is free
};

// Reads such a text; without a port it is the usual one. Anything else is a usage failure.
listen_address parse_listen_address(const std::string &text);

// The address as it can be typed.
std::string address_text(const listen_address &address);

// Listens there. The socket, and which port it came to be in `address`; when nobody can listen
// there, that is a usage failure.
int listening_socket(listen_address &address);

} // namespace cli

#endif
