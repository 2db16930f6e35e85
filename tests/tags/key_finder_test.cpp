// Sets of keys of which most fall into one bucket, against the model, which knows no finder.
#include "tags/key_finder.h"

#include <random>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/failing_allocations.h"
#include "tags/keys_support.h"
#include "tags/major_set_model.h"

namespace korvane::testing {
namespace {

constexpr int32_t many_buckets = 1 << 15;

/// Keys that have one sum, or if they are one integer, the multiples of `many_buckets`; now and then any key.
template <class Set>
class CollidingKeys {
  public:
    using value_type = typename Set::value_type;

    value_type operator()(int32_t bound)
    {
        if (++calls % 8 == 0)
            return random_key<value_type>(integers, 100 * bound);
        const auto integer = static_cast<uint32_t>(integers(bound));
        if constexpr (std::is_same_v<Set, Singles>)
            return {static_cast<int32_t>(integer * many_buckets)};
        else
            return {static_cast<int32_t>(integer), static_cast<int32_t>(1000 - integer)};
    }

    std::vector<value_type> batch(std::size_t size, int32_t bound)
    {
        std::vector<value_type> keys(size);
        for (value_type &key : keys)
            key = (*this)(bound);
        return keys;
    }

  private:
    Integers integers;
    int calls = 0;
};

/// Enters keys one by one, as the model does.
template <class Set>
void insert_same(Set &set, Model<Set> &model, const std::vector<typename Set::value_type> &keys)
{
    for (const auto &key : keys)
        ASSERT_EQ(set.insert(key), model.insert(key));
}

/// The same in one batch.
template <class Set>
void insert_batch_same(Set &set, Model<Set> &model, const std::vector<typename Set::value_type> &keys)
{
    std::vector<int32_t> identifiers(keys.size());
    ASSERT_TRUE(set.try_insert_batch(keys, identifiers.data()));
    for (std::size_t i = 0; i < keys.size(); ++i)
        ASSERT_EQ(identifiers[i], model.insert(keys[i]));
}

template <class Set>
class KeyFinding : public ::testing::Test {};
using Shapes = ::testing::Types<Singles, Doubles, Pairs>;
TYPED_TEST_SUITE(KeyFinding, Shapes);

TYPED_TEST(KeyFinding, BehavesAsTheModel)
{
    std::mt19937 engine(20110815);
    for (const int32_t bucket_count : {1, 7, many_buckets}) {
        for (const bool in_batches : {false, true, true, true}) { // and single ones between most batches
            CollidingKeys<TypeParam> keys;
            TypeParam set;
            ASSERT_TRUE(set.try_create(bucket_count, 100));
            Model<TypeParam> model(bucket_count, 100);
            for (int32_t bound = 10; bound < 6000; bound += bound / 4) {
                insert_same(set, model, keys.batch(engine() % 100, bound));
                if (in_batches)
                    insert_batch_same(set, model, keys.batch(engine() % 1000, bound));
            }
            insert_same(set, model, keys.batch(in_batches ? 10 : 4000, 4000));
            EXPECT_TRUE(set.finder.is_built());
            model.expect_same(set);
            for (const auto &key : keys.batch(1000, 100'000)) {
                const int32_t count = set.count;
                const int32_t found = set.find(key);
                const int32_t number = model.insert(key);
                ASSERT_EQ(found, number > count ? 0 : number);
                ASSERT_EQ(set.insert(key), number);
            }
            model.expect_same(set);
        }
    }
}

TYPED_TEST(KeyFinding, StartsOnceAWalkIsLong)
{
    for (const bool in_batches : {false, true}) {
        TypeParam set;
        ASSERT_TRUE(set.try_create(1, 1000));
        Integers integers;
        const std::int64_t allocations = allocation_count();
        for (int step = 0; set.count < 60; ++step) {
            const auto key = random_key<typename TypeParam::value_type>(integers, 1000);
            ASSERT_TRUE(in_batches ? set.try_insert_batch({&key, 1}) : set.insert(key) != 0);
        }
        EXPECT_FALSE(set.finder.is_built());
        EXPECT_EQ(allocation_count(), allocations);
        while (set.count < 120) {
            const auto key = random_key<typename TypeParam::value_type>(integers, 1000);
            ASSERT_TRUE(in_batches ? set.try_insert_batch({&key, 1}) : set.insert(key) != 0);
        }
        EXPECT_TRUE(set.finder.is_built());
        EXPECT_EQ(allocation_count(), allocations + 2); // built once
    }
}

TYPED_TEST(KeyFinding, IsNotForSetsOfShortChains)
{
    constexpr int32_t count = 50'000;
    TypeParam set;
    ASSERT_TRUE(set.try_create(count / 10, count));
    std::vector<typename TypeParam::value_type> keys(count);
    for (int32_t i = 0; i < count; ++i)
        keys[static_cast<std::size_t>(i)][0] = i;
    const std::int64_t allocations = allocation_count();
    ASSERT_TRUE(set.try_insert_batch(keys));
    for (int32_t i = 0; i < count; ++i)
        ASSERT_EQ(set.insert(keys[static_cast<std::size_t>(i)]), i + 1);
    EXPECT_EQ(allocation_count(), allocations);
    EXPECT_FALSE(set.finder.is_built());
}

TYPED_TEST(KeyFinding, MissingMemoryChangesNoAnswer)
{
    for (const bool in_batches : {false, true})
        oom_sweep([=](AllocationFault &fault) {
            CollidingKeys<TypeParam> keys;
            TypeParam set;
            ASSERT_TRUE(set.try_create(many_buckets, 5000)); // so that only the finder needs more
            Model<TypeParam> model(many_buckets, 5000);
            const auto insert = in_batches ? insert_batch_same<TypeParam> : insert_same<TypeParam>;
            const std::int64_t allocations = allocation_count();
            fault.arm();
            insert(set, model, keys.batch(1000, 2000));
            fault.disarm();
            EXPECT_LT(allocation_count(), allocations + 12); // it is not tried at every key
            model.expect_same(set);
            insert(set, model, keys.batch(3000, 10'000));
            EXPECT_TRUE(set.finder.is_built()); // again, now that there are twice as many keys
            model.expect_same(set);
        });
}

TYPED_TEST(KeyFinding, AKeyWithoutRoomIsNotFound)
{
    oom_sweep([](AllocationFault &fault) {
        CollidingKeys<TypeParam> keys;
        TypeParam set;
        ASSERT_TRUE(set.try_create(many_buckets, 300));
        Model<TypeParam> model(many_buckets, 300);
        while (set.count < set.capacity) {
            const auto key = keys(1000);
            ASSERT_EQ(set.insert(key), model.insert(key));
        }
        ASSERT_TRUE(set.finder.is_built());
        int refused = 0;
        fault.arm();
        for (const auto &key : keys.batch(300, 1000)) {
            const int32_t found = set.find(key);
            const int32_t identifier = set.insert(key);
            if (identifier != 0) {
                ASSERT_EQ(identifier, model.insert(key));
                continue;
            }
            ++refused;
            EXPECT_EQ(found, 0);
            EXPECT_EQ(set.find(key), 0);
        }
        const bool failed = fault.disarm();
        EXPECT_LE(refused > 0, failed);
        model.expect_same(set);
        insert_batch_same(set, model, keys.batch(300, 1000));
        model.expect_same(set);
    });
}

TYPED_TEST(KeyFinding, ABatchStopsAtTheKeyWithoutRoom)
{
    oom_sweep([](AllocationFault &fault) {
        CollidingKeys<TypeParam> keys;
        TypeParam set;
        ASSERT_TRUE(set.try_create(many_buckets, 300));
        Model<TypeParam> model(many_buckets, 300);
        insert_batch_same(set, model, keys.batch(300, 1000));
        ASSERT_TRUE(set.finder.is_built());
        const auto batch = keys.batch(300, 1000);
        std::vector<int32_t> identifiers(batch.size());
        fault.arm();
        const bool inserted = set.try_insert_batch(batch, identifiers.data());
        const bool failed = fault.disarm();
        EXPECT_TRUE(inserted || failed);
        std::size_t done = 0;
        for (; done < batch.size() && identifiers[done] != 0; ++done)
            ASSERT_EQ(identifiers[done], model.insert(batch[done]));
        EXPECT_EQ(inserted, done == batch.size());
        model.expect_same(set);
        ASSERT_TRUE(set.try_insert_batch(batch));
    });
}

TYPED_TEST(KeyFinding, ACopyHasAFinderOfItsOwn)
{
    oom_sweep([](AllocationFault &fault) {
        CollidingKeys<TypeParam> keys;
        TypeParam set;
        ASSERT_TRUE(set.try_create(many_buckets, 20));
        Model<TypeParam> model(many_buckets, 20);
        insert_same(set, model, keys.batch(500, 1000));
        ASSERT_TRUE(set.finder.is_built());
        Model<TypeParam> before = model;
        TypeParam copy;
        fault.arm();
        const bool copied = copy.try_copy(set);
        const bool failed = fault.disarm();
        if (!copied) {
            EXPECT_TRUE(failed);
            EXPECT_EQ(copy.bucket_count, 0u);
            return;
        }
        EXPECT_EQ(copy.finder.is_built(), !failed); // without it, the copy is whole nevertheless
        model.expect_same(copy);
        insert_batch_same(copy, model, keys.batch(500, 3000));
        insert_same(set, before, keys.batch(500, 3000));
        before.expect_same(set);
        model.expect_same(copy);
        TypeParam moved = std::move(copy);
        insert_same(moved, model, keys.batch(500, 3000));
        model.expect_same(moved);
    });
}

TYPED_TEST(KeyFinding, GoesOnOverOtherBuckets)
{
    for (const int32_t other_count : {2, 3000, 40'000})
        oom_sweep([=](AllocationFault &fault) {
            CollidingKeys<TypeParam> keys;
            TypeParam set;
            ASSERT_TRUE(set.try_create(1, 1000));
            Model<TypeParam> other_model(other_count, 1000); // numbers keys as the set does
            Model<TypeParam> model(1, 1000);
            const auto entered = keys.batch(700, 1000);
            insert_same(set, model, entered);
            for (const auto &key : entered)
                ASSERT_NE(other_model.insert(key), 0);
            ASSERT_TRUE(set.finder.is_built());
            fault.arm();
            const bool spread = set.try_spread(other_count);
            const bool failed = fault.disarm();
            EXPECT_TRUE(spread || failed);
            EXPECT_EQ(set.finder.is_built(), !(spread && failed)); // a set that is not spread keeps it
            Model<TypeParam> &current = spread ? other_model : model;
            current.expect_same(set);
            insert_batch_same(set, current, keys.batch(700, 2000));
            current.expect_same(set);
        });
}

TYPED_TEST(KeyFinding, EndsWhereTheSetIsCreatedAnew)
{
    CollidingKeys<TypeParam> keys;
    TypeParam set;
    ASSERT_TRUE(set.try_create(1, 10));
    ASSERT_TRUE(set.try_insert_batch(keys.batch(1000, 1000)));
    ASSERT_TRUE(set.finder.is_built());
    ASSERT_TRUE(set.try_create(many_buckets, 10));
    EXPECT_FALSE(set.finder.is_built());
    Model<TypeParam> model(many_buckets, 10);
    insert_same(set, model, keys.batch(1000, 1000));
    model.expect_same(set);
}

TEST(KeyFinding, PairsOfOneSumAreFoundInEitherOrder)
{
    constexpr int32_t sum = 40'001;
    Pairs set;
    ASSERT_TRUE(set.try_create(1000, 10));
    for (int32_t i = 1; i <= sum / 2; ++i) {
        ASSERT_EQ(set.insert({i, sum - i}), i);
        ASSERT_EQ(set.insert({sum - i, i}), i);
    }
    EXPECT_EQ(set.count, sum / 2);
    for (int32_t i = 1; i <= sum / 2; ++i) {
        EXPECT_EQ(set.find({sum - i, i}), i);
        EXPECT_EQ(set.key(i), (Pairs::value_type{i, sum - i}));
        EXPECT_EQ(set.next(i), i < sum / 2 ? i + 1 : 0);
    }
}

} // namespace
} // namespace korvane::testing
