// A client process's connection, and the frames that go over it.
#ifndef RUK_HOST_CHASSISD_CLIENT_H
#define RUK_HOST_CHASSISD_CLIENT_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "chassisd/blade.h"
#include "platform/protocol.h"

namespace chassisd
{

// Shared by the broker, which reads requests, and the blades' workers, which write answers. The
// descriptor lives as long as somebody holds the client, so an answer never reaches a stranger.
class client
{
  public:
    explicit client(int fd) : fd_(fd) {}
    ~client();
    client(const client &) = delete;
    client &operator=(const client &) = delete;

    int fd() const { return fd_; }

    // Who is at the other end, for a log line: "client pid 812, uid 1000".
    std::string peer() const;

    enum class input { frame, nothing, gone, malformed };

    // Reads the next request, if one is there.
    input read(ruk::host::request_frame &frame) const;

    // Answers a request with a record, or with a status when there is none. Never waits: a client
    // that does not read its answers is cut off.
    void send(const ruk::host::request_frame &asked, const answer &given);
    void send(const ruk::host::request_frame &asked, uint32_t status);

    // Ends the connection; the broker sees it and lets go.
    void hang_up();
    bool gone() const { return gone_; }

    // Requests taken and not answered yet.
    std::atomic<unsigned> outstanding{0};

  private:
    void send(const ruk::host::answer_frame &frame, size_t record_size);

    int fd_;
    std::atomic<bool> gone_{false};
};

} // namespace chassisd

#endif
