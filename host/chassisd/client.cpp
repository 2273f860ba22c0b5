#include "chassisd/client.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/status.h"

namespace chassisd
{

using namespace ruk::host;

client::~client()
{
    close(fd_);
}

std::string client::peer() const
{
    ucred who{};
    socklen_t size = sizeof who;
    if (getsockopt(fd_, SOL_SOCKET, SO_PEERCRED, &who, &size) != 0)
        return "client";
    return "client pid " + std::to_string(who.pid) + ", uid " + std::to_string(who.uid);
}

client::input client::read(request_frame &frame) const
{
    // With MSG_TRUNC a frame's own length is told, also when it exceeds the room.
    const ssize_t length = recv(fd_, &frame, sizeof frame, MSG_DONTWAIT | MSG_TRUNC);
    if (length < 0)
        return errno == EAGAIN || errno == EINTR ? input::nothing : input::gone;
    if (length == 0)
        return input::gone;
    constexpr auto headers = static_cast<ssize_t>(sizeof frame.header + request_header_size);
    const bool whole = length >= headers && length <= static_cast<ssize_t>(sizeof frame) &&
                       frame.header.magic == frame_magic &&
                       frame.record.data_len == static_cast<uint64_t>(length - headers);
    return whole ? input::frame : input::malformed;
}

void client::send(const request_frame &asked, const answer &given)
{
    if (given.status != 0)
        return send(asked, given.status);
    answer_frame frame; // sent as far as it is filled
    if (given.data.size() > sizeof frame.record.data)
        return send(asked, RUK_MSG_ANSWER_TOO_LONG);
    frame.header = asked.header;
    frame.record.msg_type = asked.record.msg_type;
    frame.record.reserved_04 = 0;
    frame.record.location = asked.record.location;
    frame.record.reserved_0c = asked.record.reserved_0c;
    frame.record.netfn_cmd = asked.record.netfn_cmd;
    frame.record.comp_code = given.completion_code();
    frame.record.data_len = static_cast<uint32_t>(given.data.size());
    std::copy(given.data.begin(), given.data.end(), frame.record.data);
    send(frame, response_header_size + given.data.size());
}

void client::send(const request_frame &asked, uint32_t status)
{
    answer_frame frame;
    frame.header = asked.header;
    frame.header.status = status;
    send(frame, 0);
}

void client::send(const answer_frame &frame, size_t record_size)
{
    const ssize_t sent =
        ::send(fd_, &frame, sizeof frame.header + record_size, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent < 0)
        hang_up();
}

void client::hang_up()
{
    gone_ = true;
    shutdown(fd_, SHUT_RDWR);
}

} // namespace chassisd
