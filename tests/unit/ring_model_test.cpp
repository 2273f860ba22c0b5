// The ring against a model of it: at random, again and again, the region, the reader's position
// and record, and what is said must be those of the model.

#include <algorithm>
#include <deque>
#include <random>

#include "ring_fixture.h"

using namespace ruk_ipmi_testing;

namespace
{

// What the ring is: a queue of 200 interrupts, the oldest in front.
class ring_model
{
  public:
    explicit ring_model(const ipmi_shm &region) : rest(region)
    {
        for (uint32_t i = 0; i < IPMI_RING_SLOTS; ++i)
            queue.push_back(region.ring[slot(i)]);
    }

    void init()
    {
        std::fill(queue.begin(), queue.end(), ipmi_interrupt{});
        std::fill(std::begin(rest.timeouts), std::end(rest.timeouts), ipmi_timeouts{});
        rest.next_slot = 0;
    }

    void put(uint32_t number, ipmi_interrupt &record)
    {
        rest.renumbered = number < rest.last_int_num;
        if (rest.renumbered && rest.next_slot != 0)
            renumber();
        record.prev_num = rest.renumbered ? rest.last_int_num + 1 : record.int_num;
        queue.pop_front();
        queue.push_back(record);
        rest.last_int_num = number;
        rest.next_slot = slot(0) + 1;
    }

    // Whether anything is to be said.
    bool get(uint32_t &position, ipmi_interrupt &out, uint32_t continuing) const
    {
        const bool behind = position < rest.last_int_num;
        if (rest.renumbered == 0 && position == rest.last_int_num)
            return false;
        if (rest.renumbered == 0 && behind)
            take_first(&ipmi_interrupt::int_num, position, out);
        else if (behind || continuing == 0)
            take_first(&ipmi_interrupt::prev_num, position, out);
        else
            return false;
        return true;
    }

    ipmi_shm region() const
    {
        ipmi_shm whole = rest;
        for (uint32_t i = 0; i < IPMI_RING_SLOTS; ++i)
            whole.ring[slot(i)] = queue[i];
        return whole;
    }

    uint32_t last_number() const { return rest.last_int_num; }

  private:
    // Where the i-th oldest lies.
    uint32_t slot(uint32_t i) const
    {
        const uint32_t oldest = rest.next_slot < IPMI_RING_SLOTS ? rest.next_slot : 0;
        return (oldest + i) % IPMI_RING_SLOTS;
    }

    void renumber()
    {
        uint32_t next = 1;
        for (ipmi_interrupt &each : queue) {
            each.prev_num = each.int_num;
            if (each.int_num != 0)
                each.int_num = next++;
        }
    }

    void take_first(uint32_t ipmi_interrupt::*key, uint32_t &position, ipmi_interrupt &out) const
    {
        const auto found = std::find_if(queue.begin(), queue.end(),
                                        [&](const auto &each) { return each.*key > position; });
        if (found == queue.end())
            return;
        out = *found;
        position = found->int_num;
    }

    std::deque<ipmi_interrupt> queue;
    ipmi_shm rest; // all but the slots
};

// What a run is like: how often, on average, the numbers step back and the ring is emptied.
struct run {
    uint32_t seed;
    uint32_t puts_per_step_back;
    uint32_t operations_per_init;
};

void PrintTo(const run &run, std::ostream *out)
{
    *out << "seed " << run.seed;
}

class modelled_ring : public ring_test, public ::testing::WithParamInterface<run>
{
  protected:
    uint32_t any() { return static_cast<uint32_t>(generator()); }
    uint32_t below(uint32_t limit) { return any() % limit; }
    bool once_in(uint32_t times) { return below(times) == 0; }

    template <size_t N>
    uint32_t one_of(const uint32_t (&numbers)[N])
    {
        return numbers[any() % N];
    }

    uint32_t some_number(uint32_t last)
    {
        return one_of({0, 1, last / 2, last - 1, last, last + below(9), 0xFFFFFFFF});
    }

    uint32_t next_number(uint32_t last)
    {
        if (once_in(GetParam().puts_per_step_back))
            return some_number(last);
        return last + 1 + (once_in(10) ? below(100) : 0);
    }

    ipmi_interrupt some_interrupt(uint32_t number)
    {
        ipmi_interrupt record = interrupt(any());
        record.int_num = once_in(20) ? some_number(number) : number;
        return record;
    }

    void put_some()
    {
        const uint32_t number = next_number(model.last_number());
        ipmi_interrupt expected = some_interrupt(number);
        *out = expected;
        model.put(number, expected);
        ASSERT_EQ(put_next_interrupt(number, &holder, out.get()), 0u);
        ASSERT_EQ(hex(out.content()), hex(bytes_of(expected)));
    }

    void get_some()
    {
        uint32_t &reader = readers[any() % std::size(readers)];
        if (once_in(20))
            reader = some_number(model.last_number());
        stand_behind(reader);
        ipmi_interrupt expected = interrupt(any());
        *out = expected;
        const uint32_t continuing = below(2);
        const bool speaks = model.get(reader, expected, continuing);
        ASSERT_EQ(get(continuing), 0u);
        ASSERT_EQ(*position, reader);
        ASSERT_EQ(hex(out.content()), hex(bytes_of(expected)));
        ASSERT_EQ(platform.log().size(), speaks ? 1u : 0u);
    }

    void init()
    {
        model.init();
        ASSERT_EQ(init_shm_ptr(&holder), 0u);
    }

    void do_something()
    {
        platform.forget();
        if (once_in(GetParam().operations_per_init))
            init();
        else if (once_in(2))
            put_some();
        else
            get_some();
        ASSERT_TRUE(out.guards_hold() && position.guards_hold());
        ASSERT_TRUE(region == model.region());
    }

    // Numbers few enough to meet each other, and a next slot that may be none.
    void damage_region()
    {
        for (ipmi_interrupt &slot : region.ring) {
            slot = interrupt(below(16));
            slot.prev_num = below(16);
        }
        region.last_int_num = below(16);
        region.renumbered = below(3);
        region.next_slot = one_of({0, 1, 199, 200, 201, below(200), 0xFFFFFFFF});
        model = ring_model(region);
    }

    std::mt19937 generator{GetParam().seed};
    ring_model model{region};
    uint32_t readers[4] = {};
};

INSTANTIATE_TEST_SUITE_P(at_random, modelled_ring,
                         ::testing::Values(run{1, 1000, 5000}, run{2, 300, 1000}, run{3, 20, 300},
                                           run{4, 5, 50}, run{5, 2, 10}, run{6, 100, 100}),
                         [](const auto &one) { return "seed_" + std::to_string(one.param.seed); });

} // namespace

TEST_P(modelled_ring, does_as_the_model_does)
{
    for (int operation = 0; operation < 3000; ++operation) {
        do_something();
        ASSERT_FALSE(HasFailure())
            << "in operation " << operation << " of seed " << GetParam().seed;
    }
}

TEST_P(modelled_ring, does_as_the_model_does_whatever_was_written_into_it)
{
    for (int operation = 0; operation < 1500; ++operation) {
        if (operation % 5 == 0)
            damage_region();
        do_something();
        ASSERT_FALSE(HasFailure())
            << "in operation " << operation << " of seed " << GetParam().seed;
    }
}
