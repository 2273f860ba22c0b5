// What clients may do to the daemon without harm to it or to anybody else: raw connections that
// send what no library would.

#include <cerrno>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include "daemon.h"
#include "platform/protocol.h"
#include "platform/status.h"

namespace
{

using namespace tests;
using namespace ruk::host;

constexpr char two_blades[] = "[[blade]]\nslot = 1\n[[blade]]\nslot = 2\n";

class raw_client
{
  public:
    explicit raw_client(const chassis_daemon &served) : fd_(socket(AF_UNIX, SOCK_SEQPACKET, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        strncpy(address.sun_path, served.socket().c_str(), sizeof address.sun_path - 1);
        connected_ = connect(fd_, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    }
    ~raw_client() { close(fd_); }
    raw_client(raw_client &&other) noexcept : fd_(other.fd_), connected_(other.connected_)
    {
        other.fd_ = -1;
    }

    bool connected() const { return connected_; }
    bool send(const void *bytes, size_t length) const
    {
        return ::send(fd_, bytes, length, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
    }
    // The daemon has closed its end; an answer would come as a frame.
    bool closed_by_daemon() const
    {
        answer_frame frame;
        return recv(fd_, &frame, sizeof frame, 0) <= 0;
    }
    answer_frame receive() const
    {
        answer_frame frame{};
        recv(fd_, &frame, sizeof frame, 0);
        return frame;
    }

  private:
    int fd_;
    bool connected_;
};

request_frame good_frame(uint32_t sequence)
{
    request_frame frame{};
    frame.header = {frame_magic, sequence, IPMI_COMPONENT, 0};
    frame.record = sel_entry_request(1, 1, sequence);
    return frame;
}

constexpr size_t good_size = sizeof(frame_header) + 0x18 + 6;

// The test's own exchange, as any other client's.
bool served_still()
{
    ipmi_request request = sel_entry_request(2, 1, 99);
    ipmi_response response = empty_response();
    return get_ruk_ipmi_response(&request, &response, 200) == 0 && answers(response, request);
}

TEST(Robustness, AnswersAFrameThatIsAsItShouldBe)
{
    const chassis_daemon served(two_blades);
    const raw_client client(served);
    const request_frame frame = good_frame(42);
    ASSERT_TRUE(client.send(&frame, good_size));
    const answer_frame answer = client.receive();
    EXPECT_EQ(42u, answer.header.sequence);
    EXPECT_EQ(0u, answer.header.status);
    EXPECT_TRUE(answers(answer.record, frame.record));
}

TEST(Robustness, AMalformedFrameClosesItsClientAlone)
{
    const chassis_daemon served(two_blades);
    struct {
        const char *what;
        std::function<void(request_frame &)> spoil;
        size_t size;
    } const cases[] = {
        {"shorter than its headers", [](request_frame &) {}, 39},
        {"one byte", [](request_frame &) {}, 1},
        {"longer than a record", [](request_frame &) {}, sizeof(request_frame) + 1},
        {"a wrong magic number", [](request_frame &f) { f.header.magic ^= 1; }, good_size},
        {"a length that lies", [](request_frame &f) { f.record.data_len = 7; }, good_size},
        {"a length that wraps", [](request_frame &f) { f.record.data_len = ~0u; }, good_size},
    };
    for (const auto &each : cases) {
        const raw_client bystander(served);
        const raw_client client(served);
        std::vector<uint8_t> bytes(sizeof(request_frame) + 1);
        request_frame frame = good_frame(1);
        each.spoil(frame);
        memcpy(bytes.data(), &frame, sizeof frame);
        ASSERT_TRUE(client.send(bytes.data(), each.size)) << each.what;
        EXPECT_TRUE(client.closed_by_daemon()) << each.what;
        const request_frame good = good_frame(2);
        ASSERT_TRUE(bystander.send(&good, good_size));
        EXPECT_EQ(2u, bystander.receive().header.sequence) << each.what;
    }
}

TEST(Robustness, AnEmptyFrameIsTheEndOfItsClient)
{
    const chassis_daemon served(two_blades);
    const raw_client client(served);
    ASSERT_TRUE(client.send("", 0));
    EXPECT_TRUE(client.closed_by_daemon());
    EXPECT_TRUE(served_still());
}

TEST(Robustness, RefusesAnotherComponentAndImpossibleNetworkFunctions)
{
    const chassis_daemon served(two_blades);
    const raw_client client(served);
    request_frame frame = good_frame(1);
    frame.header.component = 5;
    client.send(&frame, good_size);
    EXPECT_EQ(RUK_MSG_UNKNOWN_COMPONENT, client.receive().header.status);
    for (const uint32_t netfn_cmd : {0x10A43u, 0x0B43u, 0xFFFFFFFFu}) {
        frame = good_frame(2);
        frame.record.netfn_cmd = netfn_cmd;
        client.send(&frame, good_size);
        const answer_frame answer = client.receive();
        EXPECT_EQ(0u, answer.header.status);
        EXPECT_EQ(0xC1u, answer.record.comp_code) << std::hex << netfn_cmd;
    }
}

TEST(Robustness, AThousandIdleClientsAreNoBurden)
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    const chassis_daemon served(two_blades);
    std::vector<raw_client> idle;
    for (int i = 0; i < 1000; ++i) {
        idle.emplace_back(served);
        ASSERT_TRUE(idle.back().connected()) << i;
    }
    EXPECT_TRUE(served_still());
    EXPECT_TRUE(eventually([&] { return served.descriptors() > 1000; }));
    idle.clear();
    EXPECT_TRUE(eventually([&] { return served.descriptors() < 50; }));
}

TEST(Robustness, AClientThatNeverReadsIsCutOffAndNobodyElse)
{
    const chassis_daemon served(two_blades);
    const raw_client client(served);
    const request_frame frame = good_frame(1);
    const bool cut_off = eventually([&] {
        for (int i = 0; i < 200; ++i)
            if (!client.send(&frame, good_size) && errno == EPIPE)
                return true;
        return !served_still();
    });
    EXPECT_TRUE(cut_off);
    EXPECT_TRUE(served_still());
}

TEST(Robustness, NoiseOfAnyLengthLeavesTheDaemonServing)
{
    const chassis_daemon served(two_blades);
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const raw_client client(served);
        request_frame frame = good_frame(1);
        auto *bytes = reinterpret_cast<uint8_t *>(&frame);
        // Mostly right, so that it gets past the first check: a few bytes of it are noise.
        for (int flips = static_cast<int>(random() % 6); flips > 0; --flips)
            bytes[random() % good_size] = static_cast<uint8_t>(random());
        client.send(bytes, random() % 8 == 0 ? random() % sizeof frame : good_size);
    }
    EXPECT_TRUE(served_still());
}

} // namespace
