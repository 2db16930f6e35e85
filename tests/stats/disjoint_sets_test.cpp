#include "stats/disjoint_sets.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

TEST(DisjointSets, JoinTwoSetsOnce)
{
    DisjointSets sets;
    ASSERT_TRUE(sets.try_create(4));
    EXPECT_FALSE(sets.join(2, 2));
    EXPECT_TRUE(sets.join(4, 2));
    EXPECT_FALSE(sets.join(2, 4));
    EXPECT_TRUE(sets.join(1, 3));
    EXPECT_TRUE(sets.join(3, 4));
    EXPECT_FALSE(sets.join(1, 2));
}

TEST(DisjointSets, AgreeWithLabelsOnRandomJoins)
{
    std::mt19937 random(1);
    for (int run = 0; run < 200; ++run) {
        const int32_t count = static_cast<int32_t>(1 + random() % 300);
        DisjointSets sets;
        ASSERT_TRUE(sets.try_create(static_cast<std::size_t>(count)));
        std::vector<int32_t> labels(static_cast<std::size_t>(count) + 1);
        std::iota(labels.begin(), labels.end(), 0);
        for (int step = 0; step < 400; ++step) {
            const auto a = static_cast<int32_t>(1 + random() % static_cast<unsigned>(count));
            const auto b = static_cast<int32_t>(1 + random() % static_cast<unsigned>(count));
            const int32_t from = labels[static_cast<std::size_t>(a)],
                          to = labels[static_cast<std::size_t>(b)];
            ASSERT_EQ(sets.join(a, b), from != to);
            std::replace(labels.begin(), labels.end(), from, to);
        }
    }
}

TEST(DisjointSets, LongChainsAreJoinedInAnyOrder)
{
    constexpr int32_t count = 100'000;
    for (const bool rising : {true, false}) {
        DisjointSets sets;
        ASSERT_TRUE(sets.try_create(count));
        for (int32_t i = 1; i < count; ++i)
            ASSERT_TRUE(rising ? sets.join(i, i + 1) : sets.join(count - i, count - i + 1));
        EXPECT_FALSE(sets.join(1, count));
    }
}

TEST(DisjointSets, SurviveFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        DisjointSets sets;
        fault.arm();
        const bool created = sets.try_create(3);
        EXPECT_EQ(created, !fault.disarm());
        EXPECT_TRUE(!created || sets.join(1, 3));
    });
}

} // namespace
} // namespace korvane::testing
