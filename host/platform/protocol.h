// What travels between a client process and the daemon: frames on a SEQPACKET socket.
//
// A request is a header and a request record (its first data_len + 0x18 bytes); an answer is a
// header that repeats the request's sequence number and, when its status is 0, a response record
// (its first data_len + 0x1C bytes). All words are in host byte order: both ends are on one
// machine.
#ifndef RUK_HOST_PLATFORM_PROTOCOL_H
#define RUK_HOST_PLATFORM_PROTOCOL_H

#include <cstddef>
#include <cstdint>

#include "ruk_ipmi/types.h"

namespace ruk::host
{

struct frame_header {
    uint32_t magic;     // frame_magic
    uint32_t sequence;  // the client's, repeated in the answer
    uint32_t component; // IPMI_COMPONENT
    uint32_t status;    // answer only: 0, or why there is no record
};

constexpr uint32_t frame_magic = 0x52554b31;

struct request_frame {
    frame_header header;
    ipmi_request record;
};

struct answer_frame {
    frame_header header;
    ipmi_response record;
};

constexpr uint32_t request_header_size = offsetof(ipmi_request, data);
constexpr uint32_t response_header_size = offsetof(ipmi_response, data);

} // namespace ruk::host

#endif
