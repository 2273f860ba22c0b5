#include "chassisd/bridge/rmcpplus/message.h"

#include <numeric>

#include "chassisd/fields.h"

namespace chassisd::rmcpplus
{

namespace
{

constexpr uint8_t controller = 0x20; // slave addresses: the controller's, and ours
constexpr uint8_t console = 0x81;

// Both parts of a message, the three bytes of its head and the rest, add up to zero.
constexpr size_t head_size = 3;
constexpr size_t least_body = 5; // address, number, command, completion code, checksum

bool adds_up(bytes::const_iterator from, bytes::const_iterator to)
{
    return std::accumulate(from, to, 0) % 256 == 0;
}

} // namespace

bytes message_of(const request &asked, unsigned number)
{
    const bytes head = {controller, static_cast<uint8_t>(asked.netfn << 2 | asked.lun)};
    const bytes body = record_of(console, static_cast<int>(number << 2), asked.command, asked.data);
    return record_of(head, zero_checksum(head), body, zero_checksum(body));
}

std::optional<bytes> answer_in(const bytes &message, const request &asked, unsigned number)
{
    if (message.size() < head_size + least_body)
        return std::nullopt;
    const auto body = message.begin() + head_size;
    const bool is_sound = adds_up(message.begin(), body) && adds_up(body, message.end());
    const bool is_to_us = message[0] == console && message[3] == controller;
    const bool is_to_this = message[1] >> 2 == (asked.netfn | 1) && message[4] >> 2 == number &&
                            message[5] == asked.command;
    if (!is_sound || !is_to_us || !is_to_this)
        return std::nullopt;
    return bytes(body + 3, message.end() - 1);
}

} // namespace chassisd::rmcpplus
