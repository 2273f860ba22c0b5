// Interrupts from writers in some processes to readers in others.

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <vector>

#include "daemon.h"
#include "os_processes.h"
#include "runtime_processes.h"

namespace
{

using namespace tests;
using namespace std::chrono_literals;

constexpr char one_blade[] = "[[blade]]\nslot = 1\n";
constexpr unsigned readers = 8;
constexpr unsigned writers = 2;
constexpr uint32_t warm_up = 0; // the mark of interrupts that only see whether readers are ready

struct reader_report {
    std::atomic<bool> ready;
    std::atomic<uint32_t> seen;
    std::atomic<uint32_t> out_of_order;
    std::atomic<uint32_t> digest; // of what was seen, in its order
};

struct common {
    std::atomic<bool> done;
    std::atomic<uint32_t> posted;
    std::array<reader_report, readers> report;

    bool all_ready() const
    {
        return std::all_of(report.begin(), report.end(),
                           [](const reader_report &each) { return each.ready.load(); });
    }

    uint32_t least_seen() const
    {
        uint32_t least = ~0u;
        for (const reader_report &each : report)
            least = std::min(least, each.seen.load());
        return least;
    }
};

// A mark: who wrote it, and its how-manieth it is.
uint32_t mark(uint32_t writer, uint32_t count)
{
    return writer << 24 | count;
}

int wake_readers(const common &all)
{
    while (!all.all_ready()) {
        if (!post_mark(warm_up))
            return 1;
        pause_for(5ms);
    }
    return 0;
}

std::vector<child_process> start(unsigned many, const std::function<int(unsigned)> &function)
{
    std::vector<child_process> started;
    for (unsigned i = 0; i < many; ++i)
        started.emplace_back([=] { return function(i); });
    return started;
}

void expect_success(std::vector<child_process> &processes)
{
    for (child_process &each : processes)
        EXPECT_EQ(each.wait(), 0);
}

// Posts as fast as the slowest reader reads: the ring holds 200.
int write_at_a_pace(common &all, uint32_t writer, uint32_t many)
{
    for (uint32_t count = 1; count <= many; ++count) {
        while (all.posted - all.least_seen() > 150)
            pause_for(20us);
        ++all.posted;
        if (!post_mark(mark(writer, count)))
            return 1;
    }
    return 0;
}

int read_all(common &all, reader_report &mine)
{
    std::array<uint32_t, writers + 1> last{};
    read_events(
        [&](uint32_t seen) {
            if (seen == warm_up) {
                mine.ready = true;
                return;
            }
            const uint32_t writer = seen >> 24;
            if (writer > writers || (seen & 0xFFFFFF) != ++last[writer])
                ++mine.out_of_order;
            mine.digest = mine.digest * 31 + seen;
            ++mine.seen;
        },
        [&] { return all.done.load(); });
}

// Reads at full speed; what is missing between the marks it sees goes to `gaps`, in the words of
// the library's notice.
int read_and_note_gaps(common &all, reader_report &mine, const std::string &gaps,
                       const std::string &log)
{
    setenv("RUK_LOG", "notice", 1);
    if (!freopen(log.c_str(), "w", stderr))
        return 1;
    std::ofstream out(gaps);
    uint32_t last = 0;
    read_events(
        [&](uint32_t number) {
            mine.ready = true;
            if (last != 0 && number <= last)
                ++mine.out_of_order;
            if (last != 0 && number > last + 1)
                out << "IPMI client missed events between " << last << " and " << number << "."
                    << std::endl;
            last = number;
            mine.seen = number;
            if (&mine == &all.report[0]) // one reader is always too slow
                pause_for(100us);
        },
        [&] { return all.done.load(); });
}

// The missed-events notices in a log, without what the log puts before each.
std::string notices(const std::string &log)
{
    std::ifstream in(log);
    std::string all;
    for (std::string line; std::getline(in, line);) {
        const size_t begin = line.find("IPMI client missed");
        if (begin != std::string::npos)
            all += line.substr(begin) + "\n";
    }
    return all;
}

std::string content(const std::string &path)
{
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace

TEST(Delivery, EveryReaderSeesEveryInterruptOnceAndInOrder)
{
    constexpr uint32_t many = 100000;
    const chassis_daemon served(one_blade);
    shared<common> all;
    auto reading = start(readers, [&](unsigned i) { return read_all(*all, all->report[i]); });
    ASSERT_EQ(in_child([&] { return wake_readers(*all); }), 0);
    auto writing =
        start(writers, [&](unsigned i) { return write_at_a_pace(*all, i + 1, many / writers); });
    expect_success(writing);
    EXPECT_TRUE(eventually([&] { return all->least_seen() == many; }));
    all->done = true;
    expect_success(reading);
    for (const reader_report &each : all->report) {
        EXPECT_EQ(each.seen, many);
        EXPECT_EQ(each.out_of_order, 0u);
        EXPECT_EQ(each.digest, all->report[0].digest);
    }
}

TEST(Delivery, WhatAReaderMissedIsWhatTheNoticesSay)
{
    constexpr uint32_t many = 30000;
    const chassis_daemon served(one_blade);
    const temporary_directory directory;
    const auto path = [&](const char *what, unsigned i) {
        return directory.path() + "/" + what + std::to_string(i);
    };
    shared<common> all;
    auto reading = start(readers, [&](unsigned i) {
        return read_and_note_gaps(*all, all->report[i], path("gaps", i), path("log", i));
    });
    ASSERT_EQ(in_child([&] {
                  while (!all->all_ready()) {
                      if (!post_number())
                          return 1;
                      pause_for(5ms);
                  }
                  return 0;
              }),
              0);
    auto writing = start(writers, [&](unsigned) {
        for (uint32_t i = 0; i < many / writers; ++i, ++all->posted)
            if (!post_number())
                return 1;
        return 0;
    });
    expect_success(writing);
    // The last interrupts stay in the ring, so every reader gets there.
    ASSERT_EQ(in_child([] { return post_number() ? 0 : 1; }), 0);
    EXPECT_TRUE(eventually([&] {
        return std::all_of(all->report.begin(), all->report.end(), [&](const reader_report &each) {
            return each.seen == all->report[0].seen;
        });
    }));
    all->done = true;
    expect_success(reading);
    for (unsigned i = 0; i < readers; ++i) {
        EXPECT_EQ(all->report[i].out_of_order, 0u);
        EXPECT_EQ(notices(path("log", i)), content(path("gaps", i)));
    }
    EXPECT_NE(content(path("gaps", 0)), "");
}
