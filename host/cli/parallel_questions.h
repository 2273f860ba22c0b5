// Questions that are asked over and over of many at once, so that one that is slow to answer, or
// does not answer at all, delays no other.
#ifndef RUK_HOST_CLI_PARALLEL_QUESTIONS_H
#define RUK_HOST_CLI_PARALLEL_QUESTIONS_H

#include <chrono>
#include <future>
#include <vector>

namespace cli
{

template <typename Answer>
class parallel_questions
{
  public:
    // Asks `question(index)` for each of `count` whose last question has been answered. Then waits
    // until all have answered or the time has passed, and hands over the answers that there are by
    // `take(index, answer)`, a future that is ready.
    template <typename Question, typename Take>
    void ask(size_t count, Question question, std::chrono::milliseconds limit, Take take)
    {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        pending_.resize(count);
        for (size_t index = 0; index < count; ++index)
            if (!pending_[index].valid())
                pending_[index] = std::async(std::launch::async, question, index);
        for (size_t index = 0; index < count; ++index)
            if (pending_[index].wait_until(deadline) == std::future_status::ready)
                take(index, pending_[index]);
    }

    // Drops the answers that came too late to be handed over, so that these are asked anew.
    void drop_late_answers()
    {
        for (std::future<Answer> &each : pending_)
            if (each.valid() && each.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
                each = {};
    }

  private:
    std::vector<std::future<Answer>> pending_;
};

} // namespace cli

#endif
