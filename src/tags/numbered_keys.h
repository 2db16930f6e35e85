// Keys numbered 1, 2, 3, ... in the order of insertion, each linked to the next one of the same hash bucket.
//
// The heads of the chains belong to the users: the major set has one row of them, a tuple set one row per
// major key. Invariants: numbers (identifiers) are never reused or moved; a chain is in the order of
// insertion, so its identifiers ascend; entry 0 has no identifier and a link of 0; a failed insertion changes
// nothing. Cost: searching and inserting walk one chain; searching never allocates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "common/array.h"

namespace korvane {

/// `Key` states what a key is (`value_type`) and when two are equal (`equal`); `grown_capacity`, what a full
/// array grows to, which can be beyond what 32 bits hold: then the insertion fails.
template <class Key, int64_t (*grown_capacity)(int32_t capacity)>
struct NumberedKeys {
    using value_type = typename Key::value_type;
    static_assert(std::is_trivially_copyable_v<value_type>);

    struct Entry {
        int32_t next; // the next identifier of the same bucket, or 0
        value_type key;
    };

    // To be read only: they change through the members below.
    int32_t count = 0;    // identifiers are 1..count
    int32_t capacity = 0; // `keys` has one entry more, or none at all
    Array<Entry> keys;    // link and front of a key are near: a step along a chain is one access

    /// The key of an identifier, as first inserted.
    [[nodiscard]] const value_type &key(int32_t identifier) const { return entry(identifier).key; }

    /// Parts of a key that play no part in its hash and in `equal` may be changed: what a user keeps per key.
    [[nodiscard]] value_type &key(int32_t identifier) { return entry(identifier).key; }

    /// The next identifier of the same bucket, or 0.
    [[nodiscard]] int32_t next(int32_t identifier) const { return entry(identifier).next; }

    [[nodiscard]] bool try_reserve(int64_t new_capacity)
    {
        const bool first_time = keys.empty();
        if (new_capacity > INT32_MAX || !keys.try_resize(static_cast<std::size_t>(new_capacity) + 1))
            return false;
        if (first_time)
            keys[0] = Entry{};
        capacity = static_cast<int32_t>(new_capacity);
        return true;
    }

    [[nodiscard]] bool try_copy_keys(const NumberedKeys &other)
    {
        if (!try_assign(keys, other.keys.data(), other.keys.size()))
            return false;
        count = other.count;
        capacity = other.capacity;
        return true;
    }

    /// The identifier of a key in the chain from `head` on, or 0 if absent.
    [[nodiscard]] int32_t find_in_chain(int32_t head, const value_type &key) const
    {
        while (head != 0 && !Key::equal(entry(head).key, key))
            head = entry(head).next;
        return head;
    }

    /// The identifier of a key in the chain of `head`, which is appended if absent; 0 if memory runs out. Who
    /// has looked at the chain up to `last` already says so. `steps` is raised by the keys that it is
    /// compared with in vain.
    [[nodiscard]] int32_t insert_into_chain(
        int32_t &head, const value_type &key, int32_t last, int64_t &steps)
    {
        int32_t identifier = last == 0 ? head : next(last);
        for (; identifier != 0; identifier = next(identifier)) {
            if (Key::equal(entry(identifier).key, key))
                return identifier;
            last = identifier;
            ++steps;
        }
        return append(head, key, last);
    }

    [[nodiscard]] int32_t insert_into_chain(int32_t &head, const value_type &key)
    {
        int64_t steps = 0;
        return insert_into_chain(head, key, 0, steps);
    }

    /// Numbers a key that is in no chain, and appends it to the chain from `head` to `last`, 0 if it has none
    /// yet. 0 if memory runs out.
    [[nodiscard]] int32_t append(int32_t &head, value_type key, int32_t last)
    {
        if (count >= capacity && !try_reserve(grown_capacity(capacity)))
            return 0;
        const int32_t identifier = ++count;
        entry(identifier) = {0, key};
        (last == 0 ? head : entry(last).next) = identifier;
        return identifier;
    }

    /// Makes a key that is in no chain the first of one.
    void put_first(int32_t &head, int32_t identifier)
    {
        entry(identifier).next = head;
        head = identifier;
    }

  private:
    [[nodiscard]] Entry &entry(int32_t identifier) { return keys[static_cast<std::size_t>(identifier)]; }
    [[nodiscard]] const Entry &entry(int32_t identifier) const
    {
        return keys[static_cast<std::size_t>(identifier)];
    }
};

/// The identifiers in a row of buckets, bucket by bucket and along each bucket's chain, for a range-based
/// `for`. Inserting ends its validity.
template <class Keys>
struct BucketWalk {
    const Keys &keys;
    std::span<const int32_t> buckets;

    struct End {};
    struct Position {
        const Keys &keys;
        std::span<const int32_t> buckets; // those not yet reached
        int32_t identifier;

        int32_t operator*() const { return identifier; }
        bool operator==(End) const { return identifier == 0; }
        Position &operator++()
        {
            identifier = keys.next(identifier);
            skip_empty_buckets();
            return *this;
        }
        void skip_empty_buckets()
        {
            while (identifier == 0 && !buckets.empty()) {
                identifier = buckets.front();
                buckets = buckets.subspan(1);
            }
        }
    };

    [[nodiscard]] Position begin() const
    {
        Position position{keys, buckets, 0};
        position.skip_empty_buckets();
        return position;
    }
    [[nodiscard]] End end() const { return {}; }
};

} // namespace korvane
