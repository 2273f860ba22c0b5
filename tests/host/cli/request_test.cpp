#include <gtest/gtest.h>

#include "cli/request.h"

using namespace cli;

namespace
{

using steps = std::vector<std::pair<size_t, size_t>>;

// Moves through a device that refuses more than `longest` at a time.
steps stretches(size_t total, size_t first, size_t longest, uint32_t refusal = 0xCA)
{
    steps taken;
    in_stretches(total, first, [&](size_t offset, size_t count) {
        if (count > longest)
            throw failure(exit_refused, "too long", refusal);
        taken.emplace_back(offset, count);
        return count;
    });
    return taken;
}

} // namespace

TEST(stretches, cover_all_and_no_more)
{
    EXPECT_EQ(stretches(100, 64, 255), (steps{{0, 64}, {64, 36}}));
    EXPECT_EQ(stretches(64, 64, 255), (steps{{0, 64}}));
    EXPECT_EQ(stretches(0, 64, 255), steps{});
}

TEST(stretches, halve_until_the_blade_takes_them)
{
    EXPECT_EQ(stretches(10, 64, 3), (steps{{0, 2}, {2, 2}, {4, 2}, {6, 2}, {8, 2}}));
}

TEST(stretches, end_when_even_one_is_too_long)
{
    EXPECT_THROW(stretches(10, 64, 0), failure);
}

TEST(stretches, end_at_any_other_refusal)
{
    EXPECT_THROW(stretches(10, 64, 3, 0xC9), failure);
    EXPECT_THROW(stretches(10, 64, 3, 0x5007), failure);
}

TEST(stretches, go_on_where_the_blade_stopped_short)
{
    steps taken;
    in_stretches(10, 8, [&](size_t offset, size_t count) {
        taken.emplace_back(offset, count);
        return std::min<size_t>(count, 3);
    });
    EXPECT_EQ(taken, (steps{{0, 8}, {3, 7}, {6, 4}, {9, 1}}));
}

TEST(stretches, end_where_nothing_moves)
{
    EXPECT_THROW(in_stretches(10, 8, [](size_t, size_t) { return size_t{0}; }), failure);
}

TEST(reservations, are_renewed_when_lost_but_not_for_ever)
{
    uint16_t id = 1;
    const auto renew = [&] { return static_cast<uint16_t>(id + 1); };
    const auto needs = [](uint16_t wanted) {
        return [wanted](uint16_t held) {
            if (held != wanted)
                throw failure(exit_refused, "lost", reservation_lost);
            return held;
        };
    };
    EXPECT_EQ(under_reservation(id, renew, needs(3)), 3);
    EXPECT_EQ(id, 3);
    EXPECT_THROW(under_reservation(id, renew, needs(100)), failure);
    EXPECT_LE(id, 8);
}
