#include "drawn_controller.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace ruk_ipmi_testing
{

namespace
{

constexpr int repetition_ms = 10;

// The first byte of a datagram's answers: how many are spoilt, and what follows them.
constexpr uint8_t spoilt_mask = 0x03;
constexpr uint8_t nothing_follows = 0xC0;
constexpr uint8_t the_last_is_repeated = 0xE0;

template <typename Result>
Result checked(Result result)
{
    if (result < 0)
        throw std::system_error(errno, std::generic_category());
    return result;
}

sockaddr *general(sockaddr_in &address)
{
    return reinterpret_cast<sockaddr *>(&address);
}

change draw_change(script &drawn)
{
    const uint8_t kind = drawn.byte();
    change chosen{true, static_cast<layer>((kind & 0x3F) % 5), (kind & 0x80) != 0, 0, 0, {}};
    chosen.at = drawn.byte();
    chosen.removed = drawn.byte();
    const size_t length = drawn.byte();
    if (kind & 0x40)
        chosen.inserted.assign(length * 64, drawn.byte());
    while (chosen.inserted.size() < length)
        chosen.inserted.push_back(drawn.byte());
    return chosen;
}

void spoil(bytes &data, const change &change)
{
    const size_t skipped = std::min(change.at, data.size());
    const size_t first = change.is_from_the_end ? data.size() - skipped : skipped;
    const size_t removed = std::min(change.removed, data.size() - first);
    const auto from = data.begin() + static_cast<std::ptrdiff_t>(first);
    const auto place = data.erase(from, from + static_cast<std::ptrdiff_t>(removed));
    data.insert(place, change.inserted.begin(), change.inserted.end());
}

} // namespace

uint8_t script::byte()
{
    if (at_ == all_.size() && repeats_)
        at_ = 0;
    return at_ == all_.size() ? uint8_t{0} : all_[at_++];
}

drawn_controller::drawn_controller(const std::string &password, script script, unsigned honest)
    : script_(std::move(script)),
      honest_(honest),
      controller_(password,
                  [this](layer layer, bytes &data) {
                      if (change_.is_any && layer == change_.where)
                          spoil(data, change_);
                  }),
      socket_(checked(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))),
      end_(checked(eventfd(0, EFD_CLOEXEC)))
{
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address_;
    checked(bind(socket_, general(address_), size));
    checked(getsockname(socket_, general(address_), &size));
    thread_ = std::thread([this] { serve(); });
}

drawn_controller::~drawn_controller()
{
    eventfd_write(end_, 1);
    thread_.join();
    close(end_);
    close(socket_);
}

void drawn_controller::serve()
{
    pollfd awaited[] = {{socket_, POLLIN, 0}, {end_, POLLIN, 0}};
    for (;;) {
        const int patience = repeated_.empty() ? -1 : repetition_ms;
        checked(TEMP_FAILURE_RETRY(poll(awaited, 2, patience)));
        if (awaited[1].revents != 0)
            return;
        if (awaited[0].revents != 0)
            answer_next();
        else
            send(repeated_);
    }
}

void drawn_controller::answer_next()
{
    bytes asked(2048);
    socklen_t size = sizeof console_;
    asked.resize(static_cast<size_t>(
        checked(recvfrom(socket_, asked.data(), asked.size(), 0, general(console_), &size))));
    repeated_.clear();
    const uint8_t how = honest_ != 0 ? 0 : script_.byte();
    honest_ -= honest_ != 0;
    for (int left = how & spoilt_mask; left != 0; --left) {
        change_ = draw_change(script_);
        const bytes spoilt = controller_.answer(asked);
        send(spoilt);
        if (how >= the_last_is_repeated)
            repeated_ = spoilt;
    }
    change_ = {};
    if (how < nothing_follows)
        send(controller_.answer(asked));
}

void drawn_controller::send(const bytes &datagram) const
{
    const auto *to = reinterpret_cast<const sockaddr *>(&console_);
    sendto(socket_, datagram.data(), datagram.size(), 0, to, sizeof console_);
}

} // namespace ruk_ipmi_testing
