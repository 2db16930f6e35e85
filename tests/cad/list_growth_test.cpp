#include "cad/list_growth.h"

#include <gtest/gtest.h>

#include "cad/multiple_periodicity.h"
#include "support/failing_allocations.h"

namespace korvane::testing {
namespace {

TEST(ListGrowth, IsByTheFactorTwoOrAsTheListSays)
{
    EXPECT_EQ(doubled_capacity(1), 2);
    EXPECT_EQ(doubled_capacity(5), 10);
    EXPECT_EQ(doubled_capacity((1 << 30) - 1), INT32_MAX - 1);
    EXPECT_EQ(doubled_capacity(INT32_MAX), 2 * int64_t{INT32_MAX});
    Array<uint32_t> values;
    int32_t capacity = 1;
    ASSERT_TRUE(values.try_resize_zeroed(1));
    ASSERT_TRUE(try_make_place(values, capacity, 0)); // there is one
    EXPECT_EQ(capacity, 1);
    values[0] = 7;
    ASSERT_TRUE(try_make_place(values, capacity, 1));
    EXPECT_EQ(capacity, 2);
    ASSERT_TRUE(try_make_place<grown_multiple_periodicity_capacity>(values, capacity, 2));
    EXPECT_EQ(capacity, 9);
    ASSERT_EQ(values.size(), 9u);
    EXPECT_EQ(values[0], 7u);
    for (std::size_t i = 1; i < values.size(); ++i)
        EXPECT_EQ(values[i], 0u);
}

TEST(ListGrowth, StopsAtThePlacesThat32BitsCount)
{
    for (int32_t capacity : {0, 1 << 30, INT32_MAX}) { // twice 0 makes no place either
        Array<uint32_t> values;
        const int32_t before = capacity;
        const std::int64_t allocations = allocation_count();
        EXPECT_FALSE(try_make_place(values, capacity, capacity));
        EXPECT_EQ(capacity, before);
        EXPECT_TRUE(values.empty());
        EXPECT_EQ(allocation_count(), allocations);
    }
}

TEST(ListGrowth, ChangesNothingIfMemoryRunsOut)
{
    Array<uint32_t> values;
    ASSERT_TRUE(values.try_resize_zeroed(3));
    int32_t capacity = 3;
    AllocationFault fault(1, Failure::transient);
    fault.arm();
    EXPECT_FALSE(try_make_place(values, capacity, 3));
    EXPECT_TRUE(fault.disarm());
    EXPECT_EQ(capacity, 3);
    EXPECT_EQ(values.size(), 3u);
}

} // namespace
} // namespace korvane::testing
