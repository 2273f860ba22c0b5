#include "chassisd/broker.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <stdexcept>
#include <sys/epoll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

#include "platform/directory.h"
#include "platform/log.h"
#include "platform/status.h"

namespace chassisd
{

using namespace ruk::host;

namespace
{

// A client's library has one message on a connection at a time; this is for those that have more.
constexpr unsigned most_outstanding = 64;

[[noreturn]] void fail(const std::string &what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

// The request as IPMI sees it; none when no controller could be sent it: a network function of more
// than 8 bits, or an odd one, which is an answer's. One above 0x3F stands in its shifted form, with
// the LUN in its low two bits.
std::optional<request> decode(const ipmi_request &record)
{
    const uint32_t netfn = record.netfn_cmd >> 8;
    const bool shifted = netfn > 0x3F;
    request asked;
    asked.netfn = static_cast<uint8_t>(shifted ? netfn >> 2 : netfn);
    asked.lun = static_cast<uint8_t>(shifted ? netfn & 3 : 0);
    asked.command = static_cast<uint8_t>(record.netfn_cmd);
    if (netfn > 0xFF || (asked.netfn & 1) != 0)
        return std::nullopt;
    asked.data.assign(record.data, record.data + record.data_len);
    return asked;
}

constexpr uint8_t invalid_command = 0xC1;

// Counts a request as outstanding until its job is done with, answered or not.
struct place_in_line {
    explicit place_in_line(client &asking) : from(asking) { ++from.outstanding; }
    ~place_in_line() { --from.outstanding; }
    place_in_line(const place_in_line &) = delete;
    place_in_line &operator=(const place_in_line &) = delete;

    client &from;
};

} // namespace

broker::broker(const std::string &directory, const chassis &chassis)
    : chassis_(chassis),
      directory_(directory)
{
    lock_ = open((directory + "/chassisd.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock_ < 0)
        fail("cannot write to the runtime directory " + directory);
    if (flock(lock_, LOCK_EX | LOCK_NB) != 0)
        throw std::runtime_error("another ruk-chassisd serves " + directory);

    const service_address address(directory);
    unlink(address.path());
    listener_ = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listener_ < 0 || bind(listener_, address.get(), address.size()) != 0 ||
        listen(listener_, SOMAXCONN) != 0)
        fail("cannot listen in " + directory);

    epoll_ = epoll_create1(EPOLL_CLOEXEC);
    spare_ = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (epoll_ < 0 || spare_ < 0 || !watch(listener_))
        fail("cannot start");
}

broker::~broker()
{
    unlink(service_address(directory_).path());
    for (const int fd : {listener_, epoll_, spare_, lock_})
        if (fd >= 0)
            close(fd);
}

bool broker::watch(int fd)
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = fd;
    return epoll_ctl(epoll_, EPOLL_CTL_ADD, fd, &event) == 0;
}

void broker::run(int control_fd, const std::function<bool()> &go_on)
{
    if (!watch(control_fd))
        fail("cannot start");
    for (;;) {
        epoll_event events[64];
        const int count = epoll_wait(epoll_, events, 64, -1);
        for (int i = 0; i < count; ++i) {
            const int fd = events[i].data.fd;
            if (fd == control_fd) {
                if (!go_on())
                    return;
                continue;
            }
            if (fd == listener_) {
                accept_clients();
                continue;
            }
            const std::shared_ptr<client> &from = clients_.at(fd);
            serve(from);
            if (from->gone()) {
                epoll_ctl(epoll_, EPOLL_CTL_DEL, fd, nullptr);
                clients_.erase(fd);
            }
        }
    }
}

void broker::accept_clients()
{
    for (;;) {
        const int fd = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd >= 0) {
            auto accepted = std::make_shared<client>(fd);
            if (watch(fd))
                clients_[fd] = std::move(accepted);
            continue;
        }
        if (errno == EMFILE || errno == ENFILE) {
            // Left in the queue, the client would wake us for ever.
            close(spare_);
            close(accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC));
            spare_ = open("/dev/null", O_RDONLY | O_CLOEXEC);
            slog_elog("turned a client away: out of file descriptors\n");
            continue;
        }
        if (errno != EINTR && errno != ECONNABORTED)
            return;
    }
}

void broker::serve(const std::shared_ptr<client> &from)
{
    request_frame frame;
    switch (from->read(frame)) {
    case client::input::frame:
        dispatch(from, frame);
        break;
    case client::input::nothing:
        break;
    case client::input::malformed:
        slog_nlog("closed %s: malformed frame\n", from->peer().c_str());
        [[fallthrough]];
    case client::input::gone:
        from->hang_up();
        break;
    }
}

void broker::dispatch(const std::shared_ptr<client> &from, const request_frame &frame)
{
    if (frame.header.component != IPMI_COMPONENT)
        return from->send(frame, RUK_MSG_UNKNOWN_COMPONENT);
    worker *const blade = chassis_.at(frame.record.location);
    if (!blade)
        return from->send(frame, RUK_MSG_NO_BLADE);
    std::optional<request> asked = decode(frame.record);
    if (!asked)
        return from->send(frame, answer{0, {invalid_command}});

    if (const std::optional<answer> given = blade->answer_at_once(*asked))
        return from->send(frame, *given);
    const auto place = std::make_shared<place_in_line>(*from);
    const auto wanted = [from] { return !from->gone(); };
    const auto deliver = [from, frame, place](const answer &given) { from->send(frame, given); };
    if (from->outstanding > most_outstanding || !blade->post({std::move(*asked), wanted, deliver}))
        from->send(frame, RUK_MSG_TOO_MANY);
}

} // namespace chassisd
