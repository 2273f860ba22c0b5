// What an asking client has seen so far, kept in a file that survives the client.
#ifndef RUK_TESTS_FAULTS_COUNTS_H
#define RUK_TESTS_FAULTS_COUNTS_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace tests
{

using moment = std::chrono::steady_clock::time_point;
using std::chrono::milliseconds;

// Seconds of the monotonic clock, which all processes read alike.
double seconds(moment when);

// From any thread. Every line of the file is an object in JSON, written at once: a process may be
// killed at any time, and its last whole line counts.
class counts
{
  public:
    explicit counts(const std::string &path);

    void add(const std::string &what, uint64_t count = 1);

    // Keeps the longest of its kind.
    void took(const std::string &what, milliseconds time);

    // A right answer has come to one who asks.
    void good(const std::string &who);

    // An answer that reports success and is not the request's own. It is told at once.
    void wrong(const std::string &what);

    // All that was counted. `ended`: there will be no more.
    void write(bool ended);

  private:
    void append(const std::string &line) const;

    int fd_;
    std::mutex mutex_;
    std::map<std::string, uint64_t> counts_;
    std::map<std::string, int64_t> longest_ms_;
    std::map<std::string, double> good_at_;
};

// How long this process was not running, be it that it was stopped or that the machine was busy.
class pulse
{
  public:
    static constexpr milliseconds period{20};

    // Does not return. To be called by a thread of its own.
    void beat();

    milliseconds missed() const { return milliseconds(missed_); }

  private:
    std::atomic<int64_t> missed_{0};
};

} // namespace tests

#endif
