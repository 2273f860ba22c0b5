// The message service's client side: SEQPACKET connections to the daemon of the runtime directory.
//
// Each outstanding message has a connection to itself, taken from a pool of idle ones and given
// back when the answer has come. So answers never have to be told apart, threads never wait for
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
constexpr uint32_t most_idle = 64;

// The library asks for what it still waits for at every tick; an asynchronous command that it has
// given up it just asks for no more.
constexpr uint64_t forgotten_ms = 1000;

struct connection {
    int fd = -1;
    uint64_t wait_ms = no_limit; // the receive time-out that is set on the socket
};

struct message {
    uint32_t index = 0; // 0: free
    connection link;
    uint64_t thread = 0; // who sent it, and under which of its attachments
    uint32_t depth = 0;
    uint64_t asked_ms = 0;  // when it was sent, or last asked for
    bool receiving = false; // a thread is waiting on the connection
    bool abandoned = false; // nobody will ask again
};

// The process's messages and idle connections.
struct service {
    std::mutex mutex;
    message messages[most_outstanding];
    uint32_t generation = 0;
    connection idle[most_idle];
    uint32_t idle_count = 0;
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

// A child shares no connection with its parent: the answers are the parent's.
void start_afresh()
{
    for (message &each : here.messages) {
        if (each.index != 0)
            close(each.link.fd);
        each = message{};
    }
    for (uint32_t i = 0; i < here.idle_count; ++i)
        close(here.idle[i].fd);
    here.idle_count = 0;
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
    link.wait_ms = no_limit;
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
        close(link.fd);
        link.fd = -1;
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

// Called under the lock.
connection take_idle()
{
    return here.idle_count == 0 ? connection{} : here.idle[--here.idle_count];
}

// Sends on the idle connection that it is given, on another one, or on a new one when there is none
// that still works: the daemon may have been restarted since.
uint32_t send_on_some_connection(connection &link, const request_frame &frame, size_t size)
{
    while (link.fd >= 0) {
        if (send_frame(link, frame, size))
            return 0;
        close(link.fd);
        const std::lock_guard lock(here.mutex);
        link = take_idle();
    }
    const uint32_t rc = connect_service(link);
    if (rc != 0)
        return rc;
    if (send_frame(link, frame, size))
        return 0;
    close(link.fd);
    link = connection{};
    return RUK_MSG_SERVICE_GONE;
}

// Makes a message that is nobody else's business until it is sent.
message *begin_message(message &at)
{
    here.generation = here.generation % 0xFFFFFF + 1;
    at = message{};
    at.index = here.generation << 8 | static_cast<uint32_t>(&at - here.messages);
    at.link = take_idle();
    at.receiving = true;
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
        if (!each.receiving && (!oldest || each.asked_ms < oldest->asked_ms))
            oldest = &each;
    }
    if (!oldest || now_ms() - oldest->asked_ms < forgotten_ms)
        return nullptr;
    close(oldest->link.fd);
    return begin_message(*oldest);
}

// Takes the message off the books; its connection, if it still works, becomes idle.
void release(message &done, bool keep_connection)
{
    connection link = done.link;
    {
        const std::lock_guard lock(here.mutex);
        if (keep_connection && here.idle_count < most_idle) {
            here.idle[here.idle_count++] = link;
            link.fd = -1;
        }
        done = message{};
    }
    if (link.fd >= 0)
        close(link.fd);
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
        if (!each.receiving) {
            each.receiving = true;
            return &each;
        }
    }
    return nullptr;
}

// The outstanding message of that index, for this thread alone to wait for.
message *begin_receive(uint32_t index)
{
    const std::lock_guard lock(here.mutex);
    message &candidate = here.messages[index % most_outstanding];
    if (index == 0 || candidate.index != index || candidate.receiving)
        return nullptr;
    candidate.receiving = true;
    return &candidate;
}

// Leaves the message outstanding, unless its sender gave up meanwhile.
void suspend_receive(message &waiting)
{
    {
        const std::lock_guard lock(here.mutex);
        waiting.asked_ms = now_ms();
        waiting.receiving = false;
        if (!waiting.abandoned)
            return;
    }
    release(waiting, false);
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
    const uint32_t rc = send_on_some_connection(sent->link, frame, sizeof frame.header + length);
    if (rc != 0) {
        release(*sent, false);
        return rc;
    }
    *index = sent->index;
    ++mine.unanswered;
    const std::lock_guard lock(here.mutex);
    sent->asked_ms = now_ms();
    sent->thread = thread_number();
    sent->depth = mine.depth;
    sent->receiving = false;
    return 0;
}

uint32_t receive_ruk_response(uint32_t index, uint32_t timeout, uint32_t component, void *buffer,
                              uint32_t *length)
{
    if (component != IPMI_COMPONENT)
        return RUK_MSG_UNKNOWN_COMPONENT;
    message *const waiting = begin_receive(index);
    if (!waiting)
        return RUK_MSG_UNKNOWN_INDEX;

    answer_frame frame;
    const ssize_t received = wait_for_frame(
        waiting->link, timeout == OS_WAIT_FOREVER ? no_limit : timeout * tick_ms, frame);
    if (received < 0) {
        suspend_receive(*waiting);
        return RUK_MSG_NOT_ANSWERED;
    }
    if (waiting->thread == mine.thread)
        --mine.unanswered;
    if (received < static_cast<ssize_t>(sizeof frame.header) || frame.header.magic != frame_magic ||
        frame.header.sequence != index) {
        release(*waiting, false);
        return RUK_MSG_SERVICE_GONE;
    }
    release(*waiting, true);

    if (frame.header.status != 0)
        return frame.header.status;
    const auto record = static_cast<uint64_t>(received) - sizeof frame.header;
    if (record > *length || record > sizeof frame.record)
        return RUK_MSG_ANSWER_TOO_LONG;
    memcpy(buffer, &frame.record, record);
    *length = static_cast<uint32_t>(record);
    return 0;
}
