// Tuple sets: rows of buckets on top of a major set. Compiled here once for every shape there is.
//
// What can fail comes in the order: major key, row, buckets of the major keys, tuple. Each step leaves the
// set whole, so a later insertion takes up what a failed one has left. Tuples that are in the set are found
// without any step that can fail.
#include "tags/tuple_set.h"

#include <algorithm>
#include <span>

#include "tags/tuple_shapes.h"

namespace korvane {

namespace {

/// The buckets of a row, of which there are none while the row does not exist.
template <class Set, class Buckets>
auto buckets_of_row(Buckets &row_buckets, const Set &set, int32_t major_identifier)
{
    const auto width = static_cast<std::size_t>(set.minor_bucket_count);
    const bool exists = major_identifier > 0 && major_identifier <= set.row_count;
    const std::size_t start = exists ? static_cast<std::size_t>(major_identifier - 1) * width : 0;
    return std::span(row_buckets.data() + start, exists ? width : 0);
}

template <class Set>
uint32_t minor_bucket(const Set &set, const typename Set::MinorKey &minor_key)
{
    return Set::Minor::bucket(minor_key, static_cast<uint32_t>(set.minor_bucket_count));
}

template <class Set>
[[nodiscard]] bool try_reserve_rows(Set &set)
{
    const auto rows = static_cast<std::size_t>(set.major.capacity);
    if (!set.row_buckets.try_resize_zeroed(rows * static_cast<std::size_t>(set.minor_bucket_count)))
        return false;
    set.row_count = set.major.capacity;
    return true;
}

/// Keeps the chains of major keys short, which nobody lists by bucket.
template <class Set>
[[nodiscard]] bool try_spread_major_keys(Set &set)
{
    constexpr int32_t long_chain = 4;
    return static_cast<uint32_t>(set.major.count / long_chain) <= set.major.bucket_count ||
           set.major.try_spread(set.major.count);
}

} // namespace

template <std::size_t major_length, std::size_t minor_length>
int32_t tuple_set_t<major_length, minor_length>::find(
    const MajorKey &major_key, const MinorKey &minor_key) const
{
    const auto buckets = buckets_of_row(row_buckets, *this, major.find(major_key));
    if (buckets.empty())
        return 0;
    return minor_keys.find_in_chain(buckets[minor_bucket(*this, minor_key)], minor_key);
}

template <std::size_t major_length, std::size_t minor_length>
auto tuple_set_t<major_length, minor_length>::row(int32_t major_identifier) const -> BucketWalk<MinorKeys>
{
    return {minor_keys, buckets_of_row(row_buckets, *this, major_identifier)};
}

template <std::size_t major_length, std::size_t minor_length>
int32_t tuple_set_t<major_length, minor_length>::row_length(int32_t major_identifier) const
{
    int32_t length = 0;
    for ([[maybe_unused]] const int32_t identifier : row(major_identifier))
        ++length;
    return length;
}

template <class Set>
Owned<Set> tuple_set_new(int32_t major_bucket_count, int32_t major_capacity, int32_t minor_bucket_count,
    int32_t tuples_per_major_key)
{
    if (minor_bucket_count < 1)
        return nullptr;
    const int64_t tuple_capacity = int64_t{std::max(major_capacity, 0)} * std::max(tuples_per_major_key, 0);
    Owned<Set> set = create_owned<Set>();
    if (!set || (tuple_capacity > 0 && !set->minor_keys.try_reserve(tuple_capacity)) ||
        !set->major.try_create(major_bucket_count, major_capacity))
        return nullptr;
    set->minor_bucket_count = minor_bucket_count;
    if (!try_reserve_rows(*set))
        return nullptr;
    return set;
}

template <class Set>
Owned<Set> tuple_set_clone(const Set &set)
{
    Owned<Set> clone = create_owned<Set>();
    if (!clone || !clone->major.try_copy(set.major) || !clone->minor_keys.try_copy_keys(set.minor_keys) ||
        !try_assign(clone->row_buckets, set.row_buckets.data(), set.row_buckets.size()))
        return nullptr;
    clone->row_count = set.row_count;
    clone->minor_bucket_count = set.minor_bucket_count;
    return clone;
}

template <class Set>
int32_t tuple_set_insert(
    Set &set, const typename Set::MajorKey &major_key, const typename Set::MinorKey &minor_key)
{
    // Kept on purpose: the major key stays when a later step fails, because it is numbered first.
    const int32_t known_count = set.major.count;
    const int32_t major_identifier = set.major.insert(major_key);
    if (major_identifier == 0 || (major_identifier > set.row_count && !try_reserve_rows(set)) ||
        (major_identifier > known_count && !try_spread_major_keys(set)))
        return 0;
    const auto buckets = buckets_of_row(set.row_buckets, set, major_identifier);
    return set.minor_keys.insert_into_chain(buckets[minor_bucket(set, minor_key)], minor_key);
}

template struct tuple_set_t<1, 1>;
template struct tuple_set_t<1, 3>;
template struct tuple_set_t<1, 4>;

template Owned<tuple_set_t<1, 1>> tuple_set_new(int32_t, int32_t, int32_t, int32_t);
template Owned<tuple_set_t<1, 3>> tuple_set_new(int32_t, int32_t, int32_t, int32_t);
template Owned<tuple_set_t<1, 4>> tuple_set_new(int32_t, int32_t, int32_t, int32_t);

template Owned<tuple_set_t<1, 1>> tuple_set_clone(const tuple_set_t<1, 1> &);
template Owned<tuple_set_t<1, 3>> tuple_set_clone(const tuple_set_t<1, 3> &);
template Owned<tuple_set_t<1, 4>> tuple_set_clone(const tuple_set_t<1, 4> &);

template int32_t tuple_set_insert(
    tuple_set_t<1, 1> &, const std::array<int32_t, 1> &, const std::array<int32_t, 1> &);
template int32_t tuple_set_insert(
    tuple_set_t<1, 3> &, const std::array<int32_t, 1> &, const std::array<int32_t, 3> &);
template int32_t tuple_set_insert(
    tuple_set_t<1, 4> &, const std::array<int32_t, 1> &, const std::array<int32_t, 4> &);

} // namespace korvane
