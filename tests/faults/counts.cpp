#include "counts.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace tests
{

double seconds(moment when)
{
    return std::chrono::duration<double>(when.time_since_epoch()).count();
}

counts::counts(const std::string &path)
    : fd_(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600))
{
    if (fd_ < 0)
        throw std::system_error(errno, std::generic_category(), path);
}

void counts::add(const std::string &what, uint64_t count)
{
    const std::lock_guard lock(mutex_);
    counts_[what] += count;
}

void counts::took(const std::string &what, milliseconds time)
{
    const std::lock_guard lock(mutex_);
    int64_t &longest = longest_ms_[what];
    longest = std::max<int64_t>(longest, time.count());
}

void counts::good(const std::string &who)
{
    const std::lock_guard lock(mutex_);
    good_at_[who] = seconds(std::chrono::steady_clock::now());
}

void counts::wrong(const std::string &what)
{
    append(nlohmann::json{{"wrong", what}}.dump());
}

void counts::write(bool ended)
{
    nlohmann::json line;
    {
        const std::lock_guard lock(mutex_);
        line = {{"at", seconds(std::chrono::steady_clock::now())},
                {"counts", counts_},
                {"longest_ms", longest_ms_},
                {"good_at", good_at_},
                {"ended", ended}};
    }
    append(line.dump());
}

void counts::append(const std::string &line) const
{
    const std::string whole = line + "\n";
    if (::write(fd_, whole.data(), whole.size()) != static_cast<ssize_t>(whole.size()))
        throw std::system_error(errno, std::generic_category(), "cannot write the counts");
}

void pulse::beat()
{
    for (;;) {
        const auto before = std::chrono::steady_clock::now();
        std::this_thread::sleep_for(period);
        const auto late = std::chrono::steady_clock::now() - before - period;
        if (late > period)
            missed_ += std::chrono::duration_cast<milliseconds>(late).count();
    }
}

} // namespace tests
