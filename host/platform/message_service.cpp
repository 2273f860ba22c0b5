// The message service's client side: SEQPACKET connections to the daemon of the runtime directory.
//
// Each outstanding message has a connection to itself, which stays in the message's place for the
// next one when the answer has come. So answers never have to be told apart, threads never wait for
// each other, and an exchange costs two system calls. A message whose sender has lost interest
// takes its connection with it: a late answer finds nobody to read it.

#include "platform/message_service.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <mutex>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

#include "platform/directory.h"
#include "platform/os.h"
#include "platform/protocol.h"
#include "platform/status.h"
#include "platform/ticks.h"

namespace
{

using namespace ruk::host;

constexpr auto tick_ms = static_cast<uint64_t>(tick.count());
constexpr uint64_t no_limit = ~uint64_t{0};
constexpr uint32_t most_outstanding = 256;
constexpr uint32_t most_idle = 64; // connections that are kept

// The library asks for what it still waits for at every tick; an asynchronous command that it has
// given up it just asks for no more.
constexpr uint64_t forgotten_ms = 1000;

struct connection {
    int fd = -1;
    uint64_t wait_ms = no_limit; // the receive time-out that is set on the socket
};

// A place for a message, and for the connection that it goes over.
struct message {
    // Under the lock.
    uint32_t index = 0;  // 0: free
    uint64_t thread = 0; // who sent it, and under which of its attachments
    uint32_t depth = 0;
    uint64_t asked_ms = 0;  // when it was sent, or last asked for
    bool abandoned = false; // nobody will ask again

    // The index while it may be asked for. Whoever takes that away has the connection to himself.
    std::atomic<uint32_t> waiting{0};
    connection link;
};

// The process's messages.
struct service {
    std::mutex mutex;
    message messages[most_outstanding];
    uint32_t generation = 0;
};

service here;

// What this thread has attached and not yet detached, and how many messages it sent meanwhile that
// it has not seen answered.
struct attachments {
    uint64_t thread = 0;
    uint32_t depth = 0;
    uint32_t unanswered = 0;
};

thread_local attachments mine;

uint64_t thread_number()
{
    static std::atomic<uint64_t> last{0};
    if (mine.thread == 0)
        mine.thread = ++last;
    return mine.thread;
}

void disconnect(connection &link)
{
    const int fd = std::exchange(link, connection{}).fd;
    if (fd >= 0)
        close(fd);
}

// A child shares no connection with its parent: the answers are the parent's.
void start_afresh()
{
    for (message &each : here.messages) {
        each.index = each.waiting = 0;
        disconnect(each.link);
    }
    mine.unanswered = 0;
    here.mutex.unlock();
}

const int at_fork =
    pthread_atfork([] { here.mutex.lock(); }, [] { here.mutex.unlock(); }, start_afresh);

// To a few milliseconds, of which a tick has more: that is read in no time.
uint64_t now_ms()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000 + static_cast<uint64_t>(now.tv_nsec) / 1000000;
}

uint32_t connect_service(connection &link)
{
    link.fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (link.fd < 0)
        return RUK_MSG_TOO_MANY;
    // A daemon that hangs must not hang its clients here.
    const timeval patience = {1, 0};
    setsockopt(link.fd, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    const service_address address(runtime_directory());
    while (connect(link.fd, address.get(), address.size()) != 0) {
        if (errno == EINTR)
            continue;
        return RUK_MSG_NO_SERVICE;
    }
    return 0;
}

bool send_frame(const connection &link, const request_frame &frame, size_t size)
{
    ssize_t sent;
    do
        sent = send(link.fd, &frame, size, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent >= 0;
}

// Sends on the connection that is there, or on a new one when it works no more: the daemon may have
// been restarted since.
uint32_t send_or_reconnect(connection &link, const request_frame &frame, size_t size)
{
    if (link.fd >= 0 && send_frame(link, frame, size))
        return 0;
    disconnect(link);
    const uint32_t rc = connect_service(link);
    if (rc != 0)
        return rc;
    return send_frame(link, frame, size) ? 0 : RUK_MSG_SERVICE_GONE;
}

// The message of that index, if it is outstanding, for this thread alone.
message *take(uint32_t index)
{
    message &candidate = here.messages[index % most_outstanding];
    return index != 0 && candidate.waiting.compare_exchange_strong(index, 0) ? &candidate : nullptr;
}

// Makes a message that is nobody else's business until it is sent.
message *begin_message(message &at)
{
    here.generation = here.generation % 0xFFFFFF + 1;
    at.index = here.generation << 8 | static_cast<uint32_t>(&at - here.messages);
    at.thread = thread_number();
    at.depth = mine.depth;
    at.asked_ms = now_ms();
    at.abandoned = false;
    return &at;
}

// In a free place, or in that of the message that was forgotten longest.
message *claim()
{
    const std::lock_guard lock(here.mutex);
    message *oldest = nullptr;
    for (message &each : here.messages) {
        if (each.index == 0)
            return begin_message(each);
        if (each.waiting != 0 && (!oldest || each.asked_ms < oldest->asked_ms))
            oldest = &each;
    }
    if (!oldest || now_ms() - oldest->asked_ms < forgotten_ms || !take(oldest->index))
        return nullptr;
    disconnect(oldest->link);
    return begin_message(*oldest);
}

// Takes the message off the books; its connection, if it still works, waits for the next one.
void release(message &done, bool keep_connection)
{
    if (!keep_connection || &done >= here.messages + most_idle)
        disconnect(done.link);
    const std::lock_guard lock(here.mutex);
    done.index = 0;
}

// A message that this thread sent under the attachment it gives back now, and that nobody will ask
// for any more; null when there is none left. One that another thread is waiting for is left to
// that thread.
message *take_unasked()
{
    const std::lock_guard lock(here.mutex);
    for (message &each : here.messages) {
        if (each.index == 0 || each.abandoned || each.thread != mine.thread ||
            each.depth < mine.depth)
            continue;
        --mine.unanswered;
        each.abandoned = true;
        if (take(each.index))
            return &each;
    }
    return nullptr;
}

// Leaves the message outstanding, unless its sender gave up meanwhile.
void suspend_receive(message &unanswered)
{
    {
        const std::lock_guard lock(here.mutex);
        unanswered.asked_ms = now_ms();
        if (!unanswered.abandoned) {
            unanswered.waiting = unanswered.index;
            return;
        }
    }
    release(unanswered, false);
}

// Waits for a frame: its length, 0 when the daemon is gone, -1 when the time is over.
ssize_t wait_for_frame(connection &link, uint64_t wait_ms, answer_frame &frame)
{
    const bool bounded = wait_ms != no_limit && wait_ms != 0;
    const uint64_t deadline = bounded ? now_ms() + wait_ms : 0;
    for (;;) {
        if (wait_ms != 0 && wait_ms != link.wait_ms) {
            const uint64_t ms = wait_ms == no_limit ? 0 : wait_ms; // to the socket, 0 is for ever
            const timeval limit = {static_cast<time_t>(ms / 1000),
                                   static_cast<suseconds_t>(ms % 1000 * 1000)};
            setsockopt(link.fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
            link.wait_ms = wait_ms;
        }
        // With MSG_TRUNC a frame's own length is told, also when it exceeds the room.
        const ssize_t length =
            recv(link.fd, &frame, sizeof frame, MSG_TRUNC | (wait_ms == 0 ? MSG_DONTWAIT : 0));
        if (length >= 0)
            return length;
        if (errno == EAGAIN)
            return -1;
        if (errno != EINTR)
            return 0;
        if (bounded) { // a signal shortens nobody's wait, nor does it lengthen it
            const uint64_t now = now_ms();
            wait_ms = now < deadline ? deadline - now : 0;
        }
    }
}

} // namespace

uint32_t attach_ruk_shm(void)
{
    ++mine.depth;
    return 0;
}

uint32_t detach_ruk_shm(void)
{
    if (mine.depth == 0)
        return 0;
    if (mine.unanswered != 0)
        while (message *const left = take_unasked())
            release(*left, false);
    --mine.depth;
    return 0;
}

uint32_t send_ruk_command(uint32_t component, const void *msg, uint32_t length, uint32_t,
                          uint32_t *index)
{
    if (component != IPMI_COMPONENT)
        return RUK_MSG_UNKNOWN_COMPONENT;
    if (length < request_header_size || length > sizeof(ipmi_request))
        return RUK_MSG_BAD_LENGTH;
    message *const sent = claim();
    if (!sent)
        return RUK_MSG_TOO_MANY;

    request_frame frame;
    frame.header = {frame_magic, sent->index, component, 0};
    memcpy(&frame.record, msg, length);
    const uint32_t rc = send_or_reconnect(sent->link, frame, sizeof frame.header + length);
    if (rc != 0) {
        release(*sent, false);
        return rc;
    }
    ++mine.unanswered;
    *index = sent->index;
    sent->waiting = sent->index;
    return 0;
}

uint32_t receive_ruk_response(uint32_t index, uint32_t timeout, uint32_t component, void *buffer,
                              uint32_t *length)
{
    if (component != IPMI_COMPONENT)
        return RUK_MSG_UNKNOWN_COMPONENT;
    message *const asked = take(index);
    if (!asked)
        return RUK_MSG_UNKNOWN_INDEX;

    answer_frame frame;
    const ssize_t received = wait_for_frame(
        asked->link, timeout == OS_WAIT_FOREVER ? no_limit : timeout * tick_ms, frame);
    if (received < 0) {
        suspend_receive(*asked);
        return RUK_MSG_NOT_ANSWERED;
    }
    if (asked->thread == mine.thread)
        --mine.unanswered;
    if (received < static_cast<ssize_t>(sizeof frame.header) || frame.header.magic != frame_magic ||
        frame.header.sequence != index) {
        release(*asked, false);
        return RUK_MSG_SERVICE_GONE;
    }
    release(*asked, true);

    if (frame.header.status != 0)
        return frame.header.status;
    const auto record = static_cast<uint64_t>(received) - sizeof frame.header;
    if (record > *length || record > sizeof frame.record)
        return RUK_MSG_ANSWER_TOO_LONG;
    memcpy(buffer, &frame.record, record);
    *length = static_cast<uint32_t>(record);
    return 0;
}
