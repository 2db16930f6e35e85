// A two-level hashed set that gives every distinct pair (major key, minor key) of integer tuples a dense
// identifier: 1, 2, 3, ... in the order of first insertion.
//
// The major keys are numbered by a major set. Each of them owns a row of hash buckets for its minor keys; the
// minor keys of all rows are numbered together. Invariants: rows that exist lie at (major identifier - 1) *
// minor_bucket_count; major keys beyond `row_count` have no tuples yet; otherwise those of the numbered keys.
// Cost: an insertion walks one chain of major keys and one of minor keys; a listing walks one row.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "common/array.h"
#include "common/memory.h"
#include "tags/major_set.h"
#include "tags/numbered_keys.h"

namespace korvane {

[[nodiscard]] constexpr int64_t grown_tuple_capacity(int32_t capacity)
{
    return std::max(int64_t{capacity} + 11, static_cast<int64_t>(capacity * 1.2));
}

/// What the shapes may be is said in tuple_shapes.h: the members are compiled once, for those.
template <std::size_t major_length, std::size_t minor_length>
struct tuple_set_t {
    using Major = ordered_key<major_length>;
    using Minor = ordered_key<minor_length>;
    using MajorKey = typename Major::value_type;
    using MinorKey = typename Minor::value_type;
    using MinorKeys = NumberedKeys<Minor, grown_tuple_capacity>;

    // To be read only: they change through the functions below.
    tuple_major_set_t<Major> major;
    int32_t row_count = 0;          // rows of `row_buckets`
    Array<int32_t> row_buckets;     // row by row, the first identifier of each bucket, or 0
    MinorKeys minor_keys;           // with the count, the capacity and the links of the tuples
    int32_t minor_bucket_count = 0; // never changes after creation

    /// The tuple's identifier, or 0 if absent.
    [[nodiscard]] int32_t find(const MajorKey &major_key, const MinorKey &minor_key) const;

    /// The identifiers of all tuples of a major key, bucket by bucket and in each in the order of insertion;
    /// none for the major identifier 0: `for (int32_t id : set.row(set.major.find(key)))`. The minor key of
    /// each is `set.minor_keys.key(id)`. Inserting ends the validity of the walk.
    [[nodiscard]] BucketWalk<MinorKeys> row(int32_t major_identifier) const;

    /// How many tuples a row has, which it walks to count.
    [[nodiscard]] int32_t row_length(int32_t major_identifier) const;
};

/// An empty set with room for `major_capacity` major keys and so many times `tuples_per_major_key` tuples;
/// what is below 0 counts as 0. Null for a bucket count below 1, if a size goes beyond 32 bits or if memory
/// runs out.
template <class Set>
[[nodiscard]] Owned<Set> tuple_set_new(int32_t major_bucket_count, int32_t major_capacity,
    int32_t minor_bucket_count, int32_t tuples_per_major_key);

/// A copy that shares nothing, or null if memory runs out.
template <class Set>
[[nodiscard]] Owned<Set> tuple_set_clone(const Set &set);

/// The tuple's identifier, existing or new, or 0 if memory runs out; the major key can be in the set then.
template <class Set>
[[nodiscard]] int32_t tuple_set_insert(
    Set &set, const typename Set::MajorKey &major_key, const typename Set::MinorKey &minor_key);

/// Releases a set that its owner has let go; null is accepted.
template <class Set>
void tuple_set_delete(Set *set)
{
    destroy(set);
}

} // namespace korvane
