// A hashed set that gives every distinct key a dense identifier: 1, 2, 3, ... in the order of first
// insertion.
//
// What a key is, which bucket it falls into and when two keys are equal is the business of a policy:
//
//   struct Key {
//       using value_type = ...;                                             // trivially copyable
//       static uint32_t bucket(const value_type &, uint32_t bucket_count);
//       static bool equal(const value_type &, const value_type &);
//   };
//
// Invariants: identifiers are never reused or moved, so what a user keeps per identifier stays valid; a chain
// is in the order of insertion; entry 0 has no identifier and a link of 0; a failed insertion changes
// nothing. Cost: an insertion or a search walks one chain. The number of buckets never grows, so chains have
// count / bucket_count keys on the average, more where sums of integers collide. Searching never allocates.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <utility>

#include "common/array.h"
#include "common/prefetch.h"

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

    static constexpr uint32_t bucket(const value_type &key, uint32_t bucket_count)
    {
        return absolute_sum(key) % bucket_count;
    }
    static constexpr bool equal(const value_type &a, const value_type &b) { return a == b; }
};

/// (a, b) and (b, a) are one key, which is kept as it was first inserted.
struct unordered_pair {
    using value_type = std::array<int32_t, 2>;

    static constexpr uint32_t bucket(const value_type &key, uint32_t bucket_count)
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
};

/// The capacity that a full major set grows to, which can be beyond what 32 bits hold.
[[nodiscard]] constexpr int64_t grown_major_capacity(int32_t capacity)
{
    return int64_t{capacity} + std::max(capacity / 17, 21);
}

template <class Key>
struct tuple_major_set_t {
    using value_type = typename Key::value_type;
    static_assert(std::is_trivially_copyable_v<value_type>);

    struct Entry {
        value_type key;
        int32_t next; // the next identifier of the same bucket, or 0
    };

    // To be read only: they change through the members below.
    int32_t count = 0;        // identifiers are 1..count
    int32_t capacity = 0;     // `keys` has one entry more
    int32_t bucket_count = 0; // never changes after creation
    Array<Entry> keys; // by identifier; a key lies beside its link, so that a step of a walk is one access
    Array<int32_t> buckets; // the first identifier of each bucket, or 0

    /// Makes an empty set with room for `capacity` keys (below 0 counts as 0). False, without change, for a
    /// bucket count below 1 or if memory runs out.
    [[nodiscard]] bool try_create(int32_t initial_bucket_count, int32_t initial_capacity)
    {
        if (initial_bucket_count < 1)
            return false;
        tuple_major_set_t fresh;
        if (!fresh.buckets.try_resize_zeroed(static_cast<std::size_t>(initial_bucket_count)) ||
            !fresh.try_reserve(std::max(initial_capacity, 0)))
            return false;
        fresh.keys[0] = Entry{};
        fresh.bucket_count = initial_bucket_count;
        *this = std::move(fresh);
        return true;
    }

    /// Makes a copy of `other`. False, without change, if memory runs out.
    [[nodiscard]] bool try_copy(const tuple_major_set_t &other)
    {
        tuple_major_set_t copy;
        if (!try_assign(copy.keys, other.keys.data(), other.keys.size()) ||
            !try_assign(copy.buckets, other.buckets.data(), other.buckets.size()))
            return false;
        copy.count = other.count;
        copy.capacity = other.capacity;
        copy.bucket_count = other.bucket_count;
        *this = std::move(copy);
        return true;
    }

    /// The identifier of a key, which is added if absent: then the result is `count`, grown by one. 0 if
    /// memory runs out. Creation must have succeeded before (not checked; so for all members below).
    [[nodiscard]] int32_t insert(const value_type &key) { return insert_behind(0, bucket_of(key), key); }

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
        int32_t identifier = buckets[bucket_of(key)];
        while (identifier != 0 && !Key::equal((*this)[identifier].key, key))
            identifier = next(identifier);
        return identifier;
    }

    /// The key of an identifier, as first inserted.
    [[nodiscard]] const value_type &key(int32_t identifier) const { return (*this)[identifier].key; }

    /// The first identifier of a bucket (from 0), or 0.
    [[nodiscard]] int32_t first(int32_t bucket) const { return buckets[static_cast<std::size_t>(bucket)]; }

    /// The next identifier of the same bucket, or 0.
    [[nodiscard]] int32_t next(int32_t identifier) const { return (*this)[identifier].next; }

    /// All identifiers, bucket by bucket and along each bucket's chain: `for (int32_t id : set.by_bucket())`.
    /// Inserting ends the validity of the walk.
    [[nodiscard]] auto by_bucket() const { return BucketWalk{*this}; }

  private:
    struct BucketWalk {
        const tuple_major_set_t &set;

        struct End {};
        struct Position {
            const tuple_major_set_t &set;
            int32_t bucket;
            int32_t identifier;

            int32_t operator*() const { return identifier; }
            bool operator==(End) const { return identifier == 0; }
            Position &operator++()
            {
                identifier = set.next(identifier);
                skip_empty_buckets();
                return *this;
            }
            void skip_empty_buckets()
            {
                while (identifier == 0 && bucket + 1 < set.bucket_count)
                    identifier = set.first(++bucket);
            }
        };

        Position begin() const
        {
            Position position{set, -1, 0};
            position.skip_empty_buckets();
            return position;
        }
        End end() const { return {}; }
    };

    static constexpr std::size_t group_size = 128;

    [[nodiscard]] uint32_t bucket_of(const value_type &key) const
    {
        return Key::bucket(key, static_cast<uint32_t>(bucket_count));
    }
    [[nodiscard]] Entry &operator[](int32_t identifier) { return keys[static_cast<std::size_t>(identifier)]; }
    [[nodiscard]] const Entry &operator[](int32_t identifier) const
    {
        return keys[static_cast<std::size_t>(identifier)];
    }

    [[nodiscard]] bool try_reserve(int64_t new_capacity)
    {
        if (new_capacity > INT32_MAX || !keys.try_resize(static_cast<std::size_t>(new_capacity) + 1))
            return false;
        capacity = static_cast<int32_t>(new_capacity);
        return true;
    }

    /// Walks on along a chain, behind `last` (0: from the head), and appends a key that it does not meet.
    [[nodiscard]] int32_t insert_behind(int32_t last, uint32_t bucket, const value_type &key)
    {
        int32_t identifier = last == 0 ? buckets[bucket] : next(last);
        for (; identifier != 0; identifier = next(identifier)) {
            if (Key::equal((*this)[identifier].key, key))
                return identifier;
            last = identifier;
        }
        return append(bucket, last, key);
    }

    [[nodiscard]] int32_t append(uint32_t bucket, int32_t last, value_type key)
    {
        if (count == capacity && !try_reserve(grown_major_capacity(capacity)))
            return 0;
        const int32_t identifier = ++count;
        (*this)[identifier] = {key, 0};
        (last == 0 ? buckets[bucket] : (*this)[last].next) = identifier;
        return identifier;
    }

    /// The walk along the chain of one key of a group.
    struct Walk {
        uint32_t position; // of the key in the group
        int32_t identifier;
    };

    [[nodiscard]] bool try_insert_group(std::span<const value_type> group, int32_t *identifiers)
    {
        std::array<uint32_t, group_size> bucket;
        for (std::size_t i = 0; i < group.size(); ++i) {
            bucket[i] = bucket_of(group[i]);
            prefetch(&buckets[bucket[i]]);
        }
        std::array<Walk, group_size> walks;
        for (std::size_t i = 0; i < group.size(); ++i) {
            walks[i] = {static_cast<uint32_t>(i), buckets[bucket[i]]};
            prefetch(&keys[static_cast<std::size_t>(walks[i].identifier)]);
        }
        std::array<int32_t, group_size> reached;
        walk_side_by_side({walks.data(), group.size()}, group, reached.data());
        for (std::size_t i = 0; i < group.size(); ++i) {
            // A key that was not found may have come into the set since, with one before it in the group.
            const int32_t identifier =
                reached[i] > 0 ? reached[i] : insert_behind(-reached[i], bucket[i], group[i]);
            if (identifier == 0)
                return false;
            if (identifiers != nullptr)
                identifiers[i] = identifier;
        }
        return true;
    }

    /// Moves all walks on by one key at a time, so that their accesses to memory overlap, and drops those
    /// that ended; no branch depends on the data. `reached` takes, for each key of the group, its identifier
    /// if it was found, else the last identifier of its chain, negated, or 0.
    void walk_side_by_side(std::span<Walk> walks, std::span<const value_type> group, int32_t *reached) const
    {
        while (!walks.empty()) {
            std::size_t going_on = 0;
            for (const Walk walk : walks) {
                const Entry &entry = (*this)[walk.identifier];
                const bool found = Key::equal(entry.key, group[walk.position]);
                prefetch(&keys[static_cast<std::size_t>(entry.next)]);
                reached[walk.position] = found ? walk.identifier : -walk.identifier;
                walks[going_on] = {walk.position, entry.next};
                going_on += static_cast<std::size_t>(!found) & static_cast<std::size_t>(entry.next != 0);
            }
            walks = walks.first(going_on);
        }
    }
};

} // namespace korvane
