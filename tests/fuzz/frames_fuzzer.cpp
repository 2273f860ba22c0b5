// Any frames from a client of the daemon: it serves the next one all the same.
//
// An input is a row of frames, each behind a byte: its length, in units of 4
// bytes. Where the byte's highest bit is set, the frame gets a header that is
// right, so that it reaches a blade.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "chassisd/broker.h"
#include "platform/directory.h"
#include "platform/protocol.h"

using namespace ruk::host;

namespace
{

[[noreturn]] void fail(const char *what)
{
    perror(what);
    abort();
}

// A daemon that serves one simulated blade, in a thread, for all inputs.
class daemon_in_a_thread
{
  public:
    daemon_in_a_thread()
        : served_(chassisd::simulated_chassis(1), [](auto &&...) {}),
          component_(directory_, served_),
          thread_([this] { component_.run(end_, [] { return false; }); })
    {
    }

    ~daemon_in_a_thread()
    {
        eventfd_write(end_, 1);
        thread_.join();
        std::filesystem::remove_all(directory_);
    }

    int connect_client() const
    {
        const int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
        const service_address address(directory_);
        if (fd < 0 || connect(fd, address.get(), address.size()) != 0)
            fail("cannot connect");
        return fd;
    }

  private:
    static std::string make_directory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "frames-XXXXXX").string();
        if (!mkdtemp(name.data()))
            fail("cannot make a directory");
        return name;
    }

    const std::string directory_ = make_directory();
    const int end_ = eventfd(0, EFD_CLOEXEC);
    chassisd::chassis served_;
    chassisd::broker component_;
    std::thread thread_;
};

request_frame right_frame()
{
    request_frame frame{};
    frame.header = {frame_magic, 1, IPMI_COMPONENT, 0};
    frame.record.msg_type = 0x101;
    frame.record.location.slot_id = 1;
    frame.record.netfn_cmd = 0x0601; // Get Device ID
    return frame;
}

// A frame that goes to the blade, whose network function, command and payload
// are drawn; of a payload too long for the record, what fits.
size_t complete(request_frame &frame, const uint8_t *drawn, size_t length)
{
    frame = right_frame();
    if (length >= 2)
        frame.record.netfn_cmd = static_cast<uint32_t>(drawn[0] << 8 | drawn[1]);
    const size_t payload = length < 2 ? 0 : std::min(length - 2, sizeof frame.record.data);
    memcpy(frame.record.data, drawn + length - payload, payload);
    frame.record.data_len = static_cast<uint32_t>(payload);
    return sizeof frame.header + request_header_size + payload;
}

// The fuzzer's own alarm interrupts what waits.
template <typename Call>
auto uninterrupted(Call call)
{
    decltype(call()) result;
    do
        result = call();
    while (result < 0 && errno == EINTR);
    return result;
}

void check_it_still_serves(const daemon_in_a_thread &daemon)
{
    const int fd = daemon.connect_client();
    const request_frame frame = right_frame();
    constexpr size_t length = sizeof frame.header + request_header_size;
    answer_frame answer{};
    if (uninterrupted([&] { return send(fd, &frame, length, MSG_NOSIGNAL); }) < 0 ||
        uninterrupted([&] { return recv(fd, &answer, sizeof answer, 0); }) <= 0)
        fail("the daemon serves no more");
    close(fd);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const daemon_in_a_thread daemon;
    const int fd = daemon.connect_client();
    for (size_t at = 0; at < size;) {
        const uint8_t kind = data[at++];
        const size_t length = std::min<size_t>((kind & 0x7F) * size_t{4}, size - at);
        request_frame frame;
        const bool is_right = (kind & 0x80) != 0;
        const size_t sent = is_right ? complete(frame, data + at, length) : length;
        send(fd, is_right ? reinterpret_cast<const uint8_t *>(&frame) : data + at, sent,
             MSG_NOSIGNAL);
        at += length;
    }
    check_it_still_serves(daemon);
    close(fd);
    return 0;
}
