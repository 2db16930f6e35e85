#include "common/array.h"

#include <gtest/gtest.h>

#include "support/failing_allocations.h"

namespace korvane {
namespace {

TEST(Array, KeepsValuesWhenResized)
{
    Array<int> array;
    ASSERT_TRUE(array.try_resize(3));
    for (int i = 0; i < 3; ++i)
        array[static_cast<size_t>(i)] = i + 1;
    ASSERT_TRUE(array.try_resize(100));
    EXPECT_EQ(array.size(), 100u);
    EXPECT_EQ(array[0], 1);
    EXPECT_EQ(array[2], 3);
    ASSERT_TRUE(array.try_resize(2));
    EXPECT_EQ(array[1], 2);
}

TEST(Array, ZeroesNewValuesOnRequestOnly)
{
    Array<int> array;
    ASSERT_TRUE(array.try_resize_zeroed(2));
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(array[1], 0);
    array[0] = 5;
    ASSERT_TRUE(array.try_resize_zeroed(4));
    EXPECT_EQ(array[0], 5);
    EXPECT_EQ(array[3], 0);
    ASSERT_TRUE(array.try_resize(2));
    array[1] = 6;
    ASSERT_TRUE(array.try_resize_zeroed(3));
    EXPECT_EQ(array[0], 5);
    EXPECT_EQ(array[1], 6);
    EXPECT_EQ(array[2], 0);
}

TEST(Array, ResizedToNothingIsNull)
{
    Array<double> array;
    ASSERT_TRUE(array.try_resize(5));
    ASSERT_TRUE(array.try_resize(0));
    EXPECT_EQ(array.data(), nullptr);
    EXPECT_TRUE(array.empty());
    ASSERT_TRUE(array.try_resize_zeroed(0));
    EXPECT_EQ(array.data(), nullptr);
}

TEST(Array, RefusesSizesThatOverflow)
{
    Array<double> array;
    ASSERT_TRUE(array.try_resize(1));
    array[0] = 2.5;
    EXPECT_FALSE(array.try_resize(SIZE_MAX / 4));
    EXPECT_FALSE(array.try_resize_zeroed(SIZE_MAX));
    EXPECT_EQ(array.size(), 1u);
    EXPECT_EQ(array[0], 2.5);
    Array<double> empty;
    EXPECT_FALSE(empty.try_resize_zeroed(SIZE_MAX / 8 + 1));
    EXPECT_TRUE(empty.empty());
}

TEST(Array, StaysAsItWasWhenMemoryRunsOut)
{
    testing::oom_sweep([](testing::AllocationFault &fault) {
        Array<int> array;
        ASSERT_TRUE(array.try_resize(1));
        array[0] = 7;
        fault.arm();
        const bool resized = array.try_resize(1000) && array.try_resize_zeroed(2000);
        const bool failed = fault.disarm();
        EXPECT_EQ(resized, !failed);
        EXPECT_EQ(array[0], 7);
        EXPECT_EQ(array.size() == 2000u, resized);
    });
}

TEST(Array, AssignsACopy)
{
    const int values[] = {1, 2, 3};
    Array<int> array;
    ASSERT_TRUE(try_assign(array, values, 3));
    EXPECT_EQ(array.size(), 3u);
    EXPECT_EQ(array[2], 3);
    ASSERT_TRUE(try_assign(array, static_cast<const int *>(nullptr), 0));
    EXPECT_TRUE(array.empty());
}

} // namespace
} // namespace korvane
