// A hashed set that gives every distinct key a dense identifier: 1, 2, 3, ... in the order of first
// insertion.
//
// What a key is, which bucket it falls into and when two keys are equal is the business of a policy:
//
//   struct Key {
//       using value_type = ...;                                             // trivially copyable
//       static uint32_t bucket(const value_type &, Count bucket_count); // Count: uint32_t or BucketCount
//       static bool equal(const value_type &, const value_type &);
//       static uint64_t packed(const value_type &); // the same number for equal keys, others for others
//   };
//
// Invariants: those of the numbered keys, which it is made of; so what a user keeps per identifier stays
// valid. Cost: an insertion or a search walks one chain. The number of buckets does not grow by itself,
// so chains have count / bucket_count keys on the average, more where sums of integers collide. Batches walk
// many chains side by side. Once walks have been long, searches ask a finder instead: then the cost is
// constant on the average, whatever the keys are.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <utility>

#include "common/prefetch.h"
#include "tags/bucket_count.h"
#include "tags/key_finder.h"
#include "tags/numbered_keys.h"

namespace korvane {

/// Integers are hashed by the absolute value of their sum, which wraps around in 32 bits. The most negative
/// sum has the absolute value 2^31.
template <std::size_t N>
[[nodiscard]] constexpr uint32_t absolute_sum(const std::array<int32_t, N> &integers)
{
    uint32_t sum = 0;
    for (const int32_t integer : integers)
        sum += static_cast<uint32_t>(integer);
    return static_cast<int32_t>(sum) < 0 ? 0u - sum : sum;
}

template <std::size_t N>
struct ordered_key {
    using value_type = std::array<int32_t, N>;

    template <class Count>
    static constexpr uint32_t bucket(const value_type &key, Count bucket_count)
    {
        return absolute_sum(key) % bucket_count;
    }
    /// Written out, because compilers call a function of the C library for a == b.
    static constexpr bool equal(const value_type &a, const value_type &b)
    {
        std::size_t i = 0;
        while (i < N && a[i] == b[i])
            ++i;
        return i == N;
    }
    static constexpr uint64_t packed(const value_type &key) requires(N <= 2)
    {
        uint64_t packed = 0;
        for (const int32_t integer : key)
            packed = packed << 32 | static_cast<uint32_t>(integer);
        return packed;
    }
};

/// (a, b) and (b, a) are one key, which is kept as it was first inserted.
struct unordered_pair {
    using value_type = std::array<int32_t, 2>;

    template <class Count>
    static constexpr uint32_t bucket(const value_type &key, Count bucket_count)
    {
        return absolute_sum(key) % bucket_count;
    }
    /// Without a branch, because which order a pair comes in is as good as random.
    static constexpr bool equal(const value_type &a, const value_type &b)
    {
        const auto pair = std::bit_cast<uint64_t>(a);
        const auto other = std::bit_cast<uint64_t>(b);
        return (static_cast<unsigned>(pair == other) | static_cast<unsigned>(pair == std::rotr(other, 32))) !=
               0;
    }
    static constexpr uint64_t packed(const value_type &key)
    {
        return ordered_key<2>::packed({std::min(key[0], key[1]), std::max(key[0], key[1])});
    }
};

[[nodiscard]] constexpr int64_t grown_major_capacity(int32_t capacity)
{
    return int64_t{capacity} + std::max(capacity / 17, 21);
}

template <class Key, int64_t (*grown_capacity)(int32_t capacity) = grown_major_capacity>
struct tuple_major_set_t : NumberedKeys<Key, grown_capacity> {
    using Keys = NumberedKeys<Key, grown_capacity>;
    using Keys::keys;
    using typename Keys::Entry;
    using typename Keys::value_type;

    // To be read only, like the fields of the numbered keys.
    BucketCount bucket_count;    // changes by try_spread only
    Array<int32_t> buckets;      // the first identifier of each bucket, or 0
    KeyFinder<Key, Keys> finder; // not built before walks were long

    /// Makes an empty set with room for `capacity` keys (below 0 counts as 0). False, without change, for a
    /// bucket count below 1 or if memory runs out.
    [[nodiscard]] bool try_create(int32_t new_bucket_count, int32_t new_capacity)
    {
        if (new_bucket_count < 1)
            return false;
        tuple_major_set_t fresh;
        if (!fresh.buckets.try_resize_zeroed(static_cast<std::size_t>(new_bucket_count)) ||
            !fresh.try_reserve(std::max(new_capacity, 0)))
            return false;
        fresh.bucket_count = BucketCount(static_cast<uint32_t>(new_bucket_count));
        *this = std::move(fresh);
        return true;
    }

    /// Makes a copy of `other`. False, without change, if memory runs out.
    [[nodiscard]] bool try_copy(const tuple_major_set_t &other)
    {
        tuple_major_set_t copy;
        if (!copy.try_copy_keys(other) ||
            !try_assign(copy.buckets, other.buckets.data(), other.buckets.size()))
            return false;
        copy.bucket_count = other.bucket_count;
        if (other.finder.is_built())
            copy.build_finder();
        *this = std::move(copy);
        return true;
    }

    /// Spreads the keys over another number of buckets, above 0. Identifiers stay, and chains are in the
    /// order of insertion; but the keys come to lie in other buckets, so this is only for sets that nobody
    /// lists by bucket. False, without change, if memory runs out.
    [[nodiscard]] bool try_spread(int32_t new_bucket_count)
    {
        Array<int32_t> spread;
        if (!spread.try_resize_zeroed(static_cast<std::size_t>(new_bucket_count)))
            return false;
        bucket_count = BucketCount(static_cast<uint32_t>(new_bucket_count));
        buckets = std::move(spread);
        for (int32_t identifier = Keys::count; identifier > 0; --identifier)
            Keys::put_first(buckets[bucket_of(Keys::key(identifier))], identifier);
        if (finder.is_built())
            build_finder();
        return true;
    }

    /// The identifier of a key, which is added if absent: then the result is `count`, grown by one. 0 if
    /// memory runs out. Creation must have succeeded before (not checked; so for all members below).
    [[nodiscard]] int32_t insert(const value_type &key)
    {
        const uint32_t bucket = bucket_of(key);
        if (finder.try_make_room(*this, 1))
            return finder.insert(*this, buckets, bucket, key, finder.first_slot(key));
        int64_t steps = 0;
        const int32_t identifier = Keys::insert_into_chain(buckets[bucket], key, 0, steps);
        note_walks(steps, 1);
        return identifier;
    }

    /// Inserts many keys, in order, as `insert` does one, but faster. `identifiers`, if not null, takes one
    /// per key. False if memory runs out: all keys before the one that failed are inserted.
    [[nodiscard]] bool try_insert_batch(std::span<const value_type> batch, int32_t *identifiers = nullptr)
    {
        while (!batch.empty()) {
            const auto group = batch.first(std::min(group_size, batch.size()));
            if (!try_insert_group(group, identifiers))
                return false;
            batch = batch.subspan(group.size());
            if (identifiers != nullptr)
                identifiers += group.size();
        }
        return true;
    }

    /// The identifier of a key, or 0 if absent.
    [[nodiscard]] int32_t find(const value_type &key) const
    {
        return finder.is_built() ? finder.find(*this, key)
                                 : Keys::find_in_chain(buckets[bucket_of(key)], key);
    }

  private:
    static constexpr std::size_t group_size = 128;
    static constexpr uint32_t near_buckets = 1 << 14;
    static constexpr int64_t long_walk = 64; // keys; a finder pays from some 16 on, if there are many

    /// The walk along the chain of one key of a group.
    struct Walk {
        uint32_t position; // of the key in the group
        int32_t identifier;
    };

    [[nodiscard]] uint32_t bucket_of(const value_type &key) const { return Key::bucket(key, bucket_count); }

    void build_finder()
    {
        finder.build(*this, bucket_count, [this](const value_type &key) { return bucket_of(key); });
    }

    /// To be called after walks along chains, with the steps of all.
    void note_walks(int64_t steps, std::size_t walk_count)
    {
        if (steps > long_walk * static_cast<int64_t>(walk_count))
            build_finder();
    }

    /// Both ends of it, which may lie in two cache lines.
    void prefetch_entry(int32_t identifier) const
    {
        const Entry *entry = &keys[static_cast<std::size_t>(identifier)];
        prefetch(entry);
        prefetch(reinterpret_cast<const char *>(entry + 1) - 1);
    }

    [[nodiscard]] bool try_insert_group(std::span<const value_type> group, int32_t *identifiers)
    {
        if (finder.try_make_room(*this, group.size()))
            return try_insert_by_finder(group, identifiers);
        std::array<uint32_t, group_size> bucket;
        uint32_t lowest = UINT32_MAX;
        uint32_t highest = 0;
        for (std::size_t i = 0; i < group.size(); ++i) {
            bucket[i] = bucket_of(group[i]);
            prefetch(&buckets[bucket[i]]);
            lowest = std::min(lowest, bucket[i]);
            highest = std::max(highest, bucket[i]);
        }
        if (highest - lowest < near_buckets)
            return try_insert_near(group, bucket.data(), identifiers);
        std::array<Walk, group_size> walks;
        for (std::size_t i = 0; i < group.size(); ++i) {
            walks[i] = {static_cast<uint32_t>(i), buckets[bucket[i]]};
            prefetch_entry(walks[i].identifier);
        }
        std::array<int32_t, group_size> reached;
        int64_t steps = walk_side_by_side({walks.data(), group.size()}, group, reached.data());
        for (std::size_t i = 0; i < group.size(); ++i) {
            // A key that was not found may have come into the set since, with one before it in the group.
            const int32_t identifier =
                reached[i] > 0 ? reached[i]
                               : Keys::insert_into_chain(buckets[bucket[i]], group[i], -reached[i], steps);
            if (identifier == 0)
                return false;
            if (identifiers != nullptr)
                identifiers[i] = identifier;
        }
        note_walks(steps, group.size());
        return true;
    }

    /// Keys of neighbouring buckets are probably in the cache, where walking one chain after the other is
    /// the quickest.
    [[nodiscard]] bool try_insert_near(
        std::span<const value_type> group, const uint32_t *bucket, int32_t *identifiers)
    {
        int64_t steps = 0;
        for (std::size_t i = 0; i < group.size(); ++i) {
            const int32_t identifier = Keys::insert_into_chain(buckets[bucket[i]], group[i], 0, steps);
            if (identifier == 0)
                return false;
            if (identifiers != nullptr)
                identifiers[i] = identifier;
        }
        note_walks(steps, group.size());
        return true;
    }

    /// In passes, so that accesses to memory overlap. There must be room for the group.
    [[nodiscard]] bool try_insert_by_finder(std::span<const value_type> group, int32_t *identifiers)
    {
        std::array<uint32_t, group_size> bucket;
        std::array<std::size_t, group_size> slot;
        for (std::size_t i = 0; i < group.size(); ++i) {
            bucket[i] = bucket_of(group[i]);
            slot[i] = finder.first_slot(group[i]);
            finder.prefetch_for(slot[i], bucket[i]);
        }
        for (std::size_t i = 0; i < group.size(); ++i)
            prefetch_entry(finder.at(slot[i]));
        for (std::size_t i = 0; i < group.size(); ++i) {
            const int32_t identifier = finder.insert(*this, buckets, bucket[i], group[i], slot[i]);
            if (identifier == 0)
                return false;
            if (identifiers != nullptr)
                identifiers[i] = identifier;
        }
        return true;
    }

    /// Moves all walks on by one key at a time, so that their accesses to memory overlap, and drops those
    /// that ended; no branch depends on the data. `reached` takes, for each key of the group, its identifier
    /// if it was found, else the last identifier of its chain, negated, or 0. Gives the number of steps.
    int64_t walk_side_by_side(
        std::span<Walk> walks, std::span<const value_type> group, int32_t *reached) const
    {
        int64_t steps = 0;
        while (!walks.empty()) {
            steps += std::ssize(walks);
            std::size_t going_on = 0;
            for (const Walk walk : walks) {
                const Entry &entry = keys[static_cast<std::size_t>(walk.identifier)];
                const bool found = Key::equal(entry.key, group[walk.position]);
                prefetch_entry(entry.next);
                reached[walk.position] = found ? walk.identifier : -walk.identifier;
                walks[going_on] = {walk.position, entry.next};
                going_on += static_cast<std::size_t>(!found) & static_cast<std::size_t>(entry.next != 0);
            }
            walks = walks.first(going_on);
        }
        return steps;
    }
};

} // namespace korvane
