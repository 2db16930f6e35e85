#include "tags/tuple_set.h"

#include <map>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/failing_allocations.h"
#include "tags/keys_support.h"
#include "tags/tuple_shapes.h"

namespace korvane::testing {
namespace {

/// What a tuple set promises, written the slow way.
template <class Set>
class Model {
  public:
    using MajorKey = typename Set::MajorKey;
    using MinorKey = typename Set::MinorKey;

    Model(int32_t major_capacity, int32_t minor_bucket_count, int32_t tuples_per_major_key)
        : major_room(major_capacity), room(major_capacity * tuples_per_major_key),
          width(static_cast<std::size_t>(minor_bucket_count))
    {}

    int32_t insert(const MajorKey &major_key, const MinorKey &minor_key)
    {
        add_major(major_key);
        if (const auto known = numbers.find({major_key, minor_key}); known != numbers.end())
            return known->second;
        if (std::ssize(minor_keys) == room)
            room = std::max(room + 11, static_cast<int32_t>(room * 1.2));
        minor_keys.push_back(minor_key);
        const auto number = static_cast<int32_t>(minor_keys.size());
        rows[major_key][naive_bucket(minor_key, width)].push_back(number);
        return numbers[{major_key, minor_key}] = number;
    }

    /// All that a failed insertion can have done.
    void add_major(const MajorKey &major_key)
    {
        if (!rows.contains(major_key)) {
            if (std::ssize(majors) == major_room)
                major_room += std::max(major_room / 17, 21);
            majors.push_back(major_key);
            rows[major_key];
        }
    }

    void expect_same(const Set &set) const
    {
        ASSERT_EQ(set.major.count, std::ssize(majors));
        ASSERT_EQ(set.minor_keys.count, std::ssize(minor_keys));
        EXPECT_EQ(set.major.capacity, major_room);
        EXPECT_EQ(set.minor_keys.capacity, room);
        for (int32_t i = 1; i <= set.major.count; ++i)
            expect_same_row(set, i);
        for (const auto &[tuple, number] : numbers) {
            EXPECT_EQ(set.find(tuple.first, tuple.second), number);
            EXPECT_EQ(set.minor_keys.key(number), tuple.second);
        }
    }

  private:
    void expect_same_row(const Set &set, int32_t major_identifier) const
    {
        const MajorKey &major_key = majors[static_cast<std::size_t>(major_identifier - 1)];
        EXPECT_EQ(set.major.key(major_identifier), major_key);
        std::vector<int32_t> expected;
        for (const auto &[bucket, chain] : rows.at(major_key))
            expected.insert(expected.end(), chain.begin(), chain.end());
        std::vector<int32_t> listed;
        for (const int32_t identifier : set.row(major_identifier))
            listed.push_back(identifier);
        EXPECT_EQ(listed, expected);
        EXPECT_EQ(set.row_length(major_identifier), std::ssize(expected));
    }

    std::map<std::pair<MajorKey, MinorKey>, int32_t> numbers;
    std::vector<MajorKey> majors;
    std::vector<MinorKey> minor_keys;
    std::map<MajorKey, std::map<std::size_t, std::vector<int32_t>>> rows; // by bucket
    int32_t major_room;
    int32_t room;
    std::size_t width;
};

template <class Set>
class TupleSet : public ::testing::Test {
  protected:
    static constexpr int32_t bound = 6; // so that keys come again

    static typename Set::MajorKey next_major(Integers &integers)
    {
        return random_key<typename Set::MajorKey>(integers, bound);
    }
    static typename Set::MinorKey next_minor(Integers &integers)
    {
        return random_key<typename Set::MinorKey>(integers, bound);
    }
};
using Shapes = ::testing::Types<tag_pair_set_t, point_periodicity_set_t, edge_periodicity_set_t>;
TYPED_TEST_SUITE(TupleSet, Shapes);

TYPED_TEST(TupleSet, BehavesAsItsModel)
{
    Integers integers;
    for (const int32_t minor_bucket_count : {1, 2, 3, 10}) {
        for (const int32_t major_capacity : {0, 1, 5, 100}) {
            for (const int32_t tuples_per_major_key : {0, 1, 4}) {
                const Owned<TypeParam> set =
                    tuple_set_new<TypeParam>(7, major_capacity, minor_bucket_count, tuples_per_major_key);
                ASSERT_NE(set, nullptr);
                Model<TypeParam> model(major_capacity, minor_bucket_count, tuples_per_major_key);
                for (int i = 0; i < 150; ++i) {
                    const auto major_key = this->next_major(integers);
                    const auto minor_key = this->next_minor(integers);
                    ASSERT_EQ(
                        tuple_set_insert(*set, major_key, minor_key), model.insert(major_key, minor_key));
                }
                model.expect_same(*set);
            }
        }
    }
}

TYPED_TEST(TupleSet, CreationSurvivesFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        fault.arm();
        const Owned<TypeParam> set = tuple_set_new<TypeParam>(3, 2, 2, 2);
        EXPECT_EQ(fault.disarm(), set == nullptr);
    });
}

TYPED_TEST(TupleSet, FailedInsertionLeavesAtMostTheMajorKey)
{
    oom_sweep([this](AllocationFault &fault) {
        Integers integers;
        const Owned<TypeParam> set = tuple_set_new<TypeParam>(3, 2, 2, 0);
        ASSERT_NE(set, nullptr);
        Model<TypeParam> model(2, 2, 0);
        fault.arm();
        int refused = 0;
        for (int i = 0; i < 60; ++i) {
            const auto major_key = this->next_major(integers);
            const auto minor_key = this->next_minor(integers);
            const int32_t identifier = tuple_set_insert(*set, major_key, minor_key);
            if (identifier != 0) {
                ASSERT_EQ(identifier, model.insert(major_key, minor_key));
                continue;
            }
            ++refused;
            EXPECT_EQ(set->find(major_key, minor_key), 0);
            if (set->major.find(major_key) != 0)
                model.add_major(major_key);
        }
        EXPECT_EQ(fault.disarm(), refused > 0);
        model.expect_same(*set);
        for (int i = 0; i < 60; ++i) {
            const auto major_key = this->next_major(integers);
            const auto minor_key = this->next_minor(integers);
            ASSERT_EQ(tuple_set_insert(*set, major_key, minor_key), model.insert(major_key, minor_key));
        }
        model.expect_same(*set);
    });
}

TYPED_TEST(TupleSet, CloneIsIndependent)
{
    oom_sweep([this](AllocationFault &fault) {
        Integers integers;
        const Owned<TypeParam> set = tuple_set_new<TypeParam>(3, 2, 2, 0);
        Model<TypeParam> model(2, 2, 0);
        const auto insert = [&](TypeParam &target) {
            const auto major_key = this->next_major(integers);
            const auto minor_key = this->next_minor(integers);
            ASSERT_EQ(tuple_set_insert(target, major_key, minor_key), model.insert(major_key, minor_key));
        };
        for (int i = 0; i < 60; ++i)
            insert(*set);
        const Model<TypeParam> before = model;
        fault.arm();
        const Owned<TypeParam> clone = tuple_set_clone(*set);
        EXPECT_EQ(fault.disarm(), clone == nullptr);
        if (clone != nullptr) {
            for (int i = 0; i < 60; ++i)
                insert(*clone);
            model.expect_same(*clone);
        }
        before.expect_same(*set);
    });
}

TEST(TupleSetCreation, RefusesBucketCountsBelowOne)
{
    EXPECT_EQ(tuple_set_new<tag_pair_set_t>(0, 1, 1, 1), nullptr);
    EXPECT_EQ(tuple_set_new<tag_pair_set_t>(-1, 1, 1, 1), nullptr);
    EXPECT_EQ(tuple_set_new<tag_pair_set_t>(1, 1, 0, 1), nullptr);
    EXPECT_EQ(tuple_set_new<tag_pair_set_t>(1, 1, INT32_MIN, 1), nullptr);
    EXPECT_NE(tuple_set_new<tag_pair_set_t>(1, 1, 1, 1), nullptr);
}

TEST(TupleSetCreation, RefusesMoreTuplesThanCanBeNumbered)
{
    EXPECT_EQ(tuple_set_new<tag_pair_set_t>(1, 1 << 16, 1, 1 << 15), nullptr);
    EXPECT_EQ(tuple_set_new<tag_pair_set_t>(1, INT32_MAX, 1, INT32_MAX), nullptr);
}

TEST(TupleSetCreation, TakesSizesBelowZeroAsZero)
{
    const Owned<tag_pair_set_t> set = tuple_set_new<tag_pair_set_t>(1, -7, 1, INT32_MIN);
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->major.capacity, 0);
    EXPECT_EQ(set->minor_keys.capacity, 0);
    EXPECT_EQ(set->row_count, 0);
    EXPECT_EQ(tuple_set_insert(*set, {1}, {1}), 1);
}

TEST(TupleSetCreation, ReservesWhatIsAskedFor)
{
    const Owned<tag_pair_set_t> set = tuple_set_new<tag_pair_set_t>(20, 30, 3, 2);
    ASSERT_NE(set, nullptr);
    const int64_t before = allocation_count();
    for (int32_t i = 0; i < 30; ++i) {
        EXPECT_EQ(tuple_set_insert(*set, {i}, {1}), 2 * i + 1);
        EXPECT_EQ(tuple_set_insert(*set, {i}, {2}), 2 * i + 2);
    }
    EXPECT_EQ(allocation_count(), before);
    EXPECT_EQ(set->row_count, 30);
}

TEST(TupleSetDeletion, LeavesNothingAndAcceptsNull)
{
    const int64_t live_before = live_block_count();
    tuple_set_delete<tag_pair_set_t>(nullptr);
    tuple_set_delete(tuple_set_new<tag_pair_set_t>(1, 1, 1, 1).release());
    EXPECT_EQ(live_block_count(), live_before);
}

TEST(TupleSetGrowth, IsAtLeastElevenAndAFifth)
{
    EXPECT_EQ(grown_tuple_capacity(0), 11);
    EXPECT_EQ(grown_tuple_capacity(11), 22);
    EXPECT_EQ(grown_tuple_capacity(59), 70);
    EXPECT_EQ(grown_tuple_capacity(60), 72);
    EXPECT_EQ(grown_tuple_capacity(104), 124);
    EXPECT_EQ(grown_tuple_capacity(INT32_MAX), 2576980376);
}

TEST(TupleSetGrowth, RowsFollowTheCapacityOfTheMajorSet)
{
    const Owned<tag_pair_set_t> set = tuple_set_new<tag_pair_set_t>(5, 1, 2, 1);
    EXPECT_EQ(tuple_set_insert(*set, {8}, {1}), 1);
    EXPECT_EQ(set->row_count, 1);
    EXPECT_EQ(tuple_set_insert(*set, {9}, {1}), 2);
    EXPECT_EQ(set->major.capacity, 22);
    EXPECT_EQ(set->row_count, 22);
    EXPECT_EQ(tuple_set_insert(*set, {8}, {1}), 1);
}

TEST(TupleSetInsertion, OfAKnownTupleNeedsNoMemory)
{
    const Owned<tag_pair_set_t> set = tuple_set_new<tag_pair_set_t>(1, 100, 2, 1);
    for (int32_t i = 1; i <= 7; ++i)
        ASSERT_EQ(tuple_set_insert(*set, {i}, {1}), i);
    AllocationFault fault(1, Failure::persistent);
    fault.arm();
    EXPECT_EQ(tuple_set_insert(*set, {8}, {1}), 0); // its key makes one chain too long
    EXPECT_TRUE(fault.disarm());
    fault.arm();
    for (int32_t i = 1; i <= 7; ++i)
        EXPECT_EQ(tuple_set_insert(*set, {i}, {1}), i);
    EXPECT_FALSE(fault.disarm());
    EXPECT_EQ(tuple_set_insert(*set, {8}, {1}), 8);
}

TEST(TupleSetKeys, ArePairsOfMajorAndMinor)
{
    const Owned<tag_pair_set_t> set = tuple_set_new<tag_pair_set_t>(10, 10, 10, 1);
    EXPECT_EQ(tuple_set_insert(*set, {5}, {7}), 1);
    EXPECT_EQ(tuple_set_insert(*set, {5}, {7}), 1);
    EXPECT_EQ(tuple_set_insert(*set, {7}, {5}), 2);
    EXPECT_EQ(set->find({7}, {7}), 0);
    EXPECT_EQ(set->find({6}, {5}), 0);
}

TEST(TupleSetKeys, OppositeIntegersShareABucketAndAreToldApart)
{
    const Owned<tag_pair_set_t> set = tuple_set_new<tag_pair_set_t>(10, 10, 10, 1);
    EXPECT_EQ(tuple_set_insert(*set, {-3}, {3}), 1);
    EXPECT_EQ(tuple_set_insert(*set, {3}, {3}), 2);
    EXPECT_EQ(tuple_set_insert(*set, {3}, {-3}), 3);
    EXPECT_EQ(set->major.next(1), 2);
    EXPECT_EQ(set->minor_keys.next(1), 0);
    EXPECT_EQ(set->minor_keys.next(2), 3);
}

TEST(TupleSetKeys, PermutedMinorKeysShareABucketAndAreToldApart)
{
    const Owned<point_periodicity_set_t> set = tuple_set_new<point_periodicity_set_t>(10, 10, 10, 1);
    EXPECT_EQ(tuple_set_insert(*set, {1}, {1, 2, 3}), 1);
    EXPECT_EQ(tuple_set_insert(*set, {1}, {3, 2, 1}), 2);
    EXPECT_EQ(tuple_set_insert(*set, {1}, {1, 2, 3}), 1);
    EXPECT_EQ(set->minor_keys.next(1), 2);
}

TEST(TupleSetRow, OfAnUnknownMajorKeyIsEmpty)
{
    const Owned<tag_pair_set_t> set = tuple_set_new<tag_pair_set_t>(10, 10, 3, 1);
    EXPECT_EQ(tuple_set_insert(*set, {1}, {1}), 1);
    EXPECT_EQ(set->row_length(set->major.find({2})), 0);
    EXPECT_EQ(set->row_length(set->major.find({1})), 1);
}

} // namespace
} // namespace korvane::testing
