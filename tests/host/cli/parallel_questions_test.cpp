#include "cli/parallel_questions.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

using namespace cli;
using namespace std::chrono_literals;

namespace
{

constexpr auto patience = 20s;

// Tells that its thread has ended, which is after its answer can be had.
struct telling {
    std::atomic<bool> *told = nullptr;

    ~telling()
    {
        if (told)
            *told = true;
    }
};
thread_local telling end_of_thread;

} // namespace

TEST(parallel_questions, hand_over_the_answer_of_each)
{
    parallel_questions<size_t> questions;
    std::vector<size_t> squares(10);
    questions.ask(
        squares.size(), [](size_t at) { return at * at; }, patience,
        [&](size_t at, auto &answer) { squares[at] = answer.get(); });
    for (size_t at = 0; at < squares.size(); ++at)
        EXPECT_EQ(squares[at], at * at);
}

TEST(parallel_questions, do_not_wait_for_one_that_is_slow)
{
    std::promise<void> may_answer;
    const auto released = may_answer.get_future().share();
    std::atomic<int> asked = 0;
    parallel_questions<size_t> questions;
    const auto question = [&](size_t at) {
        ++asked;
        if (at == 0)
            released.wait();
        return at;
    };
    std::vector<size_t> answered;
    const auto take = [&](size_t, auto &answer) { answered.push_back(answer.get()); };

    questions.ask(2, question, 100ms, take);
    EXPECT_EQ(answered, std::vector<size_t>{1});
    may_answer.set_value();
    questions.ask(2, question, patience, take); // the slow one is not asked a second time
    EXPECT_EQ(answered, (std::vector<size_t>{1, 0, 1}));
    EXPECT_EQ(asked, 3);
}

TEST(parallel_questions, may_drop_an_answer_that_came_too_late)
{
    std::promise<void> may_answer;
    std::atomic<bool> has_answered = false;
    std::atomic<int> asked = 0;
    parallel_questions<int> questions;
    const auto question = [&](size_t) {
        const int mine = ++asked;
        if (mine == 1) {
            may_answer.get_future().wait();
            end_of_thread.told = &has_answered;
        }
        return mine;
    };
    std::vector<int> answered;
    const auto take = [&](size_t, auto &answer) { answered.push_back(answer.get()); };

    questions.ask(1, question, 0ms, take);
    may_answer.set_value();
    while (!has_answered)
        std::this_thread::yield();
    questions.drop_late_answers();
    questions.ask(1, question, patience, take);
    EXPECT_EQ(answered, std::vector<int>{2});
}

TEST(parallel_questions, hand_over_what_went_wrong)
{
    parallel_questions<int> questions;
    const auto fail = [](size_t) -> int { throw std::runtime_error("no answer"); };
    questions.ask(1, fail, patience,
                  [](size_t, auto &answer) { EXPECT_THROW(answer.get(), std::runtime_error); });
}
