// A simulated blade whose clock stands still until a test moves it, and what it alerted its chassis
// to.
#ifndef RUK_TESTS_HOST_SIMULATED_BLADE_UNDER_TEST_H
#define RUK_TESTS_HOST_SIMULATED_BLADE_UNDER_TEST_H

#include <functional>
#include <gtest/gtest.h>

#include "chassisd/simulated/controller.h"
#include "commands/wire.h"

namespace chassisd::simulated
{

// What the clock says at the start: 2025-06-01 12:00 UTC.
constexpr uint32_t start_time = 1748779200;

struct alert {
    blade_event event;
    bytes record;
};

class blade_under_test
{
  public:
    explicit blade_under_test(const simulated_config &config = {}, uint8_t slot = 7,
                              uint8_t sub_slot = 0);

    // The completion code and the answer's data.
    bytes ask(uint8_t netfn, uint8_t command, const bytes &data = {}, uint8_t lun = 0);

    bytes storage(uint8_t command, const bytes &data = {}) { return ask(0x0A, command, data); }

    void let_pass(std::chrono::microseconds time) { now_ += time; }

    // The alerts since the last call.
    std::vector<alert> alerts() { return std::exchange(alerts_, {}); }

    // Their events alone.
    std::vector<blade_event> events();

    // The last entry of its log.
    bytes last_entry();

  private:
    std::vector<alert> alerts_;
    time_point now_{std::chrono::seconds(start_time)};
    std::unique_ptr<blade> blade_;
};

simulated_config with_entries(uint32_t sel_entries);
simulated_config named(const std::string &name);

// A number as requests carry it.
bytes le16_bytes(size_t number);

bytes joined(const bytes &head, const bytes &tail);

// Parts of an answer: all from a place on, a length, a number. The test ends when the answer is too
// short for it.
bytes from(size_t from, const bytes &answer);
bytes part(size_t place, size_t length, const bytes &answer);
uint16_t word_at(size_t place, const bytes &answer);
uint32_t long_at(size_t place, const bytes &answer);

// Every record of a repository, as a reader finds them who goes from one to the next; `get` asks
// for the whole record of an ID.
std::vector<bytes> all_records(const std::function<bytes(uint16_t)> &get);

} // namespace chassisd::simulated

#endif
