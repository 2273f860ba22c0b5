// Those who ask within a client process, each one blade, again and again: some wait for the answer,
// others are called back with it.
#ifndef RUK_TESTS_FAULTS_ASKERS_H
#define RUK_TESTS_FAULTS_ASKERS_H

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <random>

#include "conversation.h"
#include "counts.h"
#include "ruk_ipmi/exchange.h"

namespace tests
{

// What the askers of a process share.
struct client_process {
    client_process(const std::string &results, uint32_t first_mark, uint32_t seed_)
        : told(results),
          seed(seed_),
          next_mark(first_mark)
    {
    }

    counts told;
    pulse heart;
    const uint32_t seed;
    std::atomic<uint32_t> next_mark; // of a request, in a word that its answer repeats
    std::atomic<bool> stopping{false};
};

// Asks with get_ruk_ipmi_response until the process is stopping.
void ask_and_wait(client_process &process, uint8_t slot, conversation &talk);

// Asks with send_ruk_ipmi_command. A process has one of these, since a callback knows no other.
class async_askers
{
  public:
    explicit async_askers(client_process &process);

    // Before run().
    void add(uint8_t slot, std::unique_ptr<conversation> talk);

    // Asks until the process is stopping and every command has called back, or never will.
    void run();

  private:
    // An asker's command that does not call back leaves it waiting for good.
    enum class state { idle, waiting, judging, in_vain };

    struct one_asker {
        uint8_t slot;
        std::unique_ptr<conversation> talk;
        state now = state::idle;
        ipmi_request request{};
        moment asked{};
        milliseconds missed_before{0};
    };

    static void call_back(ipmi_response *answer);
    void take(const ipmi_response &answer);
    void ask(one_asker &one, std::unique_lock<std::mutex> &lock);
    milliseconds age(const one_asker &one) const;
    bool all_done();

    client_process &process_;
    std::mutex mutex_; // of the askers and the drawing
    std::deque<one_asker> askers_;
    std::mt19937 draw_;
};

} // namespace tests

#endif
