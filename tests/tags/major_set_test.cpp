#include "tags/major_set.h"

#include <vector>

#include <gtest/gtest.h>

#include "support/failing_allocations.h"
#include "tags/keys_support.h"
#include "tags/major_set_model.h"

namespace korvane::testing {
namespace {

template <class Set>
class MajorSet : public ::testing::Test {};
using Shapes = ::testing::Types<Singles, Doubles, Pairs>;
TYPED_TEST_SUITE(MajorSet, Shapes);

TYPED_TEST(MajorSet, BehavesAsItsModel)
{
    Integers integers;
    for (const int32_t bucket_count : {1, 2, 7, 64, 1000}) {
        for (const int32_t capacity : {0, 1, 30, 2000}) {
            TypeParam set;
            ASSERT_TRUE(set.try_create(bucket_count, capacity));
            Model<TypeParam> model(bucket_count, capacity);
            for (int i = 0; i < 500; ++i) {
                const auto key = random_key<typename TypeParam::value_type>(integers, 30);
                ASSERT_EQ(set.insert(key), model.insert(key));
            }
            model.expect_same(set);
        }
    }
}

TYPED_TEST(MajorSet, BatchIsAsOneByOne)
{
    Integers integers;
    for (const std::size_t size : {0u, 1u, 2u, 31u, 700u, 1001u}) {
        const int32_t bucket_count = size % 2 == 0 ? 50 : 40'000; // the extremes fall into far buckets
        TypeParam set;
        ASSERT_TRUE(set.try_create(bucket_count, 20));
        Model<TypeParam> model(bucket_count, 20);
        for (int round = 0; round < 3; ++round) {
            std::vector<typename TypeParam::value_type> batch(size);
            for (auto &key : batch)
                key = random_key<typename TypeParam::value_type>(integers, 15);
            std::vector<int32_t> identifiers(size);
            ASSERT_TRUE(set.try_insert_batch(batch, identifiers.data()));
            for (std::size_t i = 0; i < size; ++i)
                ASSERT_EQ(identifiers[i], model.insert(batch[i]));
            ASSERT_TRUE(set.try_insert_batch(batch));
            model.expect_same(set);
        }
    }
}

TYPED_TEST(MajorSet, SpreadKeysAreTheSameInOtherBuckets)
{
    Integers integers;
    for (const int32_t other_count : {1, 3, 50, 4000}) {
        TypeParam set;
        ASSERT_TRUE(set.try_create(7, 5));
        Model<TypeParam> model(other_count, 5); // numbers keys as the set does, in the other buckets
        for (int i = 0; i < 300; ++i) {
            const auto key = random_key<typename TypeParam::value_type>(integers, 30);
            ASSERT_EQ(set.insert(key), model.insert(key));
        }
        ASSERT_TRUE(set.try_spread(other_count));
        model.expect_same(set);
        for (int i = 0; i < 300; ++i) {
            const auto key = random_key<typename TypeParam::value_type>(integers, 60);
            ASSERT_EQ(set.insert(key), model.insert(key));
        }
        model.expect_same(set);
    }
}

TYPED_TEST(MajorSet, StaysAsItIsIfItCannotSpread)
{
    oom_sweep([](AllocationFault &fault) {
        Integers integers;
        TypeParam set;
        ASSERT_TRUE(set.try_create(7, 5));
        for (int i = 0; i < 30; ++i)
            ASSERT_NE(set.insert(random_key<typename TypeParam::value_type>(integers, 30)), 0);
        fault.arm();
        const bool spread = set.try_spread(100);
        EXPECT_EQ(fault.disarm(), !spread);
        EXPECT_EQ(set.bucket_count, spread ? 100u : 7u);
        for (int32_t number = 1; number <= set.count; ++number)
            EXPECT_EQ(set.find(set.key(number)), number);
    });
}

TYPED_TEST(MajorSet, SurvivesFailingAllocations)
{
    oom_sweep([](AllocationFault &fault) {
        TypeParam set;
        fault.arm();
        const bool created = set.try_create(10, 4);
        EXPECT_EQ(created, !fault.disarm());
        if (!created) {
            EXPECT_EQ(set.bucket_count, 0u);
            EXPECT_TRUE(set.keys.empty());
        }
    });
    oom_sweep([](AllocationFault &fault) {
        Integers integers;
        TypeParam set;
        ASSERT_TRUE(set.try_create(10, 4));
        Model<TypeParam> model(10, 4);
        fault.arm();
        int refused = 0;
        for (int i = 0; i < 60; ++i) {
            const auto key = random_key<typename TypeParam::value_type>(integers, 100);
            const int32_t identifier = set.insert(key);
            if (identifier != 0)
                ASSERT_EQ(identifier, model.insert(key));
            else
                ++refused;
        }
        EXPECT_EQ(fault.disarm(), refused > 0);
        model.expect_same(set);
    });
}

TYPED_TEST(MajorSet, BatchStopsAtTheKeyForWhichMemoryRunsOut)
{
    for (const int32_t bucket_count : {10, 40'000})
        oom_sweep([=](AllocationFault &fault) {
            Integers integers;
            std::vector<typename TypeParam::value_type> batch(80);
            for (auto &key : batch)
                key = random_key<typename TypeParam::value_type>(integers, 1000);
            TypeParam set;
            ASSERT_TRUE(set.try_create(bucket_count, 4));
            Model<TypeParam> model(bucket_count, 4);
            std::vector<int32_t> identifiers(batch.size());
            fault.arm();
            const bool inserted = set.try_insert_batch(batch, identifiers.data());
            EXPECT_EQ(fault.disarm(), !inserted);
            std::size_t done = 0;
            while (done < batch.size() && identifiers[done] != 0) {
                EXPECT_EQ(identifiers[done], model.insert(batch[done]));
                ++done;
            }
            EXPECT_EQ(inserted, done == batch.size());
            model.expect_same(set);
            ASSERT_TRUE(set.try_insert_batch(batch));
        });
}

TYPED_TEST(MajorSet, CopyIsIndependent)
{
    oom_sweep([](AllocationFault &fault) {
        Integers integers;
        TypeParam set;
        ASSERT_TRUE(set.try_create(10, 4));
        Model<TypeParam> model(10, 4);
        for (int i = 0; i < 40; ++i) {
            const auto key = random_key<typename TypeParam::value_type>(integers, 20);
            ASSERT_EQ(set.insert(key), model.insert(key));
        }
        const Model<TypeParam> before = model;
        TypeParam copy;
        fault.arm();
        const bool copied = copy.try_copy(set);
        EXPECT_EQ(fault.disarm(), !copied);
        if (!copied) {
            EXPECT_EQ(copy.bucket_count, 0u);
            return;
        }
        for (int i = 0; i < 40; ++i) {
            const auto key = random_key<typename TypeParam::value_type>(integers, 200);
            ASSERT_EQ(copy.insert(key), model.insert(key));
        }
        before.expect_same(set);
        model.expect_same(copy);
    });
}

TEST(MajorSetCreation, RefusesBucketCountsBelowOne)
{
    Singles set;
    EXPECT_FALSE(set.try_create(0, 10));
    EXPECT_FALSE(set.try_create(-1, 10));
    EXPECT_FALSE(set.try_create(INT32_MIN, 10));
    EXPECT_TRUE(set.try_create(1, 10));
}

TEST(MajorSetCreation, TakesACapacityBelowZeroAsZero)
{
    Singles set;
    ASSERT_TRUE(set.try_create(3, INT32_MIN));
    EXPECT_EQ(set.capacity, 0);
    EXPECT_EQ(set.find({5}), 0);
    EXPECT_EQ(set.insert({5}), 1);
    EXPECT_EQ(set.capacity, 21);
}

TEST(MajorSetGrowth, IsAtLeast21AndASeventeenth)
{
    EXPECT_EQ(grown_major_capacity(0), 21);
    EXPECT_EQ(grown_major_capacity(1), 22);
    EXPECT_EQ(grown_major_capacity(373), 394);
    EXPECT_EQ(grown_major_capacity(374), 396);
    EXPECT_EQ(grown_major_capacity(1700), 1800);
    EXPECT_EQ(grown_major_capacity(INT32_MAX), INT32_MAX + int64_t{INT32_MAX / 17});
}

TEST(MajorSetGrowth, KeepsTheFirstIdentifier)
{
    Singles set;
    ASSERT_TRUE(set.try_create(5, 1));
    EXPECT_EQ(set.insert({70}), 1);
    EXPECT_EQ(set.capacity, 1);
    EXPECT_EQ(set.insert({71}), 2);
    EXPECT_EQ(set.capacity, 22);
    EXPECT_EQ(set.insert({70}), 1);
    EXPECT_EQ(set.find({70}), 1);
}

TEST(MajorSetKeys, OrderedKeysTellTheOrderApart)
{
    Doubles set;
    ASSERT_TRUE(set.try_create(10, 10));
    EXPECT_EQ(set.insert({5, 7}), 1);
    EXPECT_EQ(set.insert({5, 7}), 1);
    EXPECT_EQ(set.insert({7, 5}), 2);
}

TEST(MajorSetKeys, UnorderedPairsAreKeptAsFirstInserted)
{
    Pairs set;
    ASSERT_TRUE(set.try_create(10, 10));
    EXPECT_EQ(set.insert({7, 5}), 1);
    EXPECT_EQ(set.insert({5, 7}), 1);
    EXPECT_EQ(set.insert({6, 6}), 2);
    EXPECT_EQ(set.find({5, 7}), 1);
    EXPECT_EQ(set.key(1), (Pairs::value_type{7, 5}));
    EXPECT_EQ(set.count, 2);
}

TEST(MajorSetKeys, OppositeIntegersShareABucketAndAreToldApart)
{
    Singles set;
    ASSERT_TRUE(set.try_create(10, 10));
    EXPECT_EQ(set.insert({-3}), 1);
    EXPECT_EQ(set.insert({3}), 2);
    EXPECT_EQ(set.buckets[3], 1);
    EXPECT_EQ(set.next(1), 2);
    EXPECT_EQ(set.next(2), 0);
}

TEST(MajorSetKeys, SumsWrapAroundAndTheMostNegativeSurvives)
{
    static_assert(absolute_sum(std::array{INT32_MIN}) == 2147483648u);
    static_assert(absolute_sum(std::array{INT32_MAX, 1}) == 2147483648u);
    static_assert(absolute_sum(std::array{INT32_MAX, INT32_MAX}) == 2u);
    static_assert(absolute_sum(std::array{INT32_MIN, INT32_MIN}) == 0u);
    static_assert(absolute_sum(std::array{INT32_MIN, -1}) == 2147483647u);
    static_assert(absolute_sum(std::array{-7, 4}) == 3u);
    Singles set;
    ASSERT_TRUE(set.try_create(1000, 10));
    EXPECT_EQ(set.insert({INT32_MIN}), 1);
    EXPECT_EQ(set.buckets[648], 1);
    EXPECT_EQ(set.find({INT32_MIN}), 1);
}

TEST(MajorSetKeys, ZeroIsAKeyLikeAnyOther)
{
    Singles set;
    ASSERT_TRUE(set.try_create(10, 10));
    const Singles::value_type batch[] = {{0}, {10}, {0}, {20}};
    int32_t identifiers[4] = {};
    EXPECT_EQ(set.find({0}), 0);
    ASSERT_TRUE(set.try_insert_batch(batch, identifiers));
    EXPECT_EQ(std::vector<int32_t>(identifiers, identifiers + 4), (std::vector<int32_t>{1, 2, 1, 3}));
}

/// The least that another folder's key must have.
struct address_key {
    using value_type = const int *;
    static uint32_t bucket(value_type key, uint32_t bucket_count)
    {
        return (static_cast<uint32_t>(reinterpret_cast<uintptr_t>(key)) >> 3) % bucket_count;
    }
    static bool equal(value_type a, value_type b) { return a == b; }
    static uint64_t packed(value_type key) { return reinterpret_cast<uintptr_t>(key); }
};

TEST(MajorSetKeys, AreOpenToOtherTypes)
{
    const int things[3] = {};
    tuple_major_set_t<address_key> set;
    ASSERT_TRUE(set.try_create(2, 2));
    EXPECT_EQ(set.insert(&things[2]), 1);
    EXPECT_EQ(set.insert(&things[0]), 2);
    EXPECT_EQ(set.insert(&things[2]), 1);
    EXPECT_EQ(set.find(&things[1]), 0);
    EXPECT_EQ(set.key(2), &things[0]);
}

/// A key with a note of its user.
struct noted_key {
    struct value_type {
        std::array<int32_t, 2> pair;
        int32_t note;
    };
    static uint32_t bucket(const value_type &key, uint32_t bucket_count)
    {
        return unordered_pair::bucket(key.pair, bucket_count);
    }
    static bool equal(const value_type &a, const value_type &b)
    {
        return unordered_pair::equal(a.pair, b.pair);
    }
    static uint64_t packed(const value_type &key) { return unordered_pair::packed(key.pair); }
};

TEST(MajorSet, KeysCarryNotesByWhichTheyAreNotFound)
{
    tuple_major_set_t<noted_key> set;
    ASSERT_TRUE(set.try_create(2, 1));
    ASSERT_EQ(set.insert({{1, 2}, 10}), 1);
    ASSERT_EQ(set.insert({{3, 4}, 20}), 2);
    EXPECT_EQ(set.insert({{2, 1}, 30}), 1);
    EXPECT_EQ(set.key(1).note, 10);
    set.key(1).note = 40;
    EXPECT_EQ(set.find({{1, 2}, 0}), 1);
    EXPECT_EQ(set.key(1).note, 40);
    EXPECT_EQ(set.key(2).note, 20);
}

} // namespace
} // namespace korvane::testing
