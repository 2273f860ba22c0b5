#include "cli/ring_reader.h"

#include "cli/failure.h"
#include "cli/shared_region.h"

namespace cli
{

namespace
{

// The next interrupt behind `number`; one without a number when there is none. Each call stands for
// itself: it finds its place also among numbers from before a renumbering.
ipmi_interrupt next_behind(uint32_t number)
{
    void *holder = shared_region();
    ipmi_interrupt next{};
    check({0, "interrupt ring"}, get_next_interrupt(&number, &holder, &next, 0));
    return next;
}

} // namespace

ring_reader::ring_reader() : position_(last_interrupt_number()) {}

// Where the ring was renumbered meanwhile, the reader goes on by the old numbers as long as they
// lead on, and by the new ones then. The way from old to new is the only step back there is: where
// the numbers lead back otherwise, or to nothing, they are not to be followed.
void ring_reader::read_on(const std::function<void(const ipmi_interrupt &interrupt)> &found,
                          const std::function<void(uint32_t first, uint32_t last)> &missed)
{
    uint32_t place = position_; // as the interrupt was numbered when it was written
    bool stepped_back = false;
    for (uint32_t last; (last = last_interrupt_number()) != position_;) {
        const ipmi_interrupt next = next_behind(place);
        if (next.int_num == 0 && place != position_) {
            place = position_;
            continue;
        }
        const bool steps_back = next.int_num <= position_;
        const bool astray = steps_back && (stepped_back || next.prev_num <= position_);
        if (next.int_num == 0 || astray) {
            missed(position_ + 1, last);
            position_ = last;
            return;
        }
        const uint32_t number = steps_back ? next.prev_num : next.int_num;
        if (number > position_ + 1)
            missed(position_ + 1, number - 1);
        found(next);
        stepped_back = stepped_back || steps_back;
        position_ = next.int_num;
        place = next.prev_num;
    }
}

} // namespace cli
